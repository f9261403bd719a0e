// Children of this program, on systems that fork.
//
//   double area = 0;
//   const ForkedChild child([&](int pipe) {
//     area = AreaOf(file);  // may break there
//     SendOrExit(pipe, &area, sizeof area);
//   });
//   if (!child.Receive(&area, sizeof area, deadline, beat)) ...  // it broke, or takes too long
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>

namespace merivane::runtime {

// Closes all that was inherited but the standard streams and the pipe, a screen's connection among
// it, which would outlive the parent otherwise. Gives the number that the pipe has from now on; it
// goes with the start of another program.
int KeepAlone(int pipe);

// From now on the end of the parent, whatever its cause, ends this process; one whose parent is
// gone already ends here.
void DieWithParent(pid_t parent);

// Sends all of it, or ends this process where nobody takes it.
void SendOrExit(int pipe, const void* data, std::size_t size);

// The system ends a child that uses more time or writes more, and gives it no more memory.
struct ChildLimits {
  std::uint64_t memoryBytes = std::numeric_limits<std::uint64_t>::max();  // beyond this process's
  std::uint64_t cpuSeconds = std::numeric_limits<std::uint64_t>::max();
  std::uint64_t fileBytes = std::numeric_limits<std::uint64_t>::max();  // of each file it writes
};

// A copy of this process that works something out and sends it through a pipe, so that a library
// which breaks there, or ends its program, breaks nothing here. It ends with the object.
class ForkedChild {
 public:
  using Clock = std::chrono::steady_clock;

  // `work` gets the end of the pipe to send to; what it writes to standard output and error goes
  // nowhere. Error 57: no process can be started.
  explicit ForkedChild(const std::function<void(int pipe)>& work, const ChildLimits& limits = {});
  ~ForkedChild();
  ForkedChild(const ForkedChild&) = delete;
  ForkedChild& operator=(const ForkedChild&) = delete;

  // False where the child ends before, or the deadline comes. `beat` is called some fifty times a
  // second meanwhile, and may throw.
  bool Receive(void* data, std::size_t size, Clock::time_point deadline,
               const std::function<void()>& beat) const;

  // What it sends until it ends, in the same way; nothing where it is still at work at the
  // deadline.
  std::optional<std::string> ReceiveAll(Clock::time_point deadline,
                                        const std::function<void()>& beat) const;

  // Waits for its end.
  bool HasUsedUpItsTime();

 private:
  enum class Pipe { kHasBytes, kHasEnded, kIsLate };

  Pipe Read(void* data, std::size_t& size, Clock::time_point deadline,
            const std::function<void()>& beat) const;
  int WaitForEnd();

  int pipe_ = -1;
  pid_t id_ = -1;
};

}  // namespace merivane::runtime
