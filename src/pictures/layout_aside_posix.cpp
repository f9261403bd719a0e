#include <algorithm>
#include <cstdint>

#include "layout.h"
#include "runtime/child_process.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

using Clock = ForkedChild::Clock;

// A layout as numbers through a pipe: how many follow, then all of them.
using Numbers = std::vector<double>;

Numbers Packed(const std::optional<Layout>& layout) {
  if (!layout) return {};
  Numbers numbers{layout->width, layout->height};
  for (const Point& centre : layout->centres) numbers.insert(numbers.end(), {centre.x, centre.y});
  for (const Route& route : layout->routes) {
    numbers.insert(numbers.end(),
                   {static_cast<double>(route.curve.size()), route.tip.x, route.tip.y});
    for (const Point& point : route.curve) numbers.insert(numbers.end(), {point.x, point.y});
  }
  return numbers;
}

std::optional<Layout> Unpacked(const Numbers& numbers, const Graph& graph) {
  if (numbers.empty()) return std::nullopt;
  auto next = numbers.begin();
  const auto point = [&next] {
    const double x = *next++;
    return Point{x, *next++};
  };
  Layout layout;
  layout.width = *next++;
  layout.height = *next++;
  for (std::size_t i = 0; i < graph.nodes.size(); ++i) layout.centres.push_back(point());
  for (std::size_t i = 0; i < graph.edges.size(); ++i) {
    Route route;
    const auto length = static_cast<std::size_t>(*next++);
    route.tip = point();
    for (std::size_t at = 0; at < length; ++at) route.curve.push_back(point());
    layout.routes.push_back(std::move(route));
  }
  return layout;
}

void SendLayouts(int pipe, const std::vector<Graph>& graphs,
                 const std::vector<std::size_t>& order) {
  for (const std::size_t which : order) {
    const Numbers numbers = Packed(LayOut(graphs[which]));
    const std::uint64_t count = numbers.size();
    SendOrExit(pipe, &count, sizeof count);
    SendOrExit(pipe, numbers.data(), count * sizeof(double));
  }
}

// How many of `order` the child got through.
std::size_t RunAside(const std::vector<Graph>& graphs, const std::vector<std::size_t>& order,
                     Clock::time_point deadline, Work& work,
                     std::vector<std::optional<Layout>>& layouts) {
  const ForkedChild child([&](int pipe) { SendLayouts(pipe, graphs, order); });
  const auto beat = [&work] { work.Beat(); };
  std::size_t done = 0;
  for (; done < order.size(); ++done) {
    std::uint64_t count = 0;
    if (!child.Receive(&count, sizeof count, deadline, beat)) break;
    Numbers numbers(count);
    if (!child.Receive(numbers.data(), count * sizeof(double), deadline, beat)) break;
    layouts[order[done]] = Unpacked(numbers, graphs[order[done]]);
  }
  return done;
}

}  // namespace

std::vector<std::optional<Layout>> LayOutAside(const std::vector<Graph>& graphs,
                                               std::chrono::milliseconds limit, Work& work) {
  const Clock::time_point deadline = Clock::now() + limit;
  std::vector<std::optional<Layout>> layouts(graphs.size());
  std::vector<std::size_t> order = SmallFirst(graphs);
  // A graph that broke the library is left out, and the rest tried anew.
  while (!order.empty() && Clock::now() < deadline) {
    const std::size_t done = RunAside(graphs, order, deadline, work, layouts);
    order.erase(order.begin(),
                order.begin() + static_cast<std::ptrdiff_t>(std::min(done + 1, order.size())));
  }
  return layouts;
}

}  // namespace merivane::pictures
