// How wide texts are, and how they fit into boxes.
#pragma once

#include <cstddef>
#include <string>
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

}  // namespace merivane::pictures
