// Pictures as files.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "pictures/picture.h"

namespace merivane::pictures {

// .svg, .png and .pdf, in any case of letters.
bool IsPictureName(const std::string& path);

// Writes the pictures by the ending of `path` (UTF-8): into SVG and PNG one below the other, into
// PDF each on a page of its own size. Gives the factor by which a PNG had to be smaller than usual,
// or a PDF's page than it is, to stay within what programs read; 1 where it did not.
// A file that fails leaves what stood there before. Errors: 57, 61, 70, 76.
double WritePictures(const std::vector<Picture>& pictures, const std::string& path);

// Puts the bytes in the place of `path`: written beside it, then renamed over it. The same errors.
void WriteWholeFile(const std::string& path, std::string_view bytes);

}  // namespace merivane::pictures
