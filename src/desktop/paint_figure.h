// The shapes of a picture in a widget or on paper.
#pragma once

#include <QPainter>
#include <vector>

#include "pictures/picture.h"
#include "pictures/style.h"

class QPalette;
class QPrinter;

namespace merivane::desktop {

using namespace pictures;

// Where the figure's shapes lie, strokes and texts included.
QRectF BoundsOf(const pictures::Figure& figure);

// What colours those of a window go with.
pictures::Ground GroundOf(const QPalette& palette);

// Texts can be left out where they would be too small to read.
enum class FigureTexts { kShown, kLeftOut };

void PaintFigure(QPainter& painter, const pictures::Figure& figure,
                 pictures::Ground ground = pictures::Ground::kLight,
                 FigureTexts texts = FigureTexts::kShown);

// Each picture begins on a page of its own. One that is wider than the paper is made smaller, down
// to two fifths; what is larger still goes on over several pages, from left to right, then
// downwards.
void PrintPictures(QPrinter& printer, const std::vector<pictures::Picture>& pictures);

}  // namespace merivane::desktop
