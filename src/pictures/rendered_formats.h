// The files of pictures that a library of this system renders from SVG.
#pragma once

#include <string>
#include <vector>

#include "pictures/picture.h"

namespace merivane::pictures {

struct Rendering {
  std::string bytes;
  double factor = 1;  // by which it had to be smaller than usual
};

struct RenderedFormat {
  const char* ending;                                    // ".png"
  Rendering (*render)(const std::vector<Picture>& all);  // error 57: can't be drawn
};

const std::vector<RenderedFormat>& RenderedFormats();  // none on Windows

}  // namespace merivane::pictures
