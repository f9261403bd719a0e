#include "picture_printer.h"

#include <QPainter>
#include <QPrinter>
#include <algorithm>
#include <cmath>

#include "paint_figure.h"

namespace merivane::desktop {

namespace {

constexpr double kPixelsOfInch = 96;
constexpr double kSmallest = 0.4;

int PagesFor(double length, double page) {
  return std::max(1, static_cast<int>(std::ceil(length / page - 0.001)));
}

}  // namespace

void PrintPictures(QPrinter& printer, const std::vector<pictures::Picture>& pictures) {
  QPainter painter(&printer);
  painter.setRenderHint(QPainter::Antialiasing);
  const double dots = printer.resolution() / kPixelsOfInch;
  const QSizeF paper =
      QSizeF(printer.pageLayout().paintRectPixels(printer.resolution()).size()) / dots;
  bool first = true;
  for (const pictures::Picture& picture : pictures) {
    const double scale = std::clamp(paper.width() / picture.width, kSmallest, 1.0);
    const QSizeF page = paper / scale;
    const int columns = PagesFor(picture.width, page.width());
    const int rows = PagesFor(picture.height, page.height());
    for (int at = 0; at < rows * columns; ++at) {
      if (!first) printer.newPage();
      first = false;
      painter.resetTransform();
      painter.scale(dots * scale, dots * scale);
      const QRectF part(QPointF(at % columns * page.width(), at / columns * page.height()), page);
      painter.translate(-part.topLeft());
      painter.setClipRect(part);
      for (const pictures::Figure& figure : picture.figures) {
        if (BoundsOf(figure).intersects(part)) PaintFigure(painter, figure);
      }
    }
  }
}

}  // namespace merivane::desktop
