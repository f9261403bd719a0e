#include "pictures/diagram.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "diagram_figures.h"
#include "layout.h"
#include "text_lines.h"

namespace merivane::pictures {

namespace {

constexpr double kMargin = 24;
constexpr double kEdge = 4;  // above a diagram without a headline
constexpr double kHeadline = 22;
constexpr double kGap = 28;
constexpr double kBelow = 16;  // room for the name of a junction in the lowest row

// A scenario as a graph. Units that no link joins are left to the grid below it.
struct ScenarioGraph {
  Graph graph;
  std::vector<const ModelUnit*> units;          // of the first nodes
  std::vector<const ModelJunction*> junctions;  // of the nodes behind
  std::vector<const ModelLink*> links;          // of the edges
  std::vector<const ModelUnit*> loose;
  std::vector<bool> sent;  // of each node
};

std::set<std::int32_t> NumbersOf(const ModelScenario& scenario) {
  std::set<std::int32_t> numbers;
  for (const ModelUnit& unit : scenario.units) numbers.insert(unit.number);
  for (const ModelJunction& junction : scenario.junctions) numbers.insert(junction.number);
  return numbers;
}

// A junction is as grey as all that comes in or all that goes out.
void SpreadGrey(ScenarioGraph& scenario) {
  const std::size_t nodes = scenario.graph.nodes.size();
  for (bool changed = true; changed;) {
    changed = false;
    std::vector<int> in(nodes), out(nodes), greyIn(nodes), greyOut(nodes);
    for (const GraphEdge& edge : scenario.graph.edges) {
      ++out[edge.from];
      ++in[edge.to];
      if (!scenario.sent[edge.to]) ++greyOut[edge.from];
      if (!scenario.sent[edge.from]) ++greyIn[edge.to];
    }
    for (std::size_t node = scenario.units.size(); node < nodes; ++node) {
      const bool grey = (in[node] > 0 && in[node] == greyIn[node]) ||
                        (out[node] > 0 && out[node] == greyOut[node]);
      if (grey && scenario.sent[node]) {
        scenario.sent[node] = false;
        changed = true;
      }
    }
  }
}

ScenarioGraph GraphOf(const ModelScenario& scenario, bool objects) {
  ScenarioGraph result;
  const std::set<std::int32_t> numbers = NumbersOf(scenario);
  std::set<std::int32_t> joined;
  for (const ModelLink& link : scenario.links) {
    if (!numbers.contains(link.origin) || !numbers.contains(link.destination)) continue;
    result.links.push_back(&link);
    joined.insert({link.origin, link.destination});
  }
  std::map<std::int32_t, std::size_t> nodes;  // the first with each number
  for (const ModelUnit& unit : scenario.units) {
    if (!joined.contains(unit.number) || nodes.contains(unit.number)) {
      result.loose.push_back(&unit);
      continue;
    }
    nodes.emplace(unit.number, result.graph.nodes.size());
    result.graph.nodes.push_back(SizeOf(unit, objects));
    result.units.push_back(&unit);
    result.sent.push_back(unit.sent);
  }
  for (const ModelJunction& junction : scenario.junctions) {
    if (!nodes.emplace(junction.number, result.graph.nodes.size()).second) continue;
    result.graph.nodes.push_back(SizeOfJunction());
    result.junctions.push_back(&junction);
    result.sent.push_back(true);
  }
  for (const ModelLink* link : result.links) {
    result.graph.edges.push_back({nodes.at(link->origin), nodes.at(link->destination)});
  }
  SpreadGrey(result);
  return result;
}

void MoveBy(Route& route, double x, double y) {
  const auto move = [&](Point& point) { point = {point.x + x, point.y + y}; };
  for (Point& point : route.curve) move(point);
  move(route.tip);
  if (!route.continuation) return;
  for (Point& point : route.continuation->leaving) move(point);
  move(route.continuation->end);
  move(route.continuation->begin);
}

std::string DescriptionOf(const ModelScenario& scenario) {
  std::string text = "Process diagram of " + scenario.name + ": " +
                     std::to_string(scenario.units.size()) + " units, " +
                     std::to_string(scenario.junctions.size()) + " junctions, " +
                     std::to_string(scenario.links.size()) + " links.";
  return text;
}

class DiagramDrawer {
 public:
  DiagramDrawer(const ModelScenario& scenario, const DiagramOptions& options)
      : scenario_(scenario), options_(options) {
    picture_.id = DiagramId(scenario.number);
    picture_.title = scenario.name;
    picture_.description = DescriptionOf(scenario);
    picture_.width = 2 * kMargin;
    picture_.height = options.headline ? kMargin : kEdge;
    if (options.headline) AddHeadline();
    if (!options.note.empty()) AddNote();
  }

