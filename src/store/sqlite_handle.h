// Owners of SQLite's objects, and its failures as the program's errors.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <variant>

#include "runtime/run_time_error.h"
#include "runtime/value.h"

namespace merivane::store {

using namespace runtime;

struct DatabaseCloser {
  void operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }
};
struct StatementFinalizer {
  void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};
using DatabaseHandle = std::unique_ptr<sqlite3, DatabaseCloser>;
using StatementHandle = std::unique_ptr<sqlite3_stmt, StatementFinalizer>;

// A value that a statement's text held; a text is UTF-8.
using Literal = std::variant<std::int64_t, double, std::string>;

// The last failure on the database as an error: 70 locked by another process, 61 no room, 57 a
// failed read or write, 3251 read-only, 6 a number out of range; anything else is kDatabaseError
// with SQLite's words and `path`. A text beyond the limit is looked for, to tell its table and
// column.
RunTimeError DatabaseError(sqlite3* database, const std::string& path, int result = SQLITE_OK);
// Whether another process has put a file in the place of this one since it was opened.
bool HasMoved(sqlite3* database);
RunTimeError InUseError(const std::string& path);  // 70

// The error is kStatementError where SQLite refuses the text.
StatementHandle PrepareStatement(sqlite3* database, const std::string& sql,
                                 const std::string& path);
void Execute(sqlite3* database, const char* sql, const std::string& path);

// The bound data must outlive the next step. A text beyond the limit is kDatabaseError.
void Bind(sqlite3_stmt* statement, int parameter, const Literal& literal);
void Bind(sqlite3_stmt* statement, int parameter, const Value& value);

enum class ReadAs { kStored, kText };  // kText: numbers become text

// The value of a column of the row that the statement stands on.
Value ColumnValue(sqlite3_stmt* statement, int column, ReadAs as);
Value ColumnValue(sqlite3_stmt* statement, int column, sqlite3_value* value, ReadAs as);  // its
// Whether that column holds exactly `value`.
bool ColumnHolds(sqlite3_stmt* statement, int column, const Value& value);
std::string ColumnText(sqlite3_stmt* statement, int column);  // in Windows-1252
std::string Utf8ColumnText(sqlite3_stmt* statement, int column);

// A name as SQL takes it whatever characters it has; in and out UTF-8.
std::string Quoted(const std::string& name);

}  // namespace merivane::store
