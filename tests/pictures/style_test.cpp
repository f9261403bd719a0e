#include "pictures/style.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "page_text.h"

namespace merivane::test {

using namespace pictures;

namespace {

bool IsGround(Ink ink) { return ink == Ink::kGrid || ink == Ink::kWeekend || ink == Ink::kGround; }

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

TEST(StyleTest, TextsAndLinesCanBeToldFromEachGroundAlsoWhereTheyAreGrey) {
  constexpr double kText = 4.5, kLine = 3;
  const std::string page = ReportStyle();
  for (const Ground ground : {Ground::kLight, Ground::kDark}) {
    const Style paper = StyleOf(Ink::kGround, ground), weekend = StyleOf(Ink::kWeekend, ground);
    const Style sheet = StyleOf(Ink::kUnit, ground);
    for (int at = 0; at < static_cast<int>(Ink::kCount); ++at) {
      const Ink ink = static_cast<Ink>(at);
      if (IsGround(ink)) continue;
      for (const Style& style : {StyleOf(ink, ground), FaintStyleOf(ink, ground)}) {
        if (std::string_view(style.stroke) != "none") {
          EXPECT_GE(Contrast(style.stroke, paper.fill), kLine) << style.name << style.stroke;
          continue;
        }
        const bool isText = style.size > 0;
        for (const Style& below : {paper, weekend, isText ? sheet : paper}) {
          EXPECT_GE(Contrast(style.fill, below.fill), isText ? kText : kLine)
              << style.name << style.fill << below.name;
        }
      }
      if (ground == Ground::kDark) {
        EXPECT_NE(page.find(std::string("svg .") + StyleOf(ink).name + " {"), std::string::npos);
      }
    }
  }
}

}  // namespace
}  // namespace merivane::test
