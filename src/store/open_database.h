// Opens database files of each kind.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "engine.h"
#include "store/connection.h"
#include "store/work.h"

namespace merivane::store {

// A real Access file is loaded into a file of its own, and a file opened for reading that lacks the
// key columns' indexes into memory, where it gets them. `inUse` says that a connection of ours
// holds the file, so that it is SQLite's. See Connection::Open for the failures.
std::shared_ptr<Engine> OpenDatabase(const std::string& path, OpenMode mode, bool inUse, Work& work,
                                     std::chrono::milliseconds patience);

// A handle that waits for nobody, with the limits of hardening.h. Errors as DatabaseError tells.
DatabaseHandle OpenHandle(const std::string& path, int flags);

// Copies all pages. Errors as DatabaseError tells, on `path` of the source.
void CopyPages(sqlite3* from, sqlite3* to, const std::string& path, Work& work);

}  // namespace merivane::store
