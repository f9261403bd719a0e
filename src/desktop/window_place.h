// Where windows stood when they were closed, kept for each user.
#pragma once

#include <QObject>
#include <QSize>

class QWidget;

namespace merivane::desktop {

// Gives a window the place and the size that it had last under its object name, or the usual size,
// and never more than its screen has room for; keeps both when it goes. It belongs to the window.
class WindowPlace : public QObject {
 public:
  WindowPlace(QWidget& window, const QSize& usual);
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void Keep();

  QWidget& window_;
};

}  // namespace merivane::desktop
