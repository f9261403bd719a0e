// Where the elements of scenarios stand.
#pragma once

#include <chrono>
#include <optional>
#include <vector>

#include "layout.h"

namespace merivane::pictures {

// Chains and branches are placed by their own structure, in time that grows with the elements; what
// is tangled goes to the layout library, or into columns where it is too much for it. What is wide
// stands in rows. None for a graph of which the library had not laid out a part within `limit`.
// `work` is told meanwhile that it goes on.
std::vector<std::optional<Layout>> PlaceGraphs(const std::vector<Graph>& graphs,
                                               std::chrono::milliseconds limit, Work& work);

}  // namespace merivane::pictures
