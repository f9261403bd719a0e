#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <string_view>

#include "runtime/child_process.h"
#include "runtime/run_time_error.h"

namespace merivane::runtime {

namespace {

[[noreturn]] void CanNotStart() {
  throw RunTimeError(kDeviceIoError,
                     std::string("a process can't be started: ") + std::strerror(errno));
}

void Limit(decltype(RLIMIT_CPU) what, std::uint64_t most) {
  rlimit limit{};
  getrlimit(what, &limit);
  limit.rlim_cur = std::min<rlim_t>(most, limit.rlim_cur);
  setrlimit(what, &limit);
}

// Without a limit where the system doesn't tell what is taken already.
void LimitMemory(std::uint64_t most) {
  std::uint64_t pages[6] = {};  // the last one: of data
  std::ifstream taken("/proc/self/statm");
  for (std::uint64_t& count : pages) taken >> count;
  if (!taken || most == ChildLimits().memoryBytes) return;
  Limit(RLIMIT_DATA, pages[5] * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)) + most);
}

// Leaves by _exit, so that nothing of the parent is flushed or closed twice.
[[noreturn]] void RunChild(const std::function<void(int pipe)>& work, const ChildLimits& limits,
                           pid_t parent, int inherited) {
  DieWithParent(parent);
  const int pipe = KeepAlone(inherited);
  const int nowhere = open("/dev/null", O_RDWR);
  if (nowhere >= 0) {
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
  }
  LimitMemory(limits.memoryBytes);
  Limit(RLIMIT_CPU, limits.cpuSeconds);
  Limit(RLIMIT_FSIZE, limits.fileBytes);
  Limit(RLIMIT_CORE, 0);
  for (const int number : {SIGSEGV, SIGABRT, SIGTRAP, SIGPIPE, SIGXCPU, SIGXFSZ}) {
    std::signal(number, SIG_DFL);
  }
  try {
    work(pipe);
  } catch (...) {
    _exit(1);
  }
  _exit(0);
}

}  // namespace

int KeepAlone(int pipe) {
  constexpr int kFirst = STDERR_FILENO + 1;
  const int kept = pipe == kFirst ? pipe : dup2(pipe, kFirst);
  fcntl(kept, F_SETFD, FD_CLOEXEC);
  close_range(kFirst + 1, ~0U, 0);
  return kept;
}

void DieWithParent(pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);
}

void SendOrExit(int pipe, const void* data, std::size_t size) {
  std::string_view bytes(static_cast<const char*>(data), size);
  while (!bytes.empty()) {
    const ssize_t written = write(pipe, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) _exit(1);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

ForkedChild::ForkedChild(const std::function<void(int pipe)>& work, const ChildLimits& limits) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) CanNotStart();
  const pid_t parent = getpid();
  id_ = fork();
  if (id_ == 0) RunChild(work, limits, parent, ends[1]);
  const int failure = errno;
  close(ends[1]);
  pipe_ = ends[0];
  if (id_ > 0) return;
  close(pipe_);
  errno = failure;
  CanNotStart();
}

ForkedChild::~ForkedChild() {
  close(pipe_);
  if (id_ < 0) return;
  kill(id_, SIGKILL);
  WaitForEnd();
}

int ForkedChild::WaitForEnd() {
  int status = 0;
  while (waitpid(id_, &status, 0) < 0 && errno == EINTR) {
  }
  id_ = -1;
  return status;
}

bool ForkedChild::HasUsedUpItsTime() {
  const int status = WaitForEnd();
  return WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU;
}

// `size`: how many there is room for; how many came.
ForkedChild::Pipe ForkedChild::Read(void* data, std::size_t& size, Clock::time_point deadline,
                                    const std::function<void()>& beat) const {
  constexpr std::int64_t kBetweenBeats = 20;  // milliseconds
  for (;;) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    if (left.count() <= 0) return Pipe::kIsLate;
    pollfd ready{.fd = pipe_, .events = POLLIN, .revents = 0};
    beat();
    const auto wait = std::min<std::int64_t>(left.count(), kBetweenBeats);
    if (poll(&ready, 1, static_cast<int>(wait)) <= 0) continue;
    const ssize_t got = read(pipe_, data, size);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return Pipe::kHasEnded;
    size = static_cast<std::size_t>(got);
    return Pipe::kHasBytes;
  }
}

bool ForkedChild::Receive(void* data, std::size_t size, Clock::time_point deadline,
                          const std::function<void()>& beat) const {
  auto* at = static_cast<char*>(data);
  while (size > 0) {
    std::size_t got = size;
    if (Read(at, got, deadline, beat) != Pipe::kHasBytes) return false;
    at += got;
    size -= got;
  }
  return true;
}

std::optional<std::string> ForkedChild::ReceiveAll(Clock::time_point deadline,
                                                   const std::function<void()>& beat) const {
  std::string all;
  char buffer[1 << 16];
  for (;;) {
    std::size_t got = sizeof buffer;
    switch (Read(buffer, got, deadline, beat)) {
      case Pipe::kHasBytes:
        all.append(buffer, got);
        break;
      case Pipe::kHasEnded:
        return all;
      case Pipe::kIsLate:
        return std::nullopt;
    }
  }
}

}  // namespace merivane::runtime
