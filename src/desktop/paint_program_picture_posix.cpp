#include <QPainter>
#include <QSvgRenderer>

#include "program_picture.h"

// The linker keeps the resources of a static library only where they are asked for by name.
static void TakeResources() { Q_INIT_RESOURCE(merivane); }

namespace merivane::desktop {

void PaintPicture(QPainter& painter, const QRectF& place) {
  TakeResources();
  QSvgRenderer renderer(QStringLiteral(":/merivane.svg"));
  renderer.render(&painter, place);
}

}  // namespace merivane::desktop
