// A line of text that loses its middle where there is no room for it.
#pragma once

#include <QLabel>
#include <QPainter>

namespace merivane::desktop {

class ElidedLabel : public QLabel {
 public:
  using QLabel::QLabel;
  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    const QRect place = contentsRect();
    painter.setPen(palette().color(foregroundRole()));
    painter.drawText(place, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter),
                     fontMetrics().elidedText(text(), Qt::ElideMiddle, place.width()));
  }
};

}  // namespace merivane::desktop
