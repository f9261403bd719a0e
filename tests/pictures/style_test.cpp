#include "pictures/style.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace merivane::test {

using namespace pictures;

namespace {

constexpr const char* kPaper = "#ffffff";
constexpr const char* kWeekend = "#f3f5f8";  // the darkest ground that lines and texts stand on
const std::string kNone = "none";

// Relative luminance as WCAG 2 defines it.
double Luminance(const std::string& colour) {
  const auto part = [&](std::size_t at) {
    const double value = std::stoi(colour.substr(at, 2), nullptr, 16) / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(1) + 0.7152 * part(3) + 0.0722 * part(5);
}

double Contrast(const std::string& colour, const std::string& ground) {
  const double a = Luminance(colour), b = Luminance(ground);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

TEST(StyleTest, TextsAndLinesCanBeToldFromTheGroundAlsoWhereTheyAreGrey) {
  constexpr double kText = 4.5, kLine = 3;
  for (int at = 0; at < static_cast<int>(Ink::kCount); ++at) {
    const Ink ink = static_cast<Ink>(at);
    if (ink == Ink::kGrid || ink == Ink::kWeekend) continue;  // ground themselves
    for (const Style& style : {StyleOf(ink), FaintStyleOf(ink)}) {
      const char* ground = style.stroke == kNone ? kWeekend : kPaper;
      if (style.stroke != kNone) {
        EXPECT_GE(Contrast(style.stroke, ground), kLine) << style.name << style.stroke;
      } else {
        EXPECT_GE(Contrast(style.fill, ground), style.size > 0 ? kText : kLine)
            << style.name << style.fill;
      }
    }
  }
}

}  // namespace
}  // namespace merivane::test
