// How each kind of shape looks on white paper.
#pragma once

#include "pictures/picture.h"

namespace merivane::pictures {

struct Style {
  const char* name;    // class in SVG, by which a page can colour it anew
  const char* fill;    // #rrggbb or "none"; the colour of a text
  const char* stroke;  // #rrggbb or "none"
  double width;        // of the stroke
  const char* dash;    // lengths of dashes; empty for a whole line
  double size;         // height of a text's letters; 0 for other shapes
  bool bold;
};

const Style& StyleOf(Ink ink);

// The same for what stays out of the plan: grey, but for the marks of changes.
Style FaintStyleOf(Ink ink);

// Font families in the order of preference, as CSS and SVG take them.
inline constexpr const char* kFonts =
    "'Segoe UI', 'Helvetica Neue', Arial, 'DejaVu Sans', sans-serif";

}  // namespace merivane::pictures
