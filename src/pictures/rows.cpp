#include <algorithm>
#include <array>
#include <limits>
#include <map>

#include "curves.h"
#include "layout.h"

namespace merivane::pictures {

namespace {

constexpr double kWidest = 1900;     // that stays in one row
constexpr double kRowWidth = 1500;   // of those that it is broken into
constexpr double kLeastOfRow = 0.6;  // the part of a row before the first place to break it
constexpr double kBetweenRows = 44;
constexpr double kMarkApart = 2 * kMarkRadius + 3;
constexpr double kStub = kColumnGap / 2;  // from a box to the mark beside it
constexpr double kFar = std::numeric_limits<double>::max();
constexpr double kStraddle = 8;  // a box in the way counts as so many edges

// How many of a sorted list lie before `x`.
double Before(const std::vector<double>& sorted, double x) {
  return static_cast<double>(std::lower_bound(sorted.begin(), sorted.end(), x) - sorted.begin());
}

class RowBreaker {
 public:
  RowBreaker(const Graph& graph, Layout& layout, int& number)
      : graph_(graph), layout_(layout), number_(number) {}

  void Run() {
    const int before = number_;
    FindCuts();
    for (const Point& centre : layout_.centres) rowOf_.push_back(RowAt(centre.x));
    BreakEdges();
    for (std::size_t row = 0; row < cuts_.size(); ++row) SpreadMarks(row);
    if (number_ > before) StackRows();
  }

 private:
  double Left(std::size_t node) const {
    return layout_.centres[node].x - graph_.nodes[node].width / 2;
  }
  double Right(std::size_t node) const {
    return layout_.centres[node].x + graph_.nodes[node].width / 2;
  }
  std::size_t RowAt(double x) const {
    return static_cast<std::size_t>(std::lower_bound(cuts_.begin(), cuts_.end(), x) -
                                    cuts_.begin());
  }

  void FindCuts() {
    if (layout_.width <= kWidest) return;
    std::vector<double> begins, ends, lefts, rights;
    for (const GraphEdge& edge : graph_.edges) {
      begins.push_back(std::min(Right(edge.from), Left(edge.to)));
      ends.push_back(std::max(Right(edge.from), Left(edge.to)));
    }
    for (std::size_t node = 0; node < graph_.nodes.size(); ++node) {
      lefts.push_back(Left(node));
      rights.push_back(Right(node));
    }
    for (auto* list : {&begins, &ends, &lefts, &rights}) std::sort(list->begin(), list->end());
    double start = 0;
    while (layout_.width - start > kWidest) {
      const double end = start + kRowWidth;
      double best = kFar;
      double cut = end;
      for (auto right =
               std::lower_bound(rights.begin(), rights.end(), start + kRowWidth * kLeastOfRow);
           right != rights.end() && *right + kStub <= end; ++right) {
        const double x = *right + kStub;
        const double cost = Before(begins, x) - Before(ends, x) +
                            kStraddle * (Before(lefts, x) - Before(rights, x));
        if (cost > best) continue;
        best = cost;
        cut = x;
      }
      cuts_.push_back(cut);
      start = cut;
    }
  }

  void BreakEdges() {
    marks_.resize(cuts_.size());
    for (std::size_t edge = 0; edge < layout_.routes.size(); ++edge) {
      const std::size_t from = rowOf_[graph_.edges[edge].from];
      const std::size_t to = rowOf_[graph_.edges[edge].to];
      Route& route = layout_.routes[edge];
      if (from == to && !route.curve.empty()) continue;
      if (from < to && Clips(route.curve, cuts_[from], cuts_[to - 1])) {
        Clip(route, from, to - 1);
      } else {
        MakeStubs(edge);
      }
    }
  }

  static bool Clips(const std::vector<Point>& curve, double first, double second) {
    return RunsRight(curve) && curve.front().x < first && second < curve.back().x;
  }

  void Clip(Route& route, std::size_t first, std::size_t second) {
    Continuation broken{.number = ++number_, .leaving = LeftPart(route.curve, cuts_[first])};
    route.curve = RightPart(route.curve, cuts_[second]);
    broken.end = {broken.leaving.back().x + kMarkRadius, broken.leaving.back().y};
    broken.begin = {route.curve.front().x - kMarkRadius, route.curve.front().y};
    route.continuation = std::move(broken);
    marks_[first].leaving.push_back(&route);
    marks_[second].arriving.push_back(&route);
  }

  // A mark right behind the one node and another right before the other, below the ways that are
  // whole.
  void MakeStubs(std::size_t edge) {
    const auto [from, to] = graph_.edges[edge];
    const auto shift = [](int count) { return kMarkApart * (count + 1); };
    const Point begin{Right(from), layout_.centres[from].y};
    const Point end{Left(to), layout_.centres[to].y};
    Continuation broken{.number = ++number_};
    broken.end = {begin.x + kStub, begin.y + shift(stubsBehind_[from]++)};
    broken.begin = {end.x - kStub - 6, end.y + shift(stubsBefore_[to]++)};
    broken.leaving = {begin};
    AddBend(broken.leaving, {broken.end.x - kMarkRadius, broken.end.y});
    Route& route = layout_.routes[edge];
    route.tip = end;
    route.curve = {{broken.begin.x + kMarkRadius, broken.begin.y}};
    AddBend(route.curve, {end.x - kArrowLength, end.y});
    route.continuation = std::move(broken);
  }

