#include "pictures/picture.h"

#include <algorithm>
#include <utility>

namespace merivane::pictures {

namespace {

constexpr double kGap = 6;

void MoveDown(Shape& shape, double by) {
  if (auto* box = std::get_if<Box>(&shape)) {
    box->area.top += by;
  } else if (auto* path = std::get_if<Path>(&shape)) {
    for (Point& point : path->points) point.y += by;
  } else {
    std::get<Text>(shape).at.y += by;
  }
}

}  // namespace

Picture Stacked(std::vector<Picture> pictures) {
  if (pictures.size() == 1) return std::move(pictures.front());
  Picture all;
  for (Picture& picture : pictures) {
    if (all.figures.empty()) {
      all.id = picture.id;
      all.title = picture.title;
    } else {
      all.height += kGap;
    }
    all.description += (all.description.empty() ? "" : "\n") + picture.description;
    all.width = std::max(all.width, picture.width);
    for (Figure& figure : picture.figures) {
      figure.area.top += all.height;
      for (Shape& shape : figure.shapes) MoveDown(shape, all.height);
      all.figures.push_back(std::move(figure));
    }
    all.height += picture.height;
  }
  return all;
}

}  // namespace merivane::pictures
