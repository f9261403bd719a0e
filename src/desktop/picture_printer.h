// Pictures on paper.
#pragma once

#include <vector>

#include "pictures/picture.h"

class QPrinter;

namespace merivane::desktop {

using namespace pictures;

// Each picture begins on a page of its own. One that is wider than the paper is made smaller, down
// to two fifths; what is larger still goes on over several pages, from left to right, then
// downwards.
void PrintPictures(QPrinter& printer, const std::vector<pictures::Picture>& pictures);

}  // namespace merivane::desktop
