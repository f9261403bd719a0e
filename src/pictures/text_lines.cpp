#include "text_lines.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "pictures/style.h"

namespace merivane::pictures {

namespace {

constexpr char kEllipsis = '\x85';
constexpr double kBold = 1.1;

// Hundredths of the letters' height, from code 32.
constexpr std::array<std::uint8_t, 224> kWidths{
    32,  40, 46, 84,  64,  95, 78,  27,  39, 39, 50, 84,  32, 36,  32,  34, 64,  64,  64, 64,  64,
    64,  64, 64, 64,  64,  34, 34,  84,  84, 84, 53, 100, 68, 69,  70,  77, 63,  58,  77, 75,  29,
    29,  66, 56, 86,  75,  79, 60,  79,  69, 63, 61, 73,  68, 99,  69,  61, 69,  39,  34, 39,  84,
    50,  50, 61, 63,  55,  63, 62,  35,  63, 63, 28, 28,  58, 28,  97,  63, 61,  63,  63, 41,  52,
    39,  63, 59, 82,  59,  59, 52,  64,  34, 64, 84, 60,  64, 103, 32,  35, 52,  100, 50, 50,  50,
    134, 63, 40, 107, 103, 69, 103, 103, 32, 32, 52, 52,  59, 50,  100, 50, 100, 52,  40, 102, 103,
    52,  61, 32, 40,  64,  64, 64,  64,  34, 50, 50, 100, 47, 61,  84,  36, 100, 50,  50, 84,  40,
    40,  50, 64, 64,  32,  50, 40,  47,  61, 97, 97, 97,  53, 68,  68,  68, 68,  68,  68, 97,  70,
    63,  63, 63, 63,  29,  29, 29,  29,  77, 75, 79, 79,  79, 79,  79,  84, 79,  73,  73, 73,  73,
    61,  60, 63, 61,  61,  61, 61,  61,  61, 98, 55, 62,  62, 62,  62,  28, 28,  28,  28, 61,  63,
    61,  61, 61, 61,  61,  84, 61,  63,  63, 63, 63, 59,  63, 59,
};

double WidthOf(char letter) {
  const auto code = static_cast<unsigned char>(letter);
  return code < 32 ? kWidths['?' - 32] : kWidths[code - 32U];
}

// Of the longest front of `text` that fits.
std::size_t FittingLength(const std::string& text, double width, Ink ink) {
  const Style& style = StyleOf(ink);
  const double most = width * 100 / (style.size * (style.bold ? kBold : 1));
  double used = 0;
  std::size_t length = 0;
  while (length < text.size() && (used += WidthOf(text[length])) <= most) ++length;
  return length;
}

}  // namespace

double WidthOf(const std::string& text, Ink ink) {
  double hundredths = 0;
  for (const char letter : text) hundredths += WidthOf(letter);
  const Style& style = StyleOf(ink);
  return hundredths / 100 * style.size * (style.bold ? kBold : 1);
}

std::string Shortened(const std::string& text, double width, Ink ink) {
  if (WidthOf(text, ink) <= width) return text;
  const double ellipsis = WidthOf(std::string(1, kEllipsis), ink);
  return text.substr(0, FittingLength(text, std::max(0.0, width - ellipsis), ink)) + kEllipsis;
}

std::vector<std::string> Wrapped(const std::string& text, double width, std::size_t most, Ink ink) {
  std::vector<std::string> lines;
  std::string rest = text;
  while (lines.size() + 1 < most && WidthOf(rest, ink) > width) {
    std::size_t length = std::max<std::size_t>(1, FittingLength(rest, width, ink));
    std::size_t next = length;
    const std::size_t blank = rest.rfind(' ', length);
    if (blank != std::string::npos && blank > 0) {
      length = blank;
      next = blank + 1;
    }
    lines.push_back(rest.substr(0, length));
    rest.erase(0, next);
  }
  lines.push_back(Shortened(rest, width, ink));
  return lines;
}

}  // namespace merivane::pictures
