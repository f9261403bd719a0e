#include "series_parallel.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace merivane::pictures {

namespace {

constexpr double kLane = 6;  // half of the room for an edge that passes by

// Edges that are joined behind each other and beside each other until nothing more can be.
class Reducer {
 public:
  explicit Reducer(const Graph& graph) : begin_(graph.nodes.size()), end_(begin_ + 1) {
    nodes_.resize(end_ + 1);
    for (std::size_t edge = 0; edge < graph.edges.size(); ++edge) {
      AddEdge(graph.edges[edge].from, graph.edges[edge].to, edge);
    }
    for (std::size_t node = 0; node < begin_; ++node) {
      if (nodes_[node].in == 0) AddEdge(begin_, node, kNoElement);
      if (nodes_[node].out == 0) AddEdge(node, end_, kNoElement);
    }
  }

  Reduction Run() {
    for (std::size_t edge = 0; edge < edges_.size(); ++edge) JoinBeside(edge);
    for (std::size_t node = 0; node < begin_; ++node) Look(node);
    while (!ready_.empty()) {
      const std::size_t node = ready_.back();
      ready_.pop_back();
      if (nodes_[node].in == 1 && nodes_[node].out == 1) JoinBehind(node);
    }
    return Result();
  }

 private:
  struct Edge {
    std::size_t from;
    std::size_t to;
    std::size_t block;
    bool alive = true;
  };
  struct Node {
    std::size_t in = 0;
    std::size_t out = 0;
    std::vector<std::size_t> inEdges;  // with those that are gone
    std::vector<std::size_t> outEdges;
  };

  std::size_t AddBlock(BlockKind kind, std::size_t element, std::size_t order) {
    result_.blocks.push_back({.kind = kind, .element = element});
    orders_.push_back(order);
    return result_.blocks.size() - 1;
  }

  std::size_t SeriesOf(std::size_t part) {
    const std::size_t series = AddBlock(BlockKind::kSeries, kNoElement, orders_[part]);
    result_.blocks[series].parts = {part};
    return series;
  }

  void AddEdge(std::size_t from, std::size_t to, std::size_t element) {
    const std::size_t edge = edges_.size();
    const std::size_t leaf = AddBlock(BlockKind::kEdge, element, edge);
    edges_.push_back({.from = from, .to = to, .block = SeriesOf(leaf)});
    ++nodes_[from].out;
    ++nodes_[to].in;
    nodes_[from].outEdges.push_back(edge);
    nodes_[to].inEdges.push_back(edge);
  }

  void Look(std::size_t node) {
    if (node < begin_ && nodes_[node].in == 1 && nodes_[node].out == 1) ready_.push_back(node);
  }

  std::size_t OneAlive(std::vector<std::size_t>& edges, std::size_t Edge::*end,
                       std::size_t node) const {
    while (!edges_[edges.back()].alive || edges_[edges.back()].*end != node) edges.pop_back();
    return edges.back();
  }

  // The parts of the shorter series move, so that each part moves seldom.
  void JoinBehind(std::size_t node) {
    const std::size_t first = OneAlive(nodes_[node].inEdges, &Edge::to, node);
    const std::size_t second = OneAlive(nodes_[node].outEdges, &Edge::from, node);
    const std::size_t box = AddBlock(BlockKind::kNode, node, 0);
    std::deque<std::size_t>& before = result_.blocks[edges_[first].block].parts;
    std::deque<std::size_t>& behind = result_.blocks[edges_[second].block].parts;
    if (before.size() < behind.size()) {
      behind.push_front(box);
      behind.insert(behind.begin(), before.begin(), before.end());
      before.swap(behind);
    } else {
      before.push_back(box);
      before.insert(before.end(), behind.begin(), behind.end());
    }
    behind.clear();
    edges_[second].alive = false;
    edges_[first].to = edges_[second].to;
    nodes_[node].in = nodes_[node].out = 0;
    nodes_[edges_[first].to].inEdges.push_back(first);
    JoinBeside(first);
  }

