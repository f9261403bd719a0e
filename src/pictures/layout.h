// Places for the nodes of a graph, from left to right, and the ways of its edges.
#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "pictures/picture.h"
#include "store/work_listener.h"

namespace merivane::pictures {

using namespace store;

struct GraphNode {
  double width = 0;
  double height = 0;
};

struct GraphEdge {
  std::size_t from = 0;  // indices of nodes
  std::size_t to = 0;
};

struct Graph {
  std::vector<GraphNode> nodes;
  std::vector<GraphEdge> edges;
};

// Where a way is broken off: it ends at a numbered mark and goes on at another one.
struct Continuation {
  int number = 0;
  std::vector<Point> leaving = {};  // Bezier pieces from the node to the first mark
  Point end = {};                   // centres of the marks
  Point begin = {};
};

struct Route {
  std::vector<Point> curve;  // Bezier pieces: 1 + 3n points; from the second mark, if there are any
  Point tip;                 // of the arrow head, which begins where the curve ends
  std::optional<Continuation> continuation = {};
};

inline constexpr double kMarkRadius = 9;  // of a continuation
inline constexpr double kColumnGap = 48;  // between boxes that a link joins
inline constexpr double kRowGap = 28.8;   // between boxes that lie below each other
inline constexpr double kArrowLength = 10.7;

struct Layout {
  double width = 0;
  double height = 0;
  std::vector<Point> centres;  // of each node
  std::vector<Route> routes;   // of each edge
};

// Of several graphs.
struct Layouts {
  std::vector<std::optional<Layout>> each;
  std::string whyNone = "is too large to be laid out";  // goes behind the name of what has none
};

// By the layout library. None where it refuses the graph. Time grows with the square of the nodes.
std::optional<Layout> LayOut(const Graph& graph);

// The same for several graphs, the small ones first, where a graph that is too large or breaks the
// library does no harm: in a process of its own, which ends after `limit`. None for each graph that
// was not ready by then. `work` is told meanwhile that it goes on; what it throws ends the process.
Layouts LayOutAside(const std::vector<Graph>& graphs, std::chrono::milliseconds limit,
                    WorkListener& work);

// Chains and branches are placed by their own structure, in time that grows with the elements; what
// is tangled goes to the layout library, or into columns where it is too much for it. What is wide
// stands in rows. None for a graph of which the library had not laid out a part within `limit`.
// `work` is told meanwhile that it goes on.
Layouts PlaceGraphs(const std::vector<Graph>& graphs, std::chrono::milliseconds limit,
                    WorkListener& work);

// In columns by the longest way to each node, with few crossings, in about linear time; the layout
// library draws a small graph better. REQUIRES: the graph has no circle.
Layout LayOutInColumns(const Graph& graph);

// Breaks a wide layout where few edges cross. An edge that is broken, and one without a curve, gets
// a continuation, numbered onwards from `number`.
void BreakIntoRows(const Graph& graph, Layout& layout, int& number);

}  // namespace merivane::pictures
