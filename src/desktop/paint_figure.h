// The shapes of a picture in a widget or on paper.
#pragma once

#include <QPainter>
#include <vector>

#include "pictures/picture.h"

class QPrinter;

namespace merivane::desktop {

using namespace pictures;

// Where the figure's shapes lie, strokes and texts included.
QRectF BoundsOf(const pictures::Figure& figure);

// Texts can be left out where they would be too small to read.
void PaintFigure(QPainter& painter, const pictures::Figure& figure, bool texts = true);

// Each picture begins on a page of its own. One that is wider than the paper is made smaller, down
// to two fifths; what is larger still goes on over several pages, from left to right, then
// downwards.
void PrintPictures(QPrinter& printer, const std::vector<pictures::Picture>& pictures);

}  // namespace merivane::desktop
