// The program's picture: window icon, splash, about box, and the ground of the main window.
#pragma once

#include <QIcon>
#include <QWidget>

class QPainter;

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

}  // namespace merivane::desktop
