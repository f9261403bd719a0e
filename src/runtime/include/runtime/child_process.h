// What a child of this program does before its own work, on systems that fork.
//
//   if (fork() == 0) {
//     DieWithParent(parent);
//     const int report = KeepAlone(pipe);
//     ...
//   }
#pragma once

#include <sys/types.h>

namespace merivane::runtime {

// Closes all that was inherited but the standard streams and the pipe, a screen's connection among
// it, which would outlive the parent otherwise. Gives the number that the pipe has from now on; it
// goes with the start of another program.
int KeepAlone(int pipe);

// From now on the end of the parent, whatever its cause, ends this process; one whose parent is
// gone already ends here.
void DieWithParent(pid_t parent);

}  // namespace merivane::runtime
