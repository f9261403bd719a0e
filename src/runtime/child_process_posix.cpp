#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>

#include "runtime/child_process.h"

namespace merivane::runtime {

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

}  // namespace merivane::runtime
