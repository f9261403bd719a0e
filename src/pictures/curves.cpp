#include "curves.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace merivane::pictures {

namespace {

constexpr int kHalvings = 40;

Point Between(Point a, Point b, double part) {
  return {a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part};
}

using Piece = std::array<Point, 4>;

// De Casteljau: the points of both halves, which share the middle one.
std::array<Point, 7> Split(const Piece& piece, double part) {
  const Point a = Between(piece[0], piece[1], part);
  const Point b = Between(piece[1], piece[2], part);
  const Point c = Between(piece[2], piece[3], part);
  const Point ab = Between(a, b, part);
  const Point bc = Between(b, c, part);
  return {piece[0], a, ab, Between(ab, bc, part), bc, c, piece[3]};
}

std::array<Point, 7> SplitAt(const Piece& piece, double x) {
  double low = 0;
  double high = 1;
  for (int step = 0; step < kHalvings; ++step) {
    const double middle = (low + high) / 2;
    (Split(piece, middle)[3].x < x ? low : high) = middle;
  }
  return Split(piece, low);
}

// The first point of the piece that reaches `x`.
std::size_t PieceAt(const std::vector<Point>& curve, double x) {
  std::size_t at = 0;
  while (at + 6 < curve.size() && curve[at + 3].x < x) at += 3;
  return at;
}

Piece PieceOf(const std::vector<Point>& curve, std::size_t at) {
  return {curve[at], curve[at + 1], curve[at + 2], curve[at + 3]};
}

}  // namespace

void AddBend(std::vector<Point>& curve, Point to) {
  const Point from = curve.back();
  const double middle = (from.x + to.x) / 2;
  curve.insert(curve.end(), {{middle, from.y}, {middle, to.y}, to});
}

void AddLine(std::vector<Point>& curve, Point to) {
  const Point from = curve.back();
  curve.insert(curve.end(), {Between(from, to, 1.0 / 3), Between(from, to, 2.0 / 3), to});
}

void AddCurve(std::vector<Point>& curve, const std::vector<Point>& more) {
  if (curve.empty()) {
    curve = more;
  } else if (!more.empty()) {
    curve.insert(curve.end(), more.begin() + 1, more.end());
  }
}

bool RunsRight(const std::vector<Point>& curve) {
  return curve.size() >= 4 &&
         std::is_sorted(curve.begin(), curve.end(), [](Point a, Point b) { return a.x < b.x; });
}

std::vector<Point> LeftPart(const std::vector<Point>& curve, double x) {
  const std::size_t at = PieceAt(curve, x);
  const auto halves = SplitAt(PieceOf(curve, at), x);
  std::vector<Point> part(curve.begin(), curve.begin() + static_cast<std::ptrdiff_t>(at));
  part.insert(part.end(), halves.begin(), halves.begin() + 4);
  return part;
}

std::vector<Point> RightPart(const std::vector<Point>& curve, double x) {
  const std::size_t at = PieceAt(curve, x);
  const auto halves = SplitAt(PieceOf(curve, at), x);
  std::vector<Point> part(halves.begin() + 3, halves.end());
  part.insert(part.end(), curve.begin() + static_cast<std::ptrdiff_t>(at) + 4, curve.end());
  return part;
}

std::vector<double> SpreadApart(const std::vector<double>& wanted,
                                const std::vector<double>& apart) {
  struct Run {
    double sum;
    std::size_t count;
    double Mean() const { return sum / static_cast<double>(count); }
  };
  std::vector<double> offsets(wanted.size());
  std::vector<Run> runs;
  for (std::size_t at = 0; at < wanted.size(); ++at) {
    if (at > 0) offsets[at] = offsets[at - 1] + apart[at];
    Run run{wanted[at] - offsets[at], 1};
    while (!runs.empty() && runs.back().Mean() > run.Mean()) {
      run.sum += runs.back().sum;
      run.count += runs.back().count;
      runs.pop_back();
    }
    runs.push_back(run);
  }
  std::vector<double> heights;
  for (const Run& run : runs) {
    for (std::size_t i = 0; i < run.count; ++i) {
      heights.push_back(run.Mean() + offsets[heights.size()]);
    }
  }
  return heights;
}

}  // namespace merivane::pictures
