// A line of text that loses its middle where there is no room for it.
#pragma once

#include <QLabel>

namespace merivane::desktop {

class ElidedLabel : public QLabel {
 public:
  using QLabel::QLabel;
  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace merivane::desktop
