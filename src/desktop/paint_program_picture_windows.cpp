#include <QPainter>
#include <QPixmap>

#include "program_picture.h"

// The linker keeps the resources of a static library only where they are asked for by name.
static void TakeResources() { Q_INIT_RESOURCE(merivane_dots); }

namespace merivane::desktop {

void PaintPicture(QPainter& painter, const QRectF& place) {
  TakeResources();
  const QPixmap picture(QStringLiteral(":/merivane.png"));
  painter.save();
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawPixmap(place, picture, picture.rect());
  painter.restore();
}

}  // namespace merivane::desktop
