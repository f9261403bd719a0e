// A database file whose changes stay in memory.
#pragma once

#include "sqlite_handle.h"

namespace merivane::store {

// Opens the file `name` for reading and writing. A page that is written is kept in memory (of
// SQLite, within its limit) and read from there; the file is locked for reading as long as the
// handle lives and never changes. REQUIRES: no log stands beside it, and no journal that a crash
// has left; "pragma journal_mode = memory" comes before anything is written. Errors as
// DatabaseError tells, with `path` for a name.
DatabaseHandle OpenOverlay(const std::string& name, const std::string& path);

}  // namespace merivane::store
