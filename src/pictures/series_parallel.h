// A graph without circles, taken apart into chains and branches.
#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include "layout.h"

namespace merivane::pictures {

inline constexpr std::size_t kNoElement = static_cast<std::size_t>(-1);

enum class BlockKind { kNode, kEdge, kSeries, kParallel };

// What lies between two nodes, with all that enters and leaves at one height, its axis.
struct Block {
  BlockKind kind = BlockKind::kEdge;
  std::size_t element = kNoElement;    // of a node or an edge; none for an edge to an outer end
  std::deque<std::size_t> parts = {};  // blocks, from left to right or from top to bottom
  double width = 0;
  double above = 0;  // the axis
  double below = 0;
};

// A series of edges and nodes in place of an edge. The outer ends, where what has no predecessor
// begins and what has no successor ends, are kNoElement.
struct Strand {
  std::size_t from = kNoElement;
  std::size_t to = kNoElement;
  std::size_t block = 0;
};

struct Reduction {
  std::vector<Block> blocks;
  std::vector<Strand> strands;  // one for a graph that is series-parallel as a whole
};

// In about linear time. REQUIRES: the graph has no circle.
Reduction Reduce(const Graph& graph);
// Nothing taken together: each edge is a strand, and no node is in a block.
Reduction Unreduced(const Graph& graph);

// Sizes of the block and all in it.
void Measure(Reduction& reduction, std::size_t block, const Graph& graph);

// Room along the axis that no box reaches into.
struct Strip {
  std::size_t edge = 0;
  double left = 0;
  double right = 0;
  double y = 0;
};

// Puts the nodes of a measured block, which begins at `corner.x` and whose axis is `corner.y`, at
// their places, and gives each of its edges a strip.
std::vector<Strip> PlaceBlock(const Reduction& reduction, std::size_t block, Point corner,
                              const Graph& graph, std::vector<Point>& centres);

}  // namespace merivane::pictures
