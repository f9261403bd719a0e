#include "layout_aside.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

#include "packing.h"
#include "runtime/run_time_error.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

constexpr std::uint64_t kMostBytes = 1U << 30U;  // more than any layout takes

std::vector<std::size_t> SmallFirst(const std::vector<Graph>& graphs) {
  std::vector<std::size_t> order(graphs.size());
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return graphs[a].nodes.size() + graphs[a].edges.size() <
           graphs[b].nodes.size() + graphs[b].edges.size();
  });
  return order;
}

std::vector<Graph> InOrder(const std::vector<Graph>& graphs,
                           const std::vector<std::size_t>& order) {
  std::vector<Graph> sorted;
  sorted.reserve(order.size());
  for (const std::size_t which : order) sorted.push_back(graphs[which]);
  return sorted;
}

DoneAside RunOrTellWhy(const std::vector<Graph>& graphs,
                       std::chrono::steady_clock::time_point deadline, WorkListener& work) try {
  return RunAside(graphs, deadline, work);
} catch (const RunTimeError& error) {
  return {.why = error.Description()};
}

}  // namespace

auto Fields(Is<Graph> auto& graph) { return std::tie(graph.nodes, graph.edges); }

// The library's ways have no continuation.
auto Fields(Is<Route> auto& route) { return std::tie(route.curve, route.tip); }

auto Fields(Is<Layout> auto& layout) {
  return std::tie(layout.width, layout.height, layout.centres, layout.routes);
}

std::string Packed(const std::vector<Graph>& graphs) { return PackedValue(graphs); }

std::vector<Graph> UnpackedGraphs(std::string_view bytes) {
  return UnpackedValue<std::vector<Graph>>(bytes);
}

void SendLayouts(const std::vector<Graph>& graphs, const std::function<LayOutOne()>& open,
                 const std::function<void(const void* data, std::size_t size)>& send) {
  const auto sendText = [&send](const std::string& text) {
    const std::uint64_t size = text.size();
    send(&size, sizeof size);
    send(text.data(), text.size());
  };
  try {
    const LayOutOne layOut = open();
    sendText({});
    for (const Graph& graph : graphs) sendText(PackedValue(layOut(graph)));
  } catch (const RunTimeError& error) {
    sendText(error.Description());
  }
}

DoneAside ReceiveLayouts(std::size_t count,
                         const std::function<bool(void* data, std::size_t size)>& receive) {
  std::string text;
  const auto receiveText = [&] {
    std::uint64_t size = 0;
    if (!receive(&size, sizeof size) || size > kMostBytes) return false;
    text.resize(size);
    return receive(text.data(), text.size());
  };
  if (!receiveText()) return {};
  if (!text.empty()) return {.why = text};
  DoneAside done;
  while (done.layouts.size() < count && receiveText()) {
    done.layouts.push_back(UnpackedValue<std::optional<Layout>>(text));
  }
  return done;
}

Layouts LayOutAside(const std::vector<Graph>& graphs, std::chrono::milliseconds limit,
                    WorkListener& work) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  Layouts layouts;
  layouts.each.resize(graphs.size());
  std::vector<std::size_t> order = SmallFirst(graphs);
  while (!order.empty() && std::chrono::steady_clock::now() < deadline) {
    DoneAside done = RunOrTellWhy(InOrder(graphs, order), deadline, work);
    if (!done.why.empty()) {
      layouts.whyNone = "can't be laid out (" + done.why + ")";
      break;
    }
    auto next = order.begin();
    for (std::optional<Layout>& layout : done.layouts) layouts.each[*next++] = std::move(layout);
    // A graph that broke the library is left out, and the rest tried anew.
    order.erase(order.begin(), next == order.end() ? next : next + 1);
  }
  return layouts;
}

}  // namespace merivane::pictures
