#include "form_area.h"

#include <QPainter>

#include "pictures.h"

namespace merivane::desktop {

FormArea::FormArea() {
  setObjectName("formArea");
  setBackground(QBrush(Qt::NoBrush));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
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
