#include <algorithm>
#include <deque>
#include <numeric>
#include <utility>

#include "curves.h"
#include "layout.h"
#include "series_parallel.h"

namespace merivane::pictures {

namespace {

// What the library lays out in a moment.
constexpr std::size_t kMostForLibrary = 240;

// A connected part of a graph.
struct Part {
  Graph graph;
  std::vector<std::size_t> nodes;  // its places in the whole
  std::vector<std::size_t> edges;
};

std::vector<Part> PartsOf(const Graph& graph) {
  std::vector<std::size_t> leader(graph.nodes.size());
  std::iota(leader.begin(), leader.end(), 0U);
  const auto find = [&](std::size_t node) {
    while (leader[node] != node) node = leader[node] = leader[leader[node]];
    return node;
  };
  for (const GraphEdge& edge : graph.edges) {
    const std::size_t one = find(edge.from);
    const std::size_t other = find(edge.to);
    leader[std::max(one, other)] = std::min(one, other);
  }
  std::vector<Part> parts;
  std::vector<std::size_t> partOf(graph.nodes.size()), inPart(graph.nodes.size());
  for (std::size_t node = 0; node < graph.nodes.size(); ++node) {
    const std::size_t first = find(node);
    if (first == node) {
      partOf[node] = parts.size();
      parts.emplace_back();
    }
    Part& part = parts[partOf[node] = partOf[first]];
    inPart[node] = part.nodes.size();
    part.nodes.push_back(node);
    part.graph.nodes.push_back(graph.nodes[node]);
  }
  for (std::size_t edge = 0; edge < graph.edges.size(); ++edge) {
    const auto [from, to] = graph.edges[edge];
    Part& part = parts[partOf[from]];
    part.edges.push_back(edge);
    part.graph.edges.push_back({inPart[from], inPart[to]});
  }
  return parts;
}

// The edges that lead back to where a walk from the first nodes came from.
std::vector<bool> BackEdges(const Graph& graph) {
  std::vector<std::vector<std::size_t>> out(graph.nodes.size());
  std::vector<std::size_t> in(graph.nodes.size());
  for (std::size_t edge = 0; edge < graph.edges.size(); ++edge) {
    out[graph.edges[edge].from].push_back(edge);
    ++in[graph.edges[edge].to];
  }
  std::vector<std::size_t> starts(graph.nodes.size());
  std::iota(starts.begin(), starts.end(), 0U);
  std::stable_partition(starts.begin(), starts.end(),
                        [&](std::size_t node) { return in[node] == 0; });
  enum class State { kNew, kOpen, kDone };
  std::vector<State> states(graph.nodes.size(), State::kNew);
  std::vector<std::size_t> next(graph.nodes.size());
  std::vector<bool> back(graph.edges.size());
  for (const std::size_t start : starts) {
    std::vector<std::size_t> way;
    if (states[start] == State::kNew) way.push_back(start);
    while (!way.empty()) {
      const std::size_t node = way.back();
      states[node] = State::kOpen;
      if (next[node] == out[node].size()) {
        states[node] = State::kDone;
        way.pop_back();
        continue;
      }
      const std::size_t edge = out[node][next[node]++];
      const std::size_t to = graph.edges[edge].to;
      back[edge] = states[to] == State::kOpen;
      if (states[to] == State::kNew) way.push_back(to);
    }
  }
  return back;
}

// A connected part on its way to a layout: what is series-parallel becomes boxes of a smaller
// graph, the tangle.
class PartPlan {
 public:
  explicit PartPlan(Part part) : part_(std::move(part)) {
    const std::vector<bool> back = BackEdges(part_.graph);
    const bool circles = std::find(back.begin(), back.end(), true) != back.end();
    const bool small = part_.graph.nodes.size() + part_.graph.edges.size() <= kMostForLibrary;
    graph_.nodes = part_.graph.nodes;
    for (std::size_t edge = 0; edge < back.size(); ++edge) {
      if (back[edge] && !small) continue;
      kept_.push_back(edge);
      graph_.edges.push_back(part_.graph.edges[edge]);
    }
    reduction_ = circles && small ? Unreduced(graph_) : Reduce(graph_);
    MakeTangle();
  }

  const Graph& Tangle() const { return tangle_; }
  bool IsForLibrary() const {
    return !tangle_.edges.empty() && tangle_.nodes.size() + tangle_.edges.size() <= kMostForLibrary;
  }
  const Part& GetPart() const { return part_; }

  Layout LayOut(std::optional<Layout> byLibrary) {
    tangleLayout_ = byLibrary ? std::move(*byLibrary) : LayOutInColumns(tangle_);
    Layout layout;
    layout.width = tangleLayout_.width;
    layout.height = tangleLayout_.height;
    layout.centres.resize(graph_.nodes.size());
    layout.routes.resize(part_.graph.edges.size());
    for (std::size_t at = 0; at < tangleNodes_.size(); ++at) {
      if (tangleNodes_[at] != kNoElement)
        layout.centres[tangleNodes_[at]] = tangleLayout_.centres[at];
    }
    for (const Span& span : spans_) PlaceSpan(span, layout);
    return layout;
  }

