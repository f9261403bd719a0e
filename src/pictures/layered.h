// Places for a tangled graph of any size.
#pragma once

#include "layout.h"

namespace merivane::pictures {

// In columns by the longest way to each node, with few crossings, in about linear time; the layout
// library draws a small graph better. REQUIRES: the graph has no circle.
Layout LayOutInColumns(const Graph& graph);

}  // namespace merivane::pictures
