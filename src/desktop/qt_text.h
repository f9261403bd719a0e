// The edge between the program's Windows-1252 text and Qt's text, and a label for long ones.
#pragma once

#include <QLabel>
#include <QPainter>
#include <QString>
#include <string>

#include "runtime/code_page.h"

namespace merivane::desktop {

using namespace runtime;

inline QString ToQt(const std::string& windows1252) {
  return QString::fromStdString(ToUtf8(windows1252));
}

// Paths are UTF-8 on both sides.
inline QString PathToQt(const std::string& path) { return QString::fromStdString(path); }

// Line ends become line feeds, those at the end go, and a long word (the name of a file, mostly)
// gets places where it may break: zero-width spaces behind its separators.
QString BreakableText(const QString& text);

// A line of text that loses its middle where there is no room for it.
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