 private:
  // A strand in the tangle: a box with an edge at each side, or an edge alone.
  struct Span {
    Strand strand;
    std::size_t box = kNoElement;    // node of the tangle
    std::size_t first = kNoElement;  // edges of the tangle
    std::size_t last = kNoElement;
    std::size_t firstEdge = kNoElement;  // the edges of the graph that these are, where they are
    std::size_t lastEdge = kNoElement;   // one each
  };

  void MakeTangle() {
    std::vector<bool> within(graph_.nodes.size());
    for (const Block& block : reduction_.blocks) {
      if (block.kind == BlockKind::kNode) within[block.element] = true;
    }
    inTangle_.assign(graph_.nodes.size(), kNoElement);
    for (std::size_t node = 0; node < graph_.nodes.size(); ++node) {
      if (within[node]) continue;
      inTangle_[node] = tangle_.nodes.size();
      tangle_.nodes.push_back(graph_.nodes[node]);
      tangleNodes_.push_back(node);
    }
    for (const Strand& strand : reduction_.strands) AddSpan(strand);
  }

  // Takes an edge off an end of the series: that edge runs in the tangle.
  enum class SeriesEnd { kFirst, kLast };
  std::size_t TakeOff(std::size_t series, SeriesEnd end) {
    const bool front = end == SeriesEnd::kFirst;
    std::deque<std::size_t>& parts = reduction_.blocks[series].parts;
    const Block& part = reduction_.blocks[front ? parts.front() : parts.back()];
    if (part.kind != BlockKind::kEdge || part.element == kNoElement) return kNoElement;
    const std::size_t element = part.element;
    front ? parts.pop_front() : parts.pop_back();
    return element;
  }

  std::size_t TangleEdge(std::size_t from, std::size_t to) {
    tangle_.edges.push_back({from, to});
    return tangle_.edges.size() - 1;
  }

  void AddSpan(const Strand& strand) {
    Span span{.strand = strand};
    const bool inner = strand.from != kNoElement && strand.to != kNoElement;
    if (strand.from != kNoElement) span.firstEdge = TakeOff(strand.block, SeriesEnd::kFirst);
    if (reduction_.blocks[strand.block].parts.empty()) {
      if (inner) span.first = TangleEdge(inTangle_[strand.from], inTangle_[strand.to]);
      if (span.first != kNoElement) spans_.push_back(span);
      return;
    }
    if (strand.to != kNoElement) span.lastEdge = TakeOff(strand.block, SeriesEnd::kLast);
    if (IsOnlyOuterEdge(strand.block)) return;
    Measure(reduction_, strand.block, graph_);
    const Block& block = reduction_.blocks[strand.block];
    span.box = tangle_.nodes.size();
    tangle_.nodes.push_back({block.width, 2 * std::max(block.above, block.below)});
    tangleNodes_.push_back(kNoElement);
    if (strand.from != kNoElement) span.first = TangleEdge(inTangle_[strand.from], span.box);
    if (strand.to != kNoElement) span.last = TangleEdge(span.box, inTangle_[strand.to]);
    spans_.push_back(span);
  }

  // From a node of the tangle to an outer end, with nothing between.
  bool IsOnlyOuterEdge(std::size_t series) const {
    const auto& parts = reduction_.blocks[series].parts;
    if (parts.size() != 1) return false;
    const Block& part = reduction_.blocks[parts.front()];
    return part.kind == BlockKind::kEdge && part.element == kNoElement;
  }

  void PlaceSpan(const Span& span, Layout& layout) const {
    if (span.firstEdge != kNoElement) RouteOf(layout, span.firstEdge) = RouteAt(span.first);
    if (span.lastEdge != kNoElement) RouteOf(layout, span.lastEdge) = RouteAt(span.last);
    if (span.box == kNoElement) return;
    const Point centre = tangleLayout_.centres[span.box];
    const double left = centre.x - tangle_.nodes[span.box].width / 2;
    for (const Strip& strip :
         PlaceBlock(reduction_, span.strand.block, {left, centre.y}, graph_, layout.centres)) {
      RouteOf(layout, strip.edge) = RouteIn(strip, span, layout);
    }
  }

  Route& RouteOf(Layout& layout, std::size_t edge) const { return layout.routes[kept_[edge]]; }
  const Route& RouteAt(std::size_t tangleEdge) const { return tangleLayout_.routes[tangleEdge]; }

