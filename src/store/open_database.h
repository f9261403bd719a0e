// Opens database files of each kind.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "engine.h"
#include "sqlite_handle.h"
#include "store/connection.h"
#include "store/work_listener.h"

namespace merivane::store {

// A real Access file is loaded into a file of its own, and a file opened for reading that lacks the
// key columns' indexes into memory, where it gets them. `inUse` says that a connection of ours
// holds the file, so that it is SQLite's. See Connection::Open for the failures.
std::shared_ptr<Engine> OpenDatabase(const std::string& path, OpenMode mode, bool inUse,
                                     WorkListener& work, std::chrono::milliseconds patience);

// A handle that waits for nobody, with the limits of hardening.h. Errors as DatabaseError tells.
DatabaseHandle OpenHandle(const std::string& path, int flags);

// Copies all pages. Errors as DatabaseError tells, on `path` of the source.
void CopyPages(sqlite3* from, sqlite3* to, const std::string& path, WorkListener& work);

// Opens the file `name` for reading and writing. A page that is written is kept in memory (of
// SQLite, within its limit) and read from there; the file is locked for reading as long as the
// handle lives and never changes. REQUIRES: no log stands beside it, and no journal that a crash
// has left; "pragma journal_mode = memory" comes before anything is written. Errors as
// DatabaseError tells, with `path` for a name.
DatabaseHandle OpenOverlay(const std::string& name, const std::string& path);

}  // namespace merivane::store
