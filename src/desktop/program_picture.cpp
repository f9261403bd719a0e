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

FormArea::FormArea() {
  setObjectName("formArea");
  setFocusPolicy(Qt::ClickFocus);
  setBackground(QBrush(Qt::NoBrush));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setOption(DontMaximizeSubWindowOnActivation);  // a dialog keeps its size beside a workbench
}

void FormArea::paintEvent(QPaintEvent* /*event*/) {
  constexpr qreal kFaint = 0.16;
  QPainter painter(viewport());
  const QRectF place = viewport()->rect();
  painter.fillRect(place, palette().color(QPalette::Window).darker(108));
  const qreal side = qMin(place.width(), place.height()) / 3;
  painter.setOpacity(kFaint);
  PaintPicture(painter, QRectF(place.center() - QPointF(side, side) / 2, QSizeF(side, side)));
}

}  // namespace merivane::desktop