  // With an edge of the same ends, if there is one.
  void JoinBeside(std::size_t edge) {
    const Edge ends = edges_[edge];
    const std::uint64_t key = static_cast<std::uint64_t>(ends.from) * nodes_.size() + ends.to;
    const auto [place, isNew] = between_.emplace(key, edge);
    if (isNew || place->second == edge) return;
    const std::size_t other = place->second;
    if (!edges_[other].alive || edges_[other].from != ends.from || edges_[other].to != ends.to) {
      place->second = edge;
      return;
    }
    const std::size_t both = ParallelOf(edges_[other].block);
    AddBranch(both, edges_[edge].block);
    orders_[both] = std::min(orders_[both], orders_[edges_[edge].block]);
    edges_[other].block = SeriesOf(both);
    edges_[edge].alive = false;
    --nodes_[ends.from].out;
    --nodes_[ends.to].in;
    Look(ends.from);
    Look(ends.to);
  }

  std::size_t ParallelIn(std::size_t series) const {
    const auto& parts = result_.blocks[series].parts;
    const bool alone =
        parts.size() == 1 && result_.blocks[parts.front()].kind == BlockKind::kParallel;
    return alone ? parts.front() : kNoElement;
  }

  std::size_t ParallelOf(std::size_t series) {
    const std::size_t there = ParallelIn(series);
    if (there != kNoElement) return there;
    const std::size_t parallel = AddBlock(BlockKind::kParallel, kNoElement, orders_[series]);
    result_.blocks[parallel].parts = {series};
    return parallel;
  }

  void AddBranch(std::size_t parallel, std::size_t series) {
    auto& branches = result_.blocks[parallel].parts;
    const std::size_t inner = ParallelIn(series);
    if (inner == kNoElement) {
      branches.push_back(series);
      return;
    }
    const auto& more = result_.blocks[inner].parts;
    branches.insert(branches.end(), more.begin(), more.end());
  }

  Reduction Result() {
    for (Block& block : result_.blocks) {
      if (block.kind != BlockKind::kParallel) continue;
      std::stable_sort(block.parts.begin(), block.parts.end(),
                       [&](std::size_t a, std::size_t b) { return orders_[a] < orders_[b]; });
    }
    const auto inner = [&](std::size_t node) { return node < begin_ ? node : kNoElement; };
    for (const Edge& edge : edges_) {
      if (!edge.alive) continue;
      result_.strands.push_back(
          {.from = inner(edge.from), .to = inner(edge.to), .block = edge.block});
    }
    return std::move(result_);
  }

