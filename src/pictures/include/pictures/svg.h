// A picture as SVG.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "pictures/picture.h"

namespace merivane::pictures {

// A whole SVG document in UTF-8, on white; `take` gets it piece by piece. Every text comes out as
// text, whatever it holds.
std::string ToSvgFile(const Picture& picture);
void ToSvgFile(const Picture& picture, const std::function<void(std::string_view piece)>& take);

// The same as an element for an HTML page, with a class for each kind of shape, so that the page
// can colour it. Ids of figures carry the picture's id in front ("scenario-3-unit-5").
std::string ToSvgElement(const Picture& picture);

// The same picture for paper, which the element above stands for on a screen: sheets of at most
// this size, each with what is frozen. They draw the element again by its id, the picture's and
// "-picture".
std::string ToSvgSheets(const Picture& picture, double width, double height);

}  // namespace merivane::pictures
