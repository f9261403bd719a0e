// Copying an Access file aside, where a damaged one does no harm.
#pragma once

#include <string>

#include "store/work.h"

namespace merivane::store {

// Runs CopyAccessTables with limits on its time and on the size of the copy. Gives the reason why
// it failed, in UTF-8; empty when it did not.
// What `work` throws ends the copying.
std::string CopyAccessTablesAside(const std::string& path, const std::string& sqlitePath,
                                  Work& work);

// Both paths are UTF-8. Throws std::exception with the reason, in UTF-8. A damaged file can crash
// or hang the library that reads it, so this is called in a process that can be spared.
// `work` hears of each row.
void CopyAccessTables(const std::string& path, const std::string& sqlitePath, Work& work);

// From here on this process may read `source` and the system's own files, and write in the folder
// of `copy`; it starts no program and no process, opens no connection and looks into no other
// process. Where the kernel knows no such limits (Landlock from 5.13 on, seccomp), the process goes
// on without.
void Confine(const std::string& source, const std::string& copy);

}  // namespace merivane::store
