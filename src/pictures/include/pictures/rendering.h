// Pictures as dots and as pages, whoever draws them.
#pragma once

#include <string>

#include "pictures/picture.h"

namespace merivane::pictures {

struct Rendering {
  std::string bytes;
  double factor = 1;  // by which it had to be smaller than usual
};

inline constexpr double kSharpness = 2;  // dots of a PNG for each pixel
inline constexpr double kPointsOfPixel = 0.75;

// Dots of a PNG, or points of a PDF's page, for each pixel: the usual ones, or fewer where the
// picture would be larger than programs read.
double PngScale(const Picture& picture);
double PdfScale(const Picture& picture);

// Error 57.
[[noreturn]] void CanNotDraw(const std::string& why);

// Where a library ended its process.
inline constexpr const char* kGaveUp =
    "its library gave up, as it does where no thread can be started or memory runs out";

}  // namespace merivane::pictures
