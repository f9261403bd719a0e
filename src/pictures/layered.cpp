#include <algorithm>
#include <numeric>

#include "curves.h"
#include "layout.h"

namespace merivane::pictures {

namespace {

constexpr int kSweeps = 4;
constexpr double kWaypointHeight = 12;
// Beyond so many for an element, an edge runs straight instead of around what lies between.
constexpr std::size_t kWaypointsPerElement = 4;

// A node, or a point of an edge in a column that it passes.
struct Cell {
  std::size_t column = 0;
  double width = 0;
  double height = kWaypointHeight;
  double wanted = 0;
  double y = 0;
  std::vector<std::size_t> before = {};  // cells in columns to the left
  std::vector<std::size_t> behind = {};
};

class Columns {
 public:
  explicit Columns(const Graph& graph) : graph_(graph) {
    for (const GraphNode& node : graph.nodes) {
      cells_.push_back({.width = node.width, .height = node.height});
    }
  }

  Layout LayOut() {
    FindColumns();
    ThreadEdges();
    Fill();
    for (int sweep = 0; sweep < kSweeps; ++sweep) Sweep(sweep, &Columns::SortColumn);
    for (std::vector<std::size_t>& column : columns_) Stack(column);
    for (int sweep = 0; sweep < kSweeps; ++sweep) Sweep(sweep, &Columns::SettleColumn);
    return Result();
  }

 private:
  // Each node right behind the last of those before it, or right before the first behind it where
  // none is before it.
  void FindColumns() {
    std::vector<std::vector<std::size_t>> successors(graph_.nodes.size());
    std::vector<std::size_t> waiting(graph_.nodes.size());
    for (const GraphEdge& edge : graph_.edges) {
      successors[edge.from].push_back(edge.to);
      ++waiting[edge.to];
    }
    std::vector<std::size_t> sources, order;
    for (std::size_t node = 0; node < waiting.size(); ++node) {
      if (waiting[node] == 0) sources.push_back(node);
    }
    order = sources;
    for (std::size_t at = 0; at < order.size(); ++at) {
      for (const std::size_t next : successors[order[at]]) {
        cells_[next].column = std::max(cells_[next].column, cells_[order[at]].column + 1);
        if (--waiting[next] == 0) order.push_back(next);
      }
    }
    for (const std::size_t node : sources) {
      std::size_t nearest = kNone;
      for (const std::size_t next : successors[node]) {
        nearest = std::min(nearest, cells_[next].column);
      }
      if (nearest != kNone) cells_[node].column = nearest - 1;
    }
  }

  void ThreadEdges() {
    const std::size_t most = kWaypointsPerElement * (graph_.nodes.size() + graph_.edges.size());
    std::size_t count = 0;
    for (const GraphEdge& edge : graph_.edges) {
      std::vector<std::size_t> way{edge.from};
      const std::size_t last = cells_[edge.to].column;
      const std::size_t between = last - cells_[edge.from].column - 1;
      if (count + between <= most) {
        count += between;
        for (std::size_t column = cells_[edge.from].column + 1; column < last; ++column) {
          way.push_back(cells_.size());
          cells_.push_back({.column = column});
        }
      }
      way.push_back(edge.to);
      for (std::size_t at = 0; at + 1 < way.size(); ++at) {
        cells_[way[at]].behind.push_back(way[at + 1]);
        cells_[way[at + 1]].before.push_back(way[at]);
      }
      ways_.push_back(std::move(way));
    }
  }

  // Depth first, so that a branch stays together.
  void Fill() {
    std::vector<bool> seen(cells_.size());
    std::vector<std::size_t> open;
    for (std::size_t start = cells_.size(); start-- > 0;) {
      if (cells_[start].before.empty()) open.push_back(start);
    }
    while (!open.empty()) {
      const std::size_t cell = open.back();
      open.pop_back();
      if (seen[cell]) continue;
      seen[cell] = true;
      if (columns_.size() <= cells_[cell].column) columns_.resize(cells_[cell].column + 1);
      columns_[cells_[cell].column].push_back(cell);
      open.insert(open.end(), cells_[cell].behind.rbegin(), cells_[cell].behind.rend());
    }
    for (std::vector<std::size_t>& column : columns_) Number(column);
  }

