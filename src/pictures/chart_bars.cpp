#include "chart_bars.h"

#include <algorithm>

namespace merivane::pictures {

namespace {

constexpr double kHalf = 6;       // of a bar's height
constexpr double kThin = 1.5;     // of one of the plan as it was
constexpr double kDiamond = 6.5;  // half of a milestone
constexpr double kCap = 5;        // half of a summary's point
constexpr double kLeast = 2;      // width of the shortest bar
constexpr double kLane = 8;       // beside the bars
constexpr double kInset = 4;      // from a bar's end to the line that leaves or reaches it
constexpr double kArrowLength = 5;
constexpr double kArrowHalf = 3;

Path Closed(Ink ink, std::vector<Point> points) {
  return {.ink = ink, .points = std::move(points), .closed = true};
}

void AddArrow(Ink ink, Point tip, double forwardX, double forwardY, Figure& figure) {
  const Point base{tip.x - forwardX * kArrowLength, tip.y - forwardY * kArrowLength};
  figure.shapes.push_back(
      Closed(ink, {tip,
                   {base.x + forwardY * kArrowHalf, base.y + forwardX * kArrowHalf},
                   {base.x - forwardY * kArrowHalf, base.y - forwardX * kArrowHalf}}));
}

}  // namespace

double Bar::Left() const { return kind == BarKind::kMilestone ? start - kDiamond : start; }

double Bar::Right() const {
  return kind == BarKind::kMilestone ? start + kDiamond : std::max(finish, start + kLeast);
}

void AddBar(const Bar& bar, Figure& figure) {
  const double left = bar.Left();
  const double right = bar.Right();
  if (bar.kind == BarKind::kMilestone) {
    figure.shapes.push_back(Closed(Ink::kMilestone, {{left, bar.y},
                                                     {bar.start, bar.y - kDiamond},
                                                     {right, bar.y},
                                                     {bar.start, bar.y + kDiamond}}));
    return;
  }
  if (bar.kind == BarKind::kBefore || bar.kind == BarKind::kOverload) {
    const double half = bar.kind == BarKind::kBefore ? kThin : kHalf;
    figure.shapes.push_back(Box{bar.kind == BarKind::kBefore ? Ink::kBefore : Ink::kOverload,
                                {left, bar.y - half, right - left, 2 * half}});
    return;
  }
  if (bar.kind != BarKind::kSummary) {
    figure.shapes.push_back(Box{bar.kind == BarKind::kCritical ? Ink::kCritical : Ink::kTask,
                                {left, bar.y - kHalf, right - left, 2 * kHalf},
                                right - left > 6 ? 2.0 : 0.0});
    return;
  }
  const double cap = std::min(kCap, (right - left) / 2);
  figure.shapes.push_back(Closed(Ink::kSummary, {{left, bar.y - kHalf},
                                                 {right, bar.y - kHalf},
                                                 {right, bar.y + kHalf},
                                                 {right - cap, bar.y},
                                                 {left + cap, bar.y},
                                                 {left, bar.y + kHalf}}));
}

Figure DrawTaskLink(const Bar& predecessor, const Bar& successor, schedule::LinkKind kind,
                    bool critical) {
  Figure figure;
  const Ink line = critical ? Ink::kCriticalLink : Ink::kTaskLink;
  const Ink arrow = critical ? Ink::kCriticalArrow : Ink::kTaskArrow;
  const bool fromFinish = LeavesFinish(kind);
  const bool toFinish = ReachesFinish(kind);
  const double from = fromFinish ? predecessor.Right() : predecessor.Left();
  const double to = toFinish ? successor.Right() : successor.Left();
  const double down = successor.y > predecessor.y ? 1 : -1;
  std::vector<Point> way;
  if (fromFinish && !toFinish && successor.start >= predecessor.finish - 1) {
    // Down or up beside the row's text, then between the rows.
    const bool point = successor.kind == BarKind::kMilestone;
    const double leave = predecessor.kind == BarKind::kMilestone
                             ? predecessor.start
                             : std::max(predecessor.Left(), from - kInset);
    const double turn = point ? successor.start : std::min(to + kInset, successor.Right());
    const Point tip{std::max(leave, turn), successor.y - down * (point ? kDiamond : kHalf + 0.5)};
    const double between = tip.y - down * (kArrowLength + 1);
    way = {{leave, predecessor.y + down * kHalf}, {leave, between}, {tip.x, between}, tip};
    way.back().y -= down * kArrowLength;
    AddArrow(arrow, tip, 0, down, figure);
  } else {
    way.push_back({from, predecessor.y});
    const double leave = fromFinish ? kLane : -kLane;
    const double arrive = toFinish ? kLane : -kLane;
    if (fromFinish == toFinish) {
      const double lane = fromFinish ? std::max(from, to) + kLane : std::min(from, to) - kLane;
      way.insert(way.end(), {{lane, predecessor.y}, {lane, successor.y}});
    } else {
      const double between = successor.y - down * (kHalf + 6);
      way.insert(way.end(), {{from + leave, predecessor.y},
                             {from + leave, between},
                             {to + arrive, between},
                             {to + arrive, successor.y}});
    }
    const double forward = toFinish ? -1 : 1;
    way.push_back({to - forward * kArrowLength, successor.y});
    AddArrow(arrow, {to, successor.y}, forward, 0, figure);
  }
  figure.shapes.insert(figure.shapes.begin(), Path{.ink = line, .points = std::move(way)});
  return figure;
}

}  // namespace merivane::pictures