  void AddNote() {
    Figure figure;
    figure.shapes.push_back(Text{Ink::kSubtitle, {kMargin, picture_.height + 10}, options_.note});
    picture_.figures.push_back(std::move(figure));
    picture_.description += " " + options_.note;
    Grow(kMargin + WidthOf(options_.note, Ink::kSubtitle), picture_.height + 20);
  }

  Picture Draw(const ScenarioGraph& graph, const Layout& layout) {
    AddGraph(graph, layout);
    AddLoose(graph.loose);
    picture_.height += kMargin - kGap + kBelow;
    AddLegend();
    return std::move(picture_);
  }

  // What the signs of this diagram mean, those alone that stand in it.
  std::vector<std::string> Signs() const {
    const auto any = [](const auto& elements, auto holds) {
      return std::any_of(elements.begin(), elements.end(), holds);
    };
    const auto& junctions = scenario_.junctions;
    const auto isOf = [](JunctionKind kind) {
      return [kind](const ModelJunction& junction) { return junction.kind == kind; };
    };
    const auto drawnAs = [](FlowKind kind) {
      return [kind](const ModelLink& link) { return link.kind == kind; };
    };
    const std::pair<bool, const char*> signs[] = {
        {any(junctions, isOf(JunctionKind::kAnd)), "&: all paths"},
        {any(junctions, isOf(JunctionKind::kOr)), "O: one path or more"},
        {any(junctions, isOf(JunctionKind::kXor)), "X: exactly one path"},
        {any(junctions, [](const ModelJunction& junction) { return !junction.synchronous; }),
         "one bar: each at its own time"},
        {any(junctions, [](const ModelJunction& junction) { return junction.synchronous; }),
         "two bars: at the same time"},
        {any(scenario_.links, drawnAs(FlowKind::kRelation)), "dashed: a relation"},
        {any(scenario_.links, drawnAs(FlowKind::kObjectFlow)), "double head: an object flows"},
        {any(scenario_.units, [](const ModelUnit& unit) { return !unit.decompositions.empty(); }),
         "sheet behind: decomposed"},
        {any(scenario_.units, [](const ModelUnit& unit) { return !unit.sent; }),
         "grey: not in the plan"},
        {IsMarked(Mark::kAdded), "+: new"},
        {IsMarked(Mark::kChanged), "~: changed"},
        {IsMarked(Mark::kRemoved), "\x96: gone"}};
    std::vector<std::string> told;
    for (const auto& [occurs, sign] : signs) {
      if (occurs) told.emplace_back(sign);
    }
    return told;
  }

  // In rows no wider than the diagram, where it isn't narrower than one sign.
  void AddLegend() {
    constexpr double kBetween = 22;
    constexpr double kRow = 16;
    const std::vector<std::string> signs = Signs();
    if (signs.empty()) return;
    Figure figure;
    const double right = picture_.width - kMargin;
    double left = kMargin;
    double base = picture_.height;
    for (const std::string& sign : signs) {
      const double width = WidthOf(sign, Ink::kSubtitle);
      if (left > kMargin && left + width > right) {
        left = kMargin;
        base += kRow;
      }
      figure.shapes.push_back(Text{Ink::kSubtitle, {left, base}, sign});
      Grow(left + width, base + kRow);
      left += width + kBetween;
    }
    picture_.figures.push_back(std::move(figure));
  }

