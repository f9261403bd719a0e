// What goes between a program that has pictures to write and the desktop program, which renders
// them for it on Windows (kRenderWord as its first word, the ending as its second). Both are of one
// version; what is no such text ends in error 57.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "pictures/rendering.h"

namespace merivane::pictures {

inline constexpr const char* kRenderWord = "--render";

std::string Packed(const std::vector<Picture>& pictures);
std::vector<Picture> UnpackedPictures(std::string_view bytes);

std::string Packed(const Rendering& rendering);
Rendering UnpackedRendering(std::string_view bytes);

}  // namespace merivane::pictures
