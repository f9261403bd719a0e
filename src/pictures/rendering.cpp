#include "pictures/rendering.h"

#include <algorithm>
#include <cmath>

#include "runtime/run_time_error.h"

namespace merivane::pictures {

using namespace runtime;

double PngScale(const Picture& picture) {
  constexpr double kMostDots = 60'000'000;  // in all
  constexpr double kMostSide = 32'000;
  return std::min({kSharpness, std::sqrt(kMostDots / (picture.width * picture.height)),
                   kMostSide / picture.width, kMostSide / picture.height});
}

double PdfScale(const Picture& picture) {
  constexpr double kMostPage = 14'400;
  return std::min(kPointsOfPixel, kMostPage / std::max(picture.width, picture.height));
}

void CanNotDraw(const std::string& why) {
  throw RunTimeError(kDeviceIoError, "the picture can't be drawn: " + why);
}

}  // namespace merivane::pictures
