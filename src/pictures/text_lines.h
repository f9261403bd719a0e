// How wide texts are, how they fit into boxes, and how XML and HTML take them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "pictures/picture.h"

namespace merivane::pictures {

// Texts are Windows-1252. The widths are those of a wide face, so that no other face needs more,
// and the same on every machine.
double WidthOf(const std::string& text, Ink ink);

// The text, or what fits of it with an ellipsis behind.
std::string Shortened(const std::string& text, double width, Ink ink);

// At most `most` lines, broken at blanks where that can be; the last one is shortened.
std::vector<std::string> Wrapped(const std::string& text, double width, std::size_t most, Ink ink);

// Windows-1252 as UTF-8 in which nothing is markup, for content and attributes in double quotes.
// Line ends stay; a control character that XML refuses becomes U+FFFD.
std::string Escaped(std::string_view text);

// With at most two decimals: "12", "12.5".
std::string Number(double value);

}  // namespace merivane::pictures
