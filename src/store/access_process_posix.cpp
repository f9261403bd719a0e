#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "access_copy.h"
#include "runtime/child_process.h"

namespace merivane::store {

using namespace runtime;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view kDone = "done";

void Limit(decltype(RLIMIT_CPU) what, rlim_t most) {
  rlimit limit{};
  getrlimit(what, &limit);
  limit.rlim_cur = std::min(most, limit.rlim_max);
  setrlimit(what, &limit);
}

void Silence() {
  const int nowhere = open("/dev/null", O_RDWR);
  if (nowhere < 0) return;
  dup2(nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
}

void Report(int pipe, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(pipe, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

// Leaves by _exit, so that nothing of the parent is flushed or closed twice.
[[noreturn]] void RunChild(const std::string& path, const std::string& sqlitePath,
                           const AccessLimits& limits, int pipe) {
  Silence();
  Limit(RLIMIT_CPU, static_cast<rlim_t>(limits.cpu.count()));
  Limit(RLIMIT_FSIZE, limits.bytes);
  Limit(RLIMIT_CORE, 0);
  for (const int number : {SIGXCPU, SIGXFSZ, SIGSEGV, SIGABRT}) std::signal(number, SIG_DFL);
  unsetenv("MDBICONV");  // would change the character set of texts
  try {
    Confine(path, sqlitePath);
    Work nobody;
    CopyAccessTables(path, sqlitePath, nobody);
    Report(pipe, kDone);
  } catch (const std::exception& error) {
    Report(pipe, error.what());
  }
  _exit(0);
}

// What the child reports until it ends; none when it is still at work at the deadline.
std::optional<std::string> ReadReport(int pipe, Clock::time_point deadline, Work& work) {
  constexpr int kWait = 20;  // milliseconds
  std::string text;
  while (Clock::now() < deadline) {
    work.Beat();
    pollfd ready{.fd = pipe, .events = POLLIN, .revents = 0};
    if (poll(&ready, 1, kWait) <= 0) continue;
    char buffer[512];
    const ssize_t got = read(pipe, buffer, sizeof buffer);
    if (got == 0) return text;
    if (got > 0) text.append(buffer, static_cast<std::size_t>(got));
  }
  return std::nullopt;
}

// At work no longer than this lives.
class Child {
 public:
  Child(pid_t id, int pipe) : id_(id), pipe_(pipe) {}
  ~Child() {
    close(pipe_);
    if (id_ > 0) End();
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  int Pipe() const { return pipe_; }

  // Gives how it ended.
  int Wait() {
    int status = 0;
    while (waitpid(id_, &status, 0) < 0 && errno == EINTR) {
    }
    id_ = 0;
    return status;
  }
  int End() {
    kill(id_, SIGKILL);
    return Wait();
  }

 private:
  pid_t id_;
  int pipe_;
};

// Why the child failed; empty when it did not.
std::string Supervise(Child& child, std::chrono::seconds wall, Work& work) {
  const std::optional<std::string> report = ReadReport(child.Pipe(), Clock::now() + wall, work);
  const int status = report ? child.Wait() : child.End();
  if (!report || (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU)) return kEndless;
  if (*report == kDone) return {};
  return report->empty() ? kDamaged : *report;
}

}  // namespace

std::string CopyAccessTablesAside(const std::string& path, const std::string& sqlitePath,
                                  Work& work) {
  const AccessLimits limits = LimitsFor(path);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return kNoProcess;
  const pid_t parent = getpid();
  const pid_t id = fork();
  if (id == 0) {
    DieWithParent(parent);
    RunChild(path, sqlitePath, limits, KeepAlone(ends[1]));
  }
  Child child(id, ends[0]);
  close(ends[1]);
  return id < 0 ? kNoProcess : Supervise(child, limits.wall, work);
}

}  // namespace merivane::store
