// What a child of this program does before its own work, on systems that fork.
//
//   if (fork() == 0) {
//     DieWithParent(parent);
//     const int report = KeepAlone(pipe);
//     ...
//   }
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <functional>

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

// A copy of this process that works something out and sends it through a pipe, so that a library
// which breaks there, or ends its program, breaks nothing here. It ends with the object.
class ForkedChild {
 public:
  using Clock = std::chrono::steady_clock;

  // `work` gets the end of the pipe to send to; what it writes to standard error goes nowhere.
  // Error 57: no process can be started.
  explicit ForkedChild(const std::function<void(int pipe)>& work);
  ~ForkedChild();
  ForkedChild(const ForkedChild&) = delete;
  ForkedChild& operator=(const ForkedChild&) = delete;

  // False where the child ends before, or the deadline comes. `beat` is called some fifty times a
  // second meanwhile, and may throw.
  bool Receive(void* data, std::size_t size, Clock::time_point deadline,
               const std::function<void()>& beat) const;

 private:
  int pipe_ = -1;
  pid_t id_ = -1;
};

}  // namespace merivane::runtime
