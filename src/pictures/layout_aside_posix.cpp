#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <string>
#include <string_view>

#include "layout.h"
#include "runtime/child_process.h"

namespace merivane::pictures {

using namespace runtime;

namespace {

using Clock = std::chrono::steady_clock;

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

void Send(int pipe, const void* data, std::size_t size) {
  std::string_view bytes(static_cast<const char*>(data), size);
  while (!bytes.empty()) {
    const ssize_t written = write(pipe, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) _exit(1);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

// Leaves by _exit, so that nothing of the parent is flushed or closed twice.
[[noreturn]] void RunChild(const std::vector<Graph>& graphs, const std::vector<std::size_t>& order,
                           pid_t parent, int inherited) {
  DieWithParent(parent);
  const int pipe = KeepAlone(inherited);
  const int nowhere = open("/dev/null", O_RDWR);
  if (nowhere >= 0) dup2(nowhere, STDERR_FILENO);
  const rlimit noCore{.rlim_cur = 0, .rlim_max = 0};
  setrlimit(RLIMIT_CORE, &noCore);
  for (const int number : {SIGSEGV, SIGABRT, SIGPIPE}) std::signal(number, SIG_DFL);
  for (const std::size_t which : order) {
    const Numbers numbers = Packed(LayOut(graphs[which]));
    const std::uint64_t count = numbers.size();
    Send(pipe, &count, sizeof count);
    Send(pipe, numbers.data(), count * sizeof(double));
  }
  _exit(0);
}

// False when the pipe ends before, or the deadline comes.
bool Receive(int pipe, void* data, std::size_t size, Clock::time_point deadline, Work& work) {
  constexpr std::int64_t kBetweenBeats = 20;  // milliseconds
  auto* at = static_cast<char*>(data);
  while (size > 0) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return false;
    pollfd ready{.fd = pipe, .events = POLLIN, .revents = 0};
    work.Beat();
    const auto wait = std::min<std::int64_t>(left.count(), kBetweenBeats);
    if (poll(&ready, 1, static_cast<int>(wait)) <= 0) continue;
    const ssize_t got = read(pipe, at, size);
    if (got == 0 || (got < 0 && errno != EINTR)) return false;
    if (got < 0) continue;
    at += got;
    size -= static_cast<std::size_t>(got);
  }
  return true;
}

// The process that lays out, and the pipe that its layouts come through.
class Child {
 public:
  Child(const std::vector<Graph>& graphs, const std::vector<std::size_t>& order) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    pipe_ = ends[0];
    const pid_t parent = getpid();
    id_ = fork();
    if (id_ == 0) RunChild(graphs, order, parent, ends[1]);
    close(ends[1]);
  }
  ~Child() {
    if (pipe_ >= 0) close(pipe_);
    if (id_ <= 0) return;
    kill(id_, SIGKILL);
    while (waitpid(id_, nullptr, 0) < 0 && errno == EINTR) {
    }
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  bool IsThere() const { return id_ > 0; }
  int Pipe() const { return pipe_; }

 private:
  int pipe_ = -1;
  pid_t id_ = -1;
};

// How many of `order` the child got through.
std::size_t RunAside(const std::vector<Graph>& graphs, const std::vector<std::size_t>& order,
                     Clock::time_point deadline, Work& work,
                     std::vector<std::optional<Layout>>& layouts) {
  const Child child(graphs, order);
  std::size_t done = 0;
  for (; child.IsThere() && done < order.size(); ++done) {
    std::uint64_t count = 0;
    if (!Receive(child.Pipe(), &count, sizeof count, deadline, work)) break;
    Numbers numbers(count);
    if (!Receive(child.Pipe(), numbers.data(), count * sizeof(double), deadline, work)) break;
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
