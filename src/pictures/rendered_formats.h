// The files of pictures that somebody else's library renders.
#pragma once

#include <chrono>
#include <cstddef>
#include <vector>

#include "pictures/rendering.h"

namespace merivane::pictures {

// Of the process that renders.
inline constexpr std::chrono::minutes kLongestRendering{5};
inline constexpr std::size_t kRenderingMemory = std::size_t{2} << 30U;  // bytes

struct RenderedFormat {
  const char* ending;                                    // ".png"
  Rendering (*render)(const std::vector<Picture>& all);  // error 57: can't be drawn
};

// None on Windows where the desktop program, which draws them, doesn't lie beside this one.
const std::vector<RenderedFormat>& RenderedFormats();

}  // namespace merivane::pictures
