// What became of an element since an earlier model or plan, marked on its figure by a colour and by
// a sign.
#pragma once

#include "pictures/picture.h"

namespace merivane::pictures {

enum class Mark { kNone, kAdded, kChanged, kRemoved };

// "+", "~" and a dash (Windows-1252); empty for none.
const char* SignOf(Mark mark);

// The ink of its frame. REQUIRES: some mark.
Ink InkOf(Mark mark);

// Puts a frame around the figure's area, or draws its lines over where it has none, and the sign
// upon that. None leaves the figure as it is.
void MarkFigure(Mark mark, Figure& figure);

}  // namespace merivane::pictures