  // To the right by what lies before a column, and back by what lies behind it.
  void Sweep(int sweep, void (Columns::*arrange)(std::vector<std::size_t>&)) {
    const bool back = sweep % 2 == 1;
    for (std::size_t at = 0; at < columns_.size(); ++at) {
      std::vector<std::size_t>& column = columns_[back ? columns_.size() - 1 - at : at];
      for (const std::size_t cell : column) {
        const auto& others = back ? cells_[cell].behind : cells_[cell].before;
        cells_[cell].wanted = others.empty() ? cells_[cell].y
                                             : std::accumulate(others.begin(), others.end(), 0.0,
                                                               [&](double sum, std::size_t other) {
                                                                 return sum + cells_[other].y;
                                                               }) /
                                                   static_cast<double>(others.size());
      }
      (this->*arrange)(column);
    }
  }

  void Number(const std::vector<std::size_t>& column) {
    for (std::size_t at = 0; at < column.size(); ++at) {
      cells_[column[at]].y = static_cast<double>(at) / static_cast<double>(column.size());
    }
  }

  void SortColumn(std::vector<std::size_t>& column) {
    std::stable_sort(column.begin(), column.end(), [&](std::size_t a, std::size_t b) {
      return cells_[a].wanted < cells_[b].wanted;
    });
    Number(column);
  }

  void Stack(const std::vector<std::size_t>& column) {
    double total = -kRowGap;
    for (const std::size_t cell : column) total += cells_[cell].height + kRowGap;
    double top = -total / 2;
    for (const std::size_t cell : column) {
      cells_[cell].y = top + cells_[cell].height / 2;
      top += cells_[cell].height + kRowGap;
    }
  }

  void SettleColumn(std::vector<std::size_t>& column) {
    std::vector<double> wanted, apart;
    for (std::size_t at = 0; at < column.size(); ++at) {
      const Cell& cell = cells_[column[at]];
      wanted.push_back(cell.wanted);
      apart.push_back(at == 0 ? 0 : (cells_[column[at - 1]].height + cell.height) / 2 + kRowGap);
    }
    const std::vector<double> heights = SpreadApart(wanted, apart);
    for (std::size_t at = 0; at < column.size(); ++at) cells_[column[at]].y = heights[at];
  }

  Layout Result() {
    Layout layout;
    std::vector<double> lefts;
    double top = 0;
    double bottom = 0;
    std::vector<double> widths;
    for (const std::vector<std::size_t>& column : columns_) {
      double widest = 0;
      for (const std::size_t cell : column) {
        widest = std::max(widest, cells_[cell].width);
        top = std::min(top, cells_[cell].y - cells_[cell].height / 2);
        bottom = std::max(bottom, cells_[cell].y + cells_[cell].height / 2);
      }
      lefts.push_back(layout.width + (lefts.empty() ? 0 : kColumnGap));
      widths.push_back(widest);
      layout.width = lefts.back() + widest;
    }
    layout.height = bottom - top;
    for (std::size_t node = 0; node < graph_.nodes.size(); ++node) {
      const std::size_t column = cells_[node].column;
      layout.centres.push_back({lefts[column] + widths[column] / 2, cells_[node].y - top});
    }
    for (const std::vector<std::size_t>& way : ways_) {
      Route route;
      const Point from = layout.centres[way.front()];
      route.curve = {{from.x + cells_[way.front()].width / 2, from.y}};
      // Beside a narrow node the way runs level up to the column's edge.
      const std::size_t first = cells_[way.front()].column;
      AddLine(route.curve, {lefts[first] + widths[first], from.y});
      for (std::size_t at = 1; at + 1 < way.size(); ++at) {
        const Cell& cell = cells_[way[at]];
        AddBend(route.curve, {lefts[cell.column], cell.y - top});
        AddLine(route.curve, {lefts[cell.column] + widths[cell.column], cell.y - top});
      }
      const Point to = layout.centres[way.back()];
      route.tip = {to.x - cells_[way.back()].width / 2, to.y};
      const double edge = lefts[cells_[way.back()].column];
      AddBend(route.curve, {std::min(edge, route.tip.x - kArrowLength), to.y});
      AddLine(route.curve, {route.tip.x - kArrowLength, to.y});
      layout.routes.push_back(std::move(route));
    }
    return layout;
  }

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  const Graph& graph_;
  std::vector<Cell> cells_;                        // the nodes, and waypoints behind
  std::vector<std::vector<std::size_t>> columns_;  // cells from top to bottom
  std::vector<std::vector<std::size_t>> ways_;     // cells of each edge
};

}  // namespace

Layout LayOutInColumns(const Graph& graph) { return Columns(graph).LayOut(); }

}  // namespace merivane::pictures
