// What is left to a process that reads a file from anywhere.
#pragma once

#include <string>

namespace merivane::store {

// From here on this process may read `source` and the system's own files, and write in the folder
// of `copy`; it starts no program and no process, opens no connection and looks into no other
// process. Where the kernel knows no such limits (Landlock from 5.13 on, seccomp), the process goes
// on without.
void Confine(const std::string& source, const std::string& copy);

}  // namespace merivane::store
