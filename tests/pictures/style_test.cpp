#include "pictures/style.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <regex>
#include <string>

#include "report_style.h"

namespace merivane::test {

using namespace pictures;

namespace {

constexpr const char* kPaper = "#ffffff";
constexpr const char* kWeekend = "#f3f5f8";  // the darkest ground that lines and texts stand on
const std::string kNone = "none";

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

TEST(StyleTest, TextsAndLinesCanBeToldFromTheGroundAlsoWhereTheyAreGrey) {
  constexpr double kText = 4.5, kLine = 3;
  for (int at = 0; at < static_cast<int>(Ink::kCount); ++at) {
    const Ink ink = static_cast<Ink>(at);
    if (IsGround(ink)) continue;
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

// What a dark page's rules say of a class, otherwise the colour of light ones.
std::string InTheDark(const std::string& name, const std::string& property,
                      const std::string& otherwise) {
  const std::string style = kReportStyle;
  const std::size_t dark = style.find("prefers-color-scheme: dark");
  const std::string rules = style.substr(dark, style.find("@media print") - dark);
  const std::regex rule("svg \\." + name + "(,[^{]*|\\s+)\\{([^}]*)\\}");
  const std::regex colour(property + ": (#[0-9a-f]{6})");
  std::smatch block, found;
  if (!std::regex_search(rules, block, rule)) return otherwise;
  const std::string told = block[2];
  return std::regex_search(told, found, colour) ? found[1].str() : otherwise;
}

TEST(StyleTest, ADarkPageCanBeReadToo) {
  const std::string paper = "#14191f", sheet = InTheDark("unit", "fill", kPaper);
  for (int at = 0; at < static_cast<int>(Ink::kCount); ++at) {
    const Ink ink = static_cast<Ink>(at);
    if (IsGround(ink)) continue;
    const Style& style = StyleOf(ink);
    if (style.stroke != kNone) {
      EXPECT_GE(Contrast(InTheDark(style.name, "stroke", style.stroke), paper), 3) << style.name;
      continue;
    }
    const std::string colour = InTheDark(style.name, "fill", style.fill);
    EXPECT_GE(Contrast(colour, paper), style.size > 0 ? 4.5 : 3) << style.name << colour;
    if (style.size > 0) {
      EXPECT_GE(Contrast(colour, sheet), 4.5) << style.name;
    }
  }
}

}  // namespace
}  // namespace merivane::test
