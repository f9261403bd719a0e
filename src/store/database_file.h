// Files of databases on the disk: what they are, and copies of them that are whole or are told to
// have failed. Paths are UTF-8.
#pragma once

#include <sqlite3.h>

#include <string>

#include "runtime/file_names.h"
#include "runtime/new_file.h"
#include "store/work_listener.h"

namespace merivane::store {

using namespace runtime;

enum class DatabaseKind { kSqlite, kSqliteWithLog, kOther };

// By the first bytes. Errors: 53 no such file (the path in the description), 70 one that may not be
// read, kDatabaseError for a folder. REQUIRES: no connection of ours holds the file, whose locks
// would go when it is closed here.
DatabaseKind KindOfDatabase(const std::string& path);

// A journal of rollback lies beside the database; it holds pages to put back where a transaction
// was cut off, and otherwise begins with zeros.
bool HasJournal(const std::string& path);
bool HasPagesToPutBack(const std::string& path);

// Removes what a crash may have left beside the database.
void RemoveJournals(const std::string& path);

inline constexpr const char* kCopying = "Copying the database";

// Each makes `to` and proves it: it is on the disk to its last byte. `shown` names it in errors:
// 57, 61 no room, 70 refused, 76 no such folder. A copy that failed may be left in part. `work`
// hears of each block.
void CopyBytes(const std::string& from, const std::string& to, const std::string& shown,
               WorkListener& work);
// Errors as above where one can't be read.
bool HaveSameBytes(const std::string& a, const std::string& b);
// The same for the open database in the file `path`, which is not opened once more.
bool HasBytesOf(sqlite3* database, const std::string& path, const std::string& other);

// Of an open database. REQUIRES: nobody writes to it meanwhile, and no log stands beside it.
void CopyOpenDatabaseBytes(sqlite3* database, const std::string& from, const std::string& to,
                           const std::string& shown, WorkListener& work);
// Of an open database, which waits for its writers as its busy handler has it; `from` names it in
// the errors that its file is to blame for.
void CopyDatabasePages(sqlite3* database, const std::string& from, const std::string& to,
                       const std::string& shown, WorkListener& work);

}  // namespace merivane::store
