// The shapes of a picture in a widget or on paper.
#pragma once

#include <QPainter>

#include "pictures/picture.h"

namespace merivane::desktop {

using namespace pictures;

// Where the figure's shapes lie, strokes and texts included.
QRectF BoundsOf(const pictures::Figure& figure);

// Texts can be left out where they would be too small to read.
void PaintFigure(QPainter& painter, const pictures::Figure& figure, bool texts = true);

}  // namespace merivane::desktop
