#include "paint_figure.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <QPalette>
#include <QPrinter>
#include <algorithm>
#include <cmath>

#include "qt_text.h"

namespace merivane::desktop {

namespace {

using pictures::Style;

QPointF ToQt(const pictures::Point& point) { return {point.x, point.y}; }

QFont FontOf(const Style& style) {
  QStringList families;
  for (const QString& family : QString(pictures::kFonts).split(',')) {
    families.append(family.trimmed().remove('\''));
  }
  QFont font;
  font.setFamilies(families);
  font.setPixelSize(qRound(style.size));
  font.setBold(style.bold);
  return font;
}

QPen PenOf(const Style& style) {
  if (style.width == 0) return Qt::NoPen;
  QPen pen(QColor(style.stroke), style.width);
  pen.setJoinStyle(Qt::MiterJoin);
  if (*style.dash == '\0') return pen;
  QList<qreal> dashes;
  for (const QString& length : QString(style.dash).split(' ')) {
    dashes.append(length.toDouble() / style.width);
  }
  pen.setDashPattern(dashes);
  return pen;
}

QPainterPath PathOf(const pictures::Path& path) {
  QPainterPath result(ToQt(path.points.front()));
  if (path.curved) {
    for (std::size_t at = 1; at + 2 < path.points.size(); at += 3) {
      result.cubicTo(ToQt(path.points[at]), ToQt(path.points[at + 1]), ToQt(path.points[at + 2]));
    }
  } else {
    for (const pictures::Point& point : path.points) result.lineTo(ToQt(point));
  }
  if (path.closed) result.closeSubpath();
  return result;
}

// Runs of blanks as SVG shows them.
QString Shown(const pictures::Text& text) {
  return desktop::ToQt(text.text).replace('\t', ' ').split(' ', Qt::SkipEmptyParts).join(' ');
}

// Left end of the base line.
QPointF StartOf(const pictures::Text& text, double width) {
  QPointF start = ToQt(text.at);
  if (text.anchor == pictures::Anchor::kMiddle) start.rx() -= width / 2;
  if (text.anchor == pictures::Anchor::kEnd) start.rx() -= width;
  return start;
}

QRectF BoundsOf(const pictures::Box& box) {
  return {box.area.left, box.area.top, box.area.width, box.area.height};
}

QRectF BoundsOf(const pictures::Path& path) { return PathOf(path).boundingRect(); }

QRectF BoundsOf(const pictures::Text& text) {
  const QFontMetricsF metrics(FontOf(pictures::StyleOf(text.ink)));
  const double width = metrics.horizontalAdvance(Shown(text));
  return {StartOf(text, width) - QPointF(0, metrics.ascent()), QSizeF(width, metrics.height())};
}

class FigurePainter {
 public:
  FigurePainter(QPainter& painter, const pictures::Figure& figure, pictures::Ground ground,
                FigureTexts texts)
      : painter_(painter), faint_(figure.faint), ground_(ground), texts_(texts) {}

  void operator()(const pictures::Box& box) {
    Use(box.ink);
    if (box.radius > 0) {
      painter_.drawRoundedRect(BoundsOf(box), box.radius, box.radius);
    } else {
      painter_.drawRect(BoundsOf(box));
    }
  }
  void operator()(const pictures::Path& path) {
    Use(path.ink);
    painter_.drawPath(PathOf(path));
  }
  void operator()(const pictures::Text& text) {
    if (texts_ == FigureTexts::kLeftOut) return;
    const Style style = StyleFor(text.ink);
    const QFont font = FontOf(style);
    const QString shown = Shown(text);
    painter_.setFont(font);
    painter_.setPen(QColor(style.fill));
    painter_.drawText(StartOf(text, QFontMetricsF(font).horizontalAdvance(shown)), shown);
  }

 private:
  Style StyleFor(pictures::Ink ink) const {
    return faint_ ? pictures::FaintStyleOf(ink, ground_) : pictures::StyleOf(ink, ground_);
  }
  void Use(pictures::Ink ink) {
    const Style style = StyleFor(ink);
    painter_.setPen(PenOf(style));
    painter_.setBrush(qstrcmp(style.fill, "none") == 0 ? QBrush() : QBrush(QColor(style.fill)));
  }

  QPainter& painter_;
  bool faint_;
  pictures::Ground ground_;
  FigureTexts texts_;
};

constexpr double kPixelsOfInch = 96;
constexpr double kSmallest = 0.4;

int PagesFor(double length, double page) {
  return std::max(1, static_cast<int>(std::ceil(length / page - 0.001)));
}

}  // namespace

QRectF BoundsOf(const pictures::Figure& figure) {
  constexpr double kStroke = 2;
  QRectF bounds;
  for (const pictures::Shape& shape : figure.shapes) {
    bounds |= std::visit([](const auto& part) { return BoundsOf(part); }, shape)
                  .adjusted(-kStroke, -kStroke, kStroke, kStroke);
  }
  return bounds;
}

pictures::Ground GroundOf(const QPalette& palette) {
  const bool isDark = palette.color(QPalette::Base).lightness() < 128;
  return isDark ? pictures::Ground::kDark : pictures::Ground::kLight;
}

void PaintFigure(QPainter& painter, const pictures::Figure& figure, pictures::Ground ground,
                 FigureTexts texts) {
  FigurePainter paint(painter, figure, ground, texts);
  for (const pictures::Shape& shape : figure.shapes) std::visit(paint, shape);
}

void PrintPictures(QPrinter& printer, const std::vector<pictures::Picture>& pictures) {
  QPainter painter(&printer);
  painter.setRenderHint(QPainter::Antialiasing);
  const double dots = printer.resolution() / kPixelsOfInch;
  const QSizeF paper =
      QSizeF(printer.pageLayout().paintRectPixels(printer.resolution()).size()) / dots;
  bool first = true;
  for (const pictures::Picture& picture : pictures) {
    std::vector<QRectF> bounds;  // known once for all pages
    for (const pictures::Figure& figure : picture.figures) bounds.push_back(BoundsOf(figure));
    const double scale = std::clamp(paper.width() / picture.width, kSmallest, 1.0);
    const QSizeF page = paper / scale;
    const int columns = PagesFor(picture.width, page.width());
    const int rows = PagesFor(picture.height, page.height());
    for (int at = 0; at < rows * columns; ++at) {
      if (!first) printer.newPage();
      first = false;
      painter.resetTransform();
      painter.scale(dots * scale, dots * scale);
      const int row = at / columns;
      const QRectF part(QPointF(at % columns * page.width(), row * page.height()), page);
      painter.translate(-part.topLeft());
      painter.setClipRect(part);
      for (std::size_t figure = 0; figure < bounds.size(); ++figure) {
        if (bounds[figure].intersects(part)) PaintFigure(painter, picture.figures[figure]);
      }
    }
  }
}

}  // namespace merivane::desktop
