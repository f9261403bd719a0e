// What stands in a picture.
#pragma once

#include <algorithm>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "pictures/picture.h"

namespace merivane::test {

inline const pictures::Figure& Find(const pictures::Picture& picture, const std::string& id) {
  const auto found = std::ranges::find(picture.figures, id, &pictures::Figure::id);
  if (found == picture.figures.end()) throw std::runtime_error(id + " is missing");
  return *found;
}

// The shapes of one kind.
template <typename Kind>
std::vector<Kind> ShapesOf(const pictures::Figure& figure) {
  std::vector<Kind> shapes;
  for (const pictures::Shape& shape : figure.shapes) {
    if (const auto* one = std::get_if<Kind>(&shape)) shapes.push_back(*one);
  }
  return shapes;
}

inline bool Overlap(const pictures::Area& a, const pictures::Area& b) {
  return a.Right() > b.left && b.Right() > a.left && a.Bottom() > b.top && b.Bottom() > a.top;
}

}  // namespace merivane::test
