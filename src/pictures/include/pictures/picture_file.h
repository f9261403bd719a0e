// Pictures as files.
#pragma once

#include <string>
#include <vector>

#include "pictures/picture.h"
#include "runtime/new_file.h"

namespace merivane::pictures {

using namespace runtime;

// What pictures can be written as: .svg, .png and .pdf; on Windows .svg alone where the desktop
// program doesn't lie beside this one.
std::vector<std::string> PictureEndings();
std::string PictureEndingWords();  // ".svg, .png or .pdf"
// One of them, in any case of letters.
bool IsPictureName(const std::string& path);

// Writes the pictures by the ending of the output: into SVG and PNG one below the other, into
// PDF each on a page of its own size. Gives the factor by which a PNG had to be smaller than usual,
// or a PDF's page than it is, to stay within what programs read; 1 where it did not. Errors: 57 a
// picture that can't be drawn, and those of an OutputFile. REQUIRES: one picture at least.
double WritePictures(std::vector<Picture> pictures, const Output& output);

}  // namespace merivane::pictures
