#include <gvc.h>

#include <memory>
#include <string>

#include "layout.h"

namespace merivane::pictures {

namespace {

constexpr double kPointsOfInch = 72;
constexpr double kPixelsOfInch = 96;
constexpr double kToPixels = kPixelsOfInch / kPointsOfInch;

// Beyond it the search for fewer crossings and shorter edges is cut short: it would take longer
// than all else.
constexpr std::size_t kThoroughNodes = 600;

struct CloseContext {
  void operator()(GVC_t* context) const { gvFreeContext(context); }
};
struct CloseGraph {
  void operator()(Agraph_t* graph) const { agclose(graph); }
};

// The library takes names and values as char*.
class Names {
 public:
  char* operator()(std::string text) {
    text_ = std::move(text);
    return text_.data();
  }

 private:
  std::string text_;
};

class GraphvizGraph {
 public:
  explicit GraphvizGraph(const Graph& graph)
      : context_(gvContext()), graph_(agopen(name_("process"), Agdirected, nullptr)) {
    Set(AGRAPH, "rankdir", "LR");
    Set(AGRAPH, "nodesep", "0.3");
    Set(AGRAPH, "ranksep", "0.5");
    if (graph.nodes.size() > kThoroughNodes) {
      for (const char* limit : {"nslimit", "nslimit1", "mclimit"}) Set(AGRAPH, limit, "0.1");
    }
    Set(AGNODE, "label", "");
    Set(AGNODE, "shape", "box");
    Set(AGNODE, "fixedsize", "true");
    Set(AGNODE, "width", "");
    Set(AGNODE, "height", "");
    Set(AGEDGE, "tailport", "e");
    Set(AGEDGE, "headport", "w");
    Set(AGEDGE, "arrowsize", "0.8");
    AddElements(graph);
  }
  ~GraphvizGraph() { gvFreeLayout(context_.get(), graph_.get()); }
  GraphvizGraph(const GraphvizGraph&) = delete;
  GraphvizGraph& operator=(const GraphvizGraph&) = delete;

  std::optional<Layout> LayOut() {
    agseterr(AGMAX);  // no words on the standard error
    if (gvLayout(context_.get(), graph_.get(), "dot") != 0) return std::nullopt;
    Layout layout;
    const boxf box = GD_bb(graph_.get());
    layout.width = box.UR.x * kToPixels;
    layout.height = box.UR.y * kToPixels;
    top_ = box.UR.y;
    for (Agnode_t* node : nodes_) layout.centres.push_back(PointOf(ND_coord(node)));
    for (Agedge_t* edge : edges_) layout.routes.push_back(RouteOf(edge));
    return layout;
  }

 private:
  void Set(int kind, const char* attribute, const char* value) {
    Names text;
    agattr(graph_.get(), kind, name_(attribute), text(value));
  }

  void AddElements(const Graph& graph) {
    Names text;
    for (const GraphNode& size : graph.nodes) {
      Agnode_t* node = agnode(graph_.get(), name_(std::to_string(nodes_.size())), 1);
      agset(node, name_("width"), text(std::to_string(size.width / kPixelsOfInch)));
      agset(node, name_("height"), text(std::to_string(size.height / kPixelsOfInch)));
      nodes_.push_back(node);
    }
    for (const GraphEdge& edge : graph.edges) {
      edges_.push_back(agedge(graph_.get(), nodes_[edge.from], nodes_[edge.to],
                              name_(std::to_string(edges_.size())), 1));
    }
  }

  // The library's y runs upwards.
  Point PointOf(pointf point) const { return {point.x * kToPixels, (top_ - point.y) * kToPixels}; }

  Route RouteOf(Agedge_t* edge) const {
    Route route;
    const splines* ways = ED_spl(edge);
    if (ways == nullptr || ways->size == 0) return route;
    const bezier& way = ways->list[0];
    for (std::size_t at = 0; at < static_cast<std::size_t>(way.size); ++at) {
      route.curve.push_back(PointOf(way.list[at]));
    }
    route.tip = way.eflag != 0 ? PointOf(way.ep) : route.curve.back();
    return route;
  }

  std::unique_ptr<GVC_t, CloseContext> context_;
  Names name_;
  std::unique_ptr<Agraph_t, CloseGraph> graph_;
  std::vector<Agnode_t*> nodes_;
  std::vector<Agedge_t*> edges_;
  double top_ = 0;
};

}  // namespace

std::optional<Layout> LayOut(const Graph& graph) {
  if (graph.nodes.empty()) return Layout{};
  return GraphvizGraph(graph).LayOut();
}

}  // namespace merivane::pictures
