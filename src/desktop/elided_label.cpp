#include "elided_label.h"

#include <QPainter>

namespace merivane::desktop {

void ElidedLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRect place = contentsRect();
  painter.setPen(palette().color(foregroundRole()));
  painter.drawText(place, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter),
                   fontMetrics().elidedText(text(), Qt::ElideMiddle, place.width()));
}

}  // namespace merivane::desktop
