#include "program_picture.h"

#include <QPainter>
#include <QPixmap>

namespace merivane::desktop {

QIcon ApplicationIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    PaintPicture(painter, pixmap.rect());
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

ProgramPicture::ProgramPicture(const QSize& size, QWidget* parent) : QWidget(parent) {
  setFixedSize(size);
  setAccessibleName("Merivane");
}

void ProgramPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  PaintPicture(painter, rect());
}

}  // namespace merivane::desktop