  // Along its strip, with a bend where a node at the end stands higher or lower. Several edges may
  // share the way of the tangle to the box that they are in.
  Route RouteIn(const Strip& strip, const Span& span, const Layout& layout) const {
    const auto [from, to] = graph_.edges[strip.edge];
    std::vector<Point> curve;
    if (from == span.strand.from) {
      curve = RouteAt(span.first).curve;
      AddLine(curve, RouteAt(span.first).tip);
    } else {
      curve = {{layout.centres[from].x + graph_.nodes[from].width / 2, layout.centres[from].y}};
    }
    const bool leaves = to == span.strand.to;
    const Point tip =
        leaves ? Point{strip.right, tangleLayout_.centres[span.box].y}
               : Point{layout.centres[to].x - graph_.nodes[to].width / 2, layout.centres[to].y};
    const Point end{tip.x - (leaves ? 0 : kArrowLength), tip.y};
    const bool bendsTwice = curve.back().y != strip.y && end.y != strip.y;
    const double bend = std::min(kColumnGap, (strip.right - strip.left) / (bendsTwice ? 2 : 1));
    if (curve.back().y != strip.y) {
      AddBend(curve, {std::min(curve.back().x + bend, end.x), strip.y});
    }
    if (end.y != strip.y) {
      AddLine(curve, {std::max(end.x - bend, curve.back().x), strip.y});
      AddBend(curve, end);
    } else if (curve.back().x < end.x || curve.size() == 1) {
      AddLine(curve, end);
    }
    if (!leaves) return {.curve = std::move(curve), .tip = tip};
    AddCurve(curve, RouteAt(span.last).curve);
    return {.curve = std::move(curve), .tip = RouteAt(span.last).tip};
  }

  Part part_;
  Graph graph_;                    // of the part, without the edges that lead back
  std::vector<std::size_t> kept_;  // edges of the part
  Reduction reduction_;
  Graph tangle_;
  std::vector<std::size_t> inTangle_;     // of each node
  std::vector<std::size_t> tangleNodes_;  // nodes; none for a box
  std::vector<Span> spans_;
  Layout tangleLayout_;
};

void MoveDown(Layout& layout, double by) {
  const auto moveAll = [by](std::vector<Point>& points) {
    for (Point& point : points) point.y += by;
  };
  moveAll(layout.centres);
  for (Route& route : layout.routes) {
    moveAll(route.curve);
    route.tip.y += by;
    if (!route.continuation) continue;
    moveAll(route.continuation->leaving);
    route.continuation->end.y += by;
    route.continuation->begin.y += by;
  }
}

// Below what the whole holds already.
void AddPart(const Part& part, Layout layout, Layout& whole) {
  if (whole.height > 0) whole.height += kRowGap;
  MoveDown(layout, whole.height);
  for (std::size_t at = 0; at < part.nodes.size(); ++at) {
    whole.centres[part.nodes[at]] = layout.centres[at];
  }
  for (std::size_t at = 0; at < part.edges.size(); ++at) {
    whole.routes[part.edges[at]] = std::move(layout.routes[at]);
  }
  whole.width = std::max(whole.width, layout.width);
  whole.height += layout.height;
}

Layout Assemble(const Graph& graph, std::vector<PartPlan>& plans,
                std::vector<std::optional<Layout>>& tangles) {
  Layout whole;
  whole.centres.resize(graph.nodes.size());
  whole.routes.resize(graph.edges.size());
  int number = 0;
  for (std::size_t at = 0; at < plans.size(); ++at) {
    Layout layout = plans[at].LayOut(std::move(tangles[at]));
    BreakIntoRows(plans[at].GetPart().graph, layout, number);
    AddPart(plans[at].GetPart(), std::move(layout), whole);
  }
  return whole;
}

}  // namespace

Layouts PlaceGraphs(const std::vector<Graph>& graphs, std::chrono::milliseconds limit,
                    WorkListener& work) {
  std::vector<std::vector<PartPlan>> plans(graphs.size());
  std::vector<Graph> forLibrary;
  for (std::size_t at = 0; at < graphs.size(); ++at) {
    for (Part& part : PartsOf(graphs[at])) {
      work.Beat();
      plans[at].emplace_back(std::move(part));
      if (plans[at].back().IsForLibrary()) forLibrary.push_back(plans[at].back().Tangle());
    }
  }
  Layouts byLibrary;
  if (!forLibrary.empty()) byLibrary = LayOutAside(forLibrary, limit, work);
  Layouts layouts{.each = {}, .whyNone = std::move(byLibrary.whyNone)};
  auto next = byLibrary.each.begin();
  for (std::size_t at = 0; at < graphs.size(); ++at) {
    std::vector<std::optional<Layout>> tangles(plans[at].size());
    bool whole = true;
    for (std::size_t part = 0; part < plans[at].size(); ++part) {
      if (!plans[at][part].IsForLibrary()) continue;
      tangles[part] = std::move(*next++);
      whole = whole && tangles[part].has_value();
    }
    layouts.each.push_back(whole ? std::optional(Assemble(graphs[at], plans[at], tangles))
                                 : std::nullopt);
  }
  return layouts;
}

}  // namespace merivane::pictures
