#include <algorithm>
#include <cstdint>
#include <string>

#include "layout.h"
#include "modules.h"
#include "runtime/child_process.h"
#include "runtime/run_time_error.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

using Clock = ForkedChild::Clock;

// A layout on its way through a pipe.
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

// How many follow, then all of them.
template <typename Row>
void Send(int pipe, const Row& row) {
  const std::uint64_t count = row.size();
  SendOrExit(pipe, &count, sizeof count);
  SendOrExit(pipe, row.data(), count * sizeof row[0]);
}

// Why there are none, or nothing; then each layout.
void SendLayouts(int pipe, const std::vector<Graph>& graphs,
                 const std::vector<std::size_t>& order) try {
  const auto& module = static_cast<const LayoutModule&>(OpenModule(kLayoutModule));
  Send(pipe, std::string());
  for (const std::size_t which : order) Send(pipe, Packed(module.layOut(graphs[which])));
} catch (const RunTimeError& error) {
  Send(pipe, error.Description());
}

// How many of `order` the child got through.
std::size_t RunAside(const std::vector<Graph>& graphs, const std::vector<std::size_t>& order,
                     Clock::time_point deadline, WorkListener& work, Layouts& layouts) {
  const ForkedChild child([&](int pipe) { SendLayouts(pipe, graphs, order); });
  const auto take = [&](auto& row) {
    const auto beat = [&work] { work.Beat(); };
    std::uint64_t count = 0;
    if (!child.Receive(&count, sizeof count, deadline, beat)) return false;
    row.resize(count);
    return child.Receive(row.data(), count * sizeof row[0], deadline, beat);
  };
  std::string why;
  if (!take(why)) return 0;
  if (!why.empty()) {
    layouts.whyNone = "can't be laid out (" + why + ")";
    return order.size();
  }
  Numbers numbers;
  std::size_t done = 0;
  for (; done < order.size() && take(numbers); ++done) {
    layouts.each[order[done]] = Unpacked(numbers, graphs[order[done]]);
  }
  return done;
}

}  // namespace

Layouts LayOutAside(const std::vector<Graph>& graphs, std::chrono::milliseconds limit,
                    WorkListener& work) {
  const Clock::time_point deadline = Clock::now() + limit;
  Layouts layouts;
  layouts.each.resize(graphs.size());
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
