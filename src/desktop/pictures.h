// The program's picture: window icon, splash and about box.
#pragma once

#include <QIcon>
#include <QWidget>

class QPainter;

namespace merivane::desktop {

QIcon ApplicationIcon();
void PaintPicture(QPainter& painter, const QRectF& place);

// Sharp at any size and scale.
class Picture : public QWidget {
 public:
  Picture(const QSize& size, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace merivane::desktop
