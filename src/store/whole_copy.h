// Copies of files that are whole or are told to have failed.
#pragma once

#include <sqlite3.h>

#include <string>

#include "store/work.h"

namespace merivane::store {

inline constexpr const char* kCopying = "Copying the database";

// Each makes `to` and proves it: it is on the disk to its last byte. `shown` names it in errors:
// 57, 61 no room, 70 refused, 76 no such folder. A copy that failed may be left in part. `work`
// hears of each block.
void CopyBytes(const std::string& from, const std::string& to, const std::string& shown,
               Work& work);
// Errors as above where one can't be read.
bool HaveSameBytes(const std::string& a, const std::string& b);
// The same for the open database in the file `path`, which is not opened once more.
bool HasBytesOf(sqlite3* database, const std::string& path, const std::string& other);

// Of an open database. REQUIRES: nobody writes to it meanwhile, and no log stands beside it.
void CopyOpenDatabaseBytes(sqlite3* database, const std::string& from, const std::string& to,
                           const std::string& shown, Work& work);
// Of an open database, which waits for its writers as its busy handler has it; `from` names it in
// the errors that its file is to blame for.
void CopyDatabasePages(sqlite3* database, const std::string& from, const std::string& to,
                       const std::string& shown, Work& work);

}  // namespace merivane::store
