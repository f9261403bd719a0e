// Files of databases on the disk: what they are, and how one takes another's place. Paths are
// UTF-8.
#pragma once

#include <string>

#include "runtime/file_names.h"
#include "runtime/new_file.h"

namespace merivane::store {

using namespace runtime;

enum class FileKind { kSqlite, kSqliteWithLog, kOther };

// By the first bytes. Errors: 53 no such file (the path in the description), 70 one that may not be
// read, kDatabaseError for a folder. REQUIRES: no connection of ours holds the file, whose locks
// would go when it is closed here.
FileKind KindOfFile(const std::string& path);

// A journal of rollback lies beside the database; it holds pages to put back where a transaction
// was cut off, and otherwise begins with zeros.
bool HasJournal(const std::string& path);
bool HasPagesToPutBack(const std::string& path);

// Removes what a crash may have left beside the database.
void RemoveJournals(const std::string& path);

}  // namespace merivane::store
