#include "layout.h"

namespace merivane::pictures {

namespace {

// There is no fork here: this process lays out what surely is ready in time.
constexpr std::size_t kMostElements = 6000;

}  // namespace

Layouts LayOutAside(const std::vector<Graph>& graphs, std::chrono::milliseconds limit,
                    WorkListener& work) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  Layouts layouts;
  layouts.each.resize(graphs.size());
  for (const std::size_t which : SmallFirst(graphs)) {
    work.Beat();
    const Graph& graph = graphs[which];
    if (graph.nodes.size() + graph.edges.size() > kMostElements) break;
    if (std::chrono::steady_clock::now() >= deadline) break;
    layouts.each[which] = LayOut(graph);
  }
  return layouts;
}

}  // namespace merivane::pictures