  // In columns, so that the list is about as wide as it is high.
  Picture DrawOutline() {
    constexpr double kRow = 17;
    constexpr double kColumn = 300;
    constexpr double kNumber = 44;
    const auto count = static_cast<double>(scenario_.units.size());
    const auto rows = std::max<std::size_t>(
        1, static_cast<std::size_t>(std::ceil(std::sqrt(count * kColumn / kRow))));
    const double top = picture_.height;
    for (std::size_t at = 0; at < scenario_.units.size(); ++at) {
      const ModelUnit& unit = scenario_.units[at];
      const std::size_t column = at / rows;
      const double left = kMargin + static_cast<double>(column) * kColumn;
      const double base = top + static_cast<double>(at % rows + 1) * kRow - 5;
      Figure figure;
      figure.id = UnitId(unit.number);
      figure.title = pictures::DescriptionOf(unit);
      figure.faint = !unit.sent;
      figure.area = {left, base - kRow + 5, kColumn - 10, kRow};
      if (!unit.decompositions.empty()) figure.target = DiagramId(unit.decompositions.front());
      figure.shapes.push_back(Text{Ink::kListedNumber,
                                   {left + kNumber - 8, base},
                                   std::to_string(unit.number),
                                   Anchor::kEnd});
      figure.shapes.push_back(Text{Ink::kListed,
                                   {left + kNumber, base},
                                   Shortened(unit.name, kColumn - kNumber - 16, Ink::kListed)});
      Grow(figure.area.Right(), figure.area.Bottom());
      picture_.figures.push_back(std::move(figure));
    }
    picture_.height += kMargin;
    return std::move(picture_);
  }

 private:
  bool IsMarked(Mark mark) const {
    const auto holds = [mark](const auto& elements) {
      return std::any_of(elements.begin(), elements.end(),
                         [mark](const auto& element) { return element.mark == mark; });
    };
    return holds(scenario_.units) || holds(scenario_.junctions) || holds(scenario_.links);
  }

  void Grow(double right, double bottom) {
    picture_.width = std::max(picture_.width, right + kMargin);
    picture_.height = std::max(picture_.height, bottom);
  }

  void AddHeadline() {
    constexpr double kMost = 900;
    Figure figure;
    figure.id = picture_.id;
    figure.title = scenario_.name;
    figure.area = {kMargin, picture_.height, kHeadline, kHeadline};
    const std::string name = Shortened(scenario_.name, kMost, Ink::kTitle);
    figure.shapes.push_back(Text{Ink::kTitle, {kMargin, picture_.height + 15}, name});
    Grow(kMargin + WidthOf(name, Ink::kTitle), picture_.height + kHeadline);
    if (scenario_.parent != 0) {
      const std::string parent =
          Shortened("Decomposes " + std::to_string(scenario_.parent) + "  " + scenario_.parentName,
                    kMost, Ink::kSubtitle);
      figure.shapes.push_back(Text{Ink::kSubtitle, {kMargin, picture_.height + 10}, parent});
      Grow(kMargin + WidthOf(parent, Ink::kSubtitle), picture_.height + kHeadline);
    }
    picture_.height += 14;
    picture_.figures.push_back(std::move(figure));
  }

  // The graph's room begins above its highest box where objects are listed below the boxes.
  static double TopOf(const ScenarioGraph& graph, const Layout& layout) {
    double top = layout.height;
    for (std::size_t node = 0; node < layout.centres.size(); ++node) {
      const double height =
          node < graph.units.size() ? BoxHeightOf(*graph.units[node]) : SizeOfJunction().height;
      top = std::min(top, layout.centres[node].y - height / 2);
    }
    for (const Route& route : layout.routes) {
      for (const Point& point : route.curve) top = std::min(top, point.y);
    }
    return top;
  }

