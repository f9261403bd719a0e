#include "pictures/marks.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace merivane::pictures {

namespace {

constexpr double kRadius = 8;

Point Between(const Point& a, const Point& b) { return {(a.x + b.x) / 2, (a.y + b.y) / 2}; }

// Of the piece in the midst of a curve.
Point MiddleOf(const Path& path) {
  const std::vector<Point>& points = path.points;
  if (!path.curved) return Between(points.front(), points.back());
  const std::size_t at = (points.size() - 1) / 3 / 2 * 3;
  const Point first = Between(points[at], points[at + 1]);
  const Point second = Between(points[at + 1], points[at + 2]);
  const Point third = Between(points[at + 2], points[at + 3]);
  return Between(Between(first, second), Between(second, third));
}

void AddSign(Mark mark, Point centre, Figure& figure) {
  const Area disc{centre.x - kRadius, centre.y - kRadius, 2 * kRadius, 2 * kRadius};
  figure.shapes.push_back(Box{Ink::kGround, disc, kRadius});
  figure.shapes.push_back(Box{InkOf(mark), disc, kRadius});
  figure.shapes.push_back(
      Text{Ink::kJunctionSign, {centre.x, centre.y + 5}, SignOf(mark), Anchor::kMiddle});
}

}  // namespace

const char* SignOf(Mark mark) {
  switch (mark) {
    case Mark::kAdded:
      return "+";
    case Mark::kChanged:
      return "~";
    case Mark::kRemoved:
      return "\x96";
    case Mark::kNone:
      break;
  }
  return "";
}

Ink InkOf(Mark mark) {
  if (mark == Mark::kAdded) return Ink::kAdded;
  return mark == Mark::kRemoved ? Ink::kRemoved : Ink::kChanged;
}

void MarkFigure(Mark mark, Figure& figure) {
  if (mark == Mark::kNone) return;
  if (figure.area.width > 0) {
    figure.shapes.push_back(Box{InkOf(mark), figure.area});
    const double down = std::min(figure.area.height / 2, 1.5 * kRadius);
    AddSign(mark, {figure.area.left, figure.area.top + down}, figure);
    return;
  }
  std::vector<Path> lines;
  for (const Shape& shape : figure.shapes) {
    if (const auto* path = std::get_if<Path>(&shape)) lines.push_back(*path);
  }
  if (lines.empty()) return;
  const Point middle = MiddleOf(lines.front());
  for (Path& line : lines) {
    line.ink = InkOf(mark);
    figure.shapes.emplace_back(std::move(line));
  }
  AddSign(mark, middle, figure);
}

}  // namespace merivane::pictures
