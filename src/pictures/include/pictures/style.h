// How each kind of shape looks on white paper and on a dark screen.
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

enum class Ground { kLight, kDark };

Style StyleOf(Ink ink, Ground ground = Ground::kLight);

// The same for what stays out of the plan: grey, but for the marks of changes.
Style FaintStyleOf(Ink ink, Ground ground = Ground::kLight);

// Font families in the order of preference, as CSS and SVG take them.
inline constexpr const char* kFonts =
    "'Segoe UI', 'Helvetica Neue', Arial, 'DejaVu Sans', sans-serif";

}  // namespace merivane::pictures
