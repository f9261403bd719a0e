// Which index serves a statement. SQLite guesses by counts that a fresh file doesn't have, and its
// guess can sort a whole project for one row; here the keys are known.
#pragma once

#include <string>

#include "statement.h"
#include "store/work_listener.h"

namespace merivane::store {

inline constexpr std::string_view kNotIndexed = " not indexed";

// What stands behind the table's name: " indexed by ...", " not indexed", or nothing where SQLite
// may choose.
std::string IndexHint(const StatementParts& statement);

// Adds an index for each key that the tables in the database have and no index leads to.
void AddMissingKeyIndexes(sqlite3* database, const std::string& path, WorkListener& work);
bool LacksKeyIndexes(sqlite3* database, const std::string& path);

// Takes out the indexes that tell rows by their project alone; without them a table is walked.
void DropProjectIndexes(sqlite3* database, const std::string& path);

}  // namespace merivane::store