  std::size_t begin_;  // the outer ends as nodes
  std::size_t end_;
  std::vector<Node> nodes_;
  std::vector<Edge> edges_;
  std::vector<std::size_t> ready_;
  std::unordered_map<std::uint64_t, std::size_t> between_;
  std::vector<std::size_t> orders_;  // of blocks: the first edge of each
  Reduction result_;
};

bool IsOuter(const Block& block) {
  return block.kind == BlockKind::kEdge && block.element == kNoElement;
}

void MeasureSeries(const Reduction& reduction, Block& series) {
  for (const std::size_t part : series.parts) {
    const Block& inner = reduction.blocks[part];
    series.width += inner.width;
    series.above = std::max(series.above, inner.above);
    series.below = std::max(series.below, inner.below);
  }
}

// The axis runs through the branch in the middle, or between the two there.
void MeasureParallel(const Reduction& reduction, Block& parallel) {
  std::vector<double> axes;
  double height = 0;
  for (const std::size_t part : parallel.parts) {
    const Block& branch = reduction.blocks[part];
    if (!axes.empty()) height += kRowGap;
    axes.push_back(height + branch.above);
    height += branch.above + branch.below;
    parallel.width = std::max(parallel.width, branch.width);
  }
  const std::size_t count = axes.size();
  parallel.above = count % 2 == 1 ? axes[count / 2] : (axes[count / 2 - 1] + axes[count / 2]) / 2;
  parallel.below = height - parallel.above;
}

void MeasureOne(const Reduction& reduction, Block& block, const Graph& graph) {
  block.width = block.above = block.below = 0;
  switch (block.kind) {
    case BlockKind::kNode:
      block.width = graph.nodes[block.element].width;
      block.above = block.below = graph.nodes[block.element].height / 2;
      break;
    case BlockKind::kEdge:
      block.width = IsOuter(block) ? 0 : kColumnGap;
      block.above = block.below = kLane;
      break;
    case BlockKind::kSeries:
      MeasureSeries(reduction, block);
      break;
    case BlockKind::kParallel:
      MeasureParallel(reduction, block);
      break;
  }
}

struct Spot {
  std::size_t block;
  Point corner;
  double width;  // at least the block's own
};

// What is left of the width goes to both ends of a series, and to an outer end alone.
void PlaceSeries(const Reduction& reduction, const Spot& spot, std::vector<Spot>& open) {
  const Block& series = reduction.blocks[spot.block];
  const double rest = spot.width - series.width;
  double first = rest / 2;
  if (IsOuter(reduction.blocks[series.parts.front()]))
    first = rest;
  else if (IsOuter(reduction.blocks[series.parts.back()]))
    first = 0;
  double left = spot.corner.x;
  for (std::size_t at = 0; at < series.parts.size(); ++at) {
    double width = reduction.blocks[series.parts[at]].width;
    if (at == 0) width += first;
    if (at + 1 == series.parts.size()) width += rest - first;
    open.push_back({series.parts[at], {left, spot.corner.y}, width});
    left += width;
  }
}

void PlaceParallel(const Reduction& reduction, const Spot& spot, std::vector<Spot>& open) {
  const Block& parallel = reduction.blocks[spot.block];
  double top = spot.corner.y - parallel.above;
  for (const std::size_t part : parallel.parts) {
    const Block& branch = reduction.blocks[part];
    open.push_back({part, {spot.corner.x, top + branch.above}, spot.width});
    top += branch.above + branch.below + kRowGap;
  }
}

}  // namespace

Reduction Reduce(const Graph& graph) { return Reducer(graph).Run(); }

Reduction Unreduced(const Graph& graph) {
  Reduction reduction;
  for (std::size_t edge = 0; edge < graph.edges.size(); ++edge) {
    reduction.blocks.push_back({.kind = BlockKind::kEdge, .element = edge});
    reduction.blocks.push_back({.kind = BlockKind::kSeries, .parts = {2 * edge}});
    reduction.strands.push_back({graph.edges[edge].from, graph.edges[edge].to, 2 * edge + 1});
  }
  return reduction;
}

void Measure(Reduction& reduction, std::size_t block, const Graph& graph) {
  std::vector<std::size_t> order{block};  // each block before its parts
  for (std::size_t at = 0; at < order.size(); ++at) {
    const auto& parts = reduction.blocks[order[at]].parts;
    order.insert(order.end(), parts.begin(), parts.end());
  }
  for (auto at = order.rbegin(); at != order.rend(); ++at) {
    MeasureOne(reduction, reduction.blocks[*at], graph);
  }
}

std::vector<Strip> PlaceBlock(const Reduction& reduction, std::size_t block, Point corner,
                              const Graph& graph, std::vector<Point>& centres) {
  std::vector<Strip> strips;
  std::vector<Spot> open{{block, corner, reduction.blocks[block].width}};
  while (!open.empty()) {
    const Spot spot = open.back();
    open.pop_back();
    const Block& placed = reduction.blocks[spot.block];
    if (placed.kind == BlockKind::kSeries) {
      PlaceSeries(reduction, spot, open);
    } else if (placed.kind == BlockKind::kParallel) {
      PlaceParallel(reduction, spot, open);
    } else if (placed.kind == BlockKind::kNode) {
      centres[placed.element] = {spot.corner.x + graph.nodes[placed.element].width / 2,
                                 spot.corner.y};
    } else if (!IsOuter(placed)) {
      strips.push_back({placed.element, spot.corner.x, spot.corner.x + spot.width, spot.corner.y});
    }
  }
  return strips;
}

}  // namespace merivane::pictures