  struct Marks {
    std::vector<Route*> leaving;
    std::vector<Route*> arriving;
  };

  // `of` gives the mark and the end of the curve that reaches it, with its control point.
  template <typename Of>
  static void Spread(std::vector<Route*>& routes, Of of) {
    std::stable_sort(routes.begin(), routes.end(),
                     [&](Route* a, Route* b) { return of(*a)[0]->y < of(*b)[0]->y; });
    std::vector<double> wanted;
    wanted.reserve(routes.size());
    for (Route* route : routes) wanted.push_back(of(*route)[0]->y);
    const std::vector<double> heights =
        SpreadApart(wanted, std::vector<double>(wanted.size(), kMarkApart));
    for (std::size_t at = 0; at < routes.size(); ++at) {
      for (Point* point : of(*routes[at])) point->y = heights[at];
    }
  }

  void SpreadMarks(std::size_t cut) {
    Spread(marks_[cut].leaving, [](Route& route) {
      std::vector<Point>& curve = route.continuation->leaving;
      return std::array<Point*, 3>{&route.continuation->end, &curve.back(), &curve.end()[-2]};
    });
    Spread(marks_[cut].arriving, [](Route& route) {
      return std::array<Point*, 3>{&route.continuation->begin, &route.curve[0], &route.curve[1]};
    });
  }

  struct Extent {
    Point low{kFar, kFar};
    Point high{-kFar, -kFar};
    void Take(Point point, double halfWidth = 0, double halfHeight = 0) {
      low = {std::min(low.x, point.x - halfWidth), std::min(low.y, point.y - halfHeight)};
      high = {std::max(high.x, point.x + halfWidth), std::max(high.y, point.y + halfHeight)};
    }
    void Take(const std::vector<Point>& points) {
      for (const Point& point : points) Take(point);
    }
  };

  std::vector<Extent> Extents() const {
    std::vector<Extent> extents(cuts_.size() + 1);
    for (std::size_t node = 0; node < rowOf_.size(); ++node) {
      extents[rowOf_[node]].Take(layout_.centres[node], graph_.nodes[node].width / 2,
                                 graph_.nodes[node].height / 2);
    }
    for (std::size_t edge = 0; edge < layout_.routes.size(); ++edge) {
      const Route& route = layout_.routes[edge];
      Extent& arriving = extents[rowOf_[graph_.edges[edge].to]];
      arriving.Take(route.curve);
      if (!route.continuation) continue;
      arriving.Take(route.continuation->begin, kMarkRadius, kMarkRadius);
      extents[rowOf_[graph_.edges[edge].from]].Take(route.continuation->end, kMarkRadius,
                                                    kMarkRadius);
    }
    return extents;
  }

  void StackRows() {
    std::vector<Point> shifts;
    double top = 0;
    layout_.width = 0;
    for (const Extent& extent : Extents()) {
      shifts.push_back({-extent.low.x, top - extent.low.y});
      top += extent.high.y - extent.low.y + kBetweenRows;
      layout_.width = std::max(layout_.width, extent.high.x - extent.low.x);
    }
    layout_.height = top - kBetweenRows;
    const auto move = [](Point& point, Point by) { point = {point.x + by.x, point.y + by.y}; };
    for (std::size_t node = 0; node < rowOf_.size(); ++node) {
      move(layout_.centres[node], shifts[rowOf_[node]]);
    }
    for (std::size_t edge = 0; edge < layout_.routes.size(); ++edge) {
      Route& route = layout_.routes[edge];
      const Point from = shifts[rowOf_[graph_.edges[edge].from]];
      const Point to = shifts[rowOf_[graph_.edges[edge].to]];
      for (Point& point : route.curve) move(point, to);
      move(route.tip, to);
      if (!route.continuation) continue;
      for (Point& point : route.continuation->leaving) move(point, from);
      move(route.continuation->end, from);
      move(route.continuation->begin, to);
    }
  }

  const Graph& graph_;
  Layout& layout_;
  int& number_;
  std::vector<double> cuts_;        // x of the places between rows
  std::vector<std::size_t> rowOf_;  // of each node
  std::vector<Marks> marks_;        // at each cut
  std::map<std::size_t, int> stubsBehind_;
  std::map<std::size_t, int> stubsBefore_;
};

}  // namespace

void BreakIntoRows(const Graph& graph, Layout& layout, int& number) {
  RowBreaker(graph, layout, number).Run();
}

}  // namespace merivane::pictures
