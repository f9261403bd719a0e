// What a database from elsewhere may not do to the program.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>

#include "runtime/run_time_error.h"

namespace merivane::store {

using namespace runtime;

// For each handle when it is opened: views, triggers, extensions and writing to the schema are
// switched off, a value ends at 16 MB, and all of SQLite's memory at 512 MB.
void Harden(sqlite3* database);

// For a read that met a longer value: looks for its table and column. `file` names the database.
RunTimeError TooLongError(sqlite3* database, const std::string& file);

// Tables of a damaged file may share pages, so that they have rows without end. An error of the
// file at `path` then. Costs one look at every page.
void RefuseSharedPages(sqlite3* database, const std::string& path);

// A statement that takes more steps than `bytes` of rows can need ends with SQLITE_INTERRUPT. One
// for each handle, which is not used when this has gone.
class StepLimit {
 public:
  StepLimit(sqlite3* database, std::uintmax_t bytes);
  StepLimit(const StepLimit&) = delete;
  StepLimit& operator=(const StepLimit&) = delete;

 private:
  static int Started(unsigned event, void* self, void* statement, void* text);
  static int Exceeded(void* self);

  sqlite3* database_;
  std::uint64_t most_;
  std::uint64_t periods_ = 0;  // since a statement was started
};

}  // namespace merivane::store