  void AddGraph(const ScenarioGraph& graph, const Layout& layout) {
    if (graph.graph.nodes.empty()) return;
    const double top = picture_.height - TopOf(graph, layout);
    for (std::size_t at = 0; at < graph.links.size(); ++at) {
      Route route = layout.routes[at];
      MoveBy(route, kMargin, top);
      const GraphEdge& edge = graph.graph.edges[at];
      picture_.figures.push_back(
          DrawLink(*graph.links[at], route, graph.sent[edge.from] && graph.sent[edge.to]));
    }
    for (std::size_t node = 0; node < layout.centres.size(); ++node) {
      const Point centre{layout.centres[node].x + kMargin, layout.centres[node].y + top};
      if (node < graph.units.size()) {
        picture_.figures.push_back(DrawUnit(*graph.units[node], centre, options_.objects));
      } else {
        picture_.figures.push_back(
            DrawJunction(*graph.junctions[node - graph.units.size()], centre, graph.sent[node]));
      }
    }
    Grow(kMargin + layout.width + 6, top + layout.height);
    picture_.height += kGap;
  }

  // Units without links, in rows as wide as the rest.
  void AddLoose(const std::vector<const ModelUnit*>& units) {
    if (units.empty()) return;
    double area = 0;
    for (const ModelUnit* unit : units) {
      const GraphNode size = SizeOf(*unit, options_.objects);
      area += (size.width + kGap) * (size.height + kGap);
    }
    const double right = std::max(picture_.width, kMargin + std::sqrt(area) * 1.4);
    double left = kMargin;
    double top = picture_.height;
    for (const ModelUnit* unit : units) {
      const GraphNode size = SizeOf(*unit, options_.objects);
      if (left > kMargin && left + size.width > right) {
        left = kMargin;
        top = picture_.height + kGap;
      }
      picture_.figures.push_back(
          DrawUnit(*unit, {left + size.width / 2, top + size.height / 2}, options_.objects));
      Grow(left + size.width + 6, top + size.height);
      left += size.width + kGap;
    }
    picture_.height += kGap;
  }

  const ModelScenario& scenario_;
  const DiagramOptions& options_;
  Picture picture_;
};

}  // namespace

std::string DiagramId(std::int32_t scenario) { return "scenario-" + std::to_string(scenario); }

std::string UnitId(std::int32_t unit) { return "unit-" + std::to_string(unit); }

std::vector<Diagram> DrawDiagrams(const std::vector<ModelScenario>& scenarios,
                                  const DiagramOptions& options) {
  WorkListener nobody;
  return DrawDiagrams(scenarios, options, nobody);
}

std::vector<Diagram> DrawDiagrams(const std::vector<ModelScenario>& scenarios,
                                  const DiagramOptions& options, WorkListener& work) {
  work.Begin("Laying out the diagrams", 0);
  std::vector<ScenarioGraph> drafts;
  std::vector<Graph> graphs;
  for (const ModelScenario& scenario : scenarios) {
    work.Beat();
    drafts.push_back(GraphOf(scenario, options.objects));
    graphs.push_back(drafts.back().graph);
  }
  const Layouts layouts = PlaceGraphs(graphs, options.limit, work);
  work.Begin("Drawing the diagrams", static_cast<std::int64_t>(scenarios.size()));
  std::vector<Diagram> diagrams;
  for (std::size_t at = 0; at < scenarios.size(); ++at) {
    work.Step();
    DiagramDrawer drawer(scenarios[at], options);
    if (const std::optional<Layout>& layout = layouts.each[at]) {
      diagrams.push_back({.picture = drawer.Draw(drafts[at], *layout)});
    } else {
      diagrams.push_back({.picture = drawer.DrawOutline(), .whyListed = layouts.whyNone});
    }
  }
  return diagrams;
}

}  // namespace merivane::pictures
