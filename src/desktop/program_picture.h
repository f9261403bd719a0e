// The program's picture: window icon, splash, about box, and the ground of the main window.
#pragma once

#include <QIcon>
#include <QWidget>

class QPainter;

namespace merivane::shell {
class frmSplash;
}  // namespace merivane::shell

namespace merivane::desktop {

QIcon ApplicationIcon();
void PaintPicture(QPainter& painter, const QRectF& place);

// Sharp at any size and scale.
class ProgramPicture : public QWidget {
 public:
  ProgramPicture(const QSize& size, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

// The picture that greets the user. Shows and hides with its form, in the middle of the screen, and
// paints at once.
class SplashWindow : public QWidget {
 public:
  SplashWindow(shell::frmSplash& form, QWidget* parent);
  ~SplashWindow() override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Sync();

  shell::frmSplash& form_;
};

}  // namespace merivane::desktop
