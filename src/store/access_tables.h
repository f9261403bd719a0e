// Copies the tables of an Access file into a SQLite file.
#pragma once

#include <string>

#include "store/work.h"

namespace merivane::store {

// Both paths are UTF-8. Throws std::exception with the reason, in UTF-8. A damaged file can crash
// or hang the library that reads it, so this is called in a process that can be spared.
// `work` hears of each row.
void CopyAccessTables(const std::string& path, const std::string& sqlitePath, Work& work);

}  // namespace merivane::store
