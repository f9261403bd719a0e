#include "hardening.h"

#include <algorithm>
#include <chrono>
#include <vector>

#include "runtime/code_page.h"
#include "sqlite_handle.h"

namespace merivane::store {

namespace {

constexpr int kLongestValue = 16 << 20;
constexpr sqlite3_int64 kMostMemory = 512 << 20;

constexpr int kPeriod = 50000;                        // steps between two looks
constexpr std::uint64_t kFreeSteps = 20'000'000;      // for the smallest file
constexpr std::uint64_t kStepsPerByte = 16;           // rows of few bytes need most
constexpr std::uint64_t kStepsPerChange = 10'000;     // rows that were added since
constexpr std::uint64_t kGreatestCount = 0xF0000000;  // what SQLite's counter can tell

struct TableColumn {
  std::string table;
  std::string column;
};

// Takes what it gets, since the database is one that fails.
std::vector<TableColumn> StoredColumns(sqlite3* database) {
  sqlite3_stmt* raw = nullptr;
  sqlite3_prepare_v2(database,
                     "select m.name, c.name from sqlite_master m, pragma_table_info(m.name) c"
                     " where m.type = 'table' and m.rootpage > 0",
                     -1, &raw, nullptr);
  const StatementHandle list(raw);
  std::vector<TableColumn> columns;
  while (sqlite3_step(list.get()) == SQLITE_ROW) {
    columns.push_back({ColumnText(list.get(), 0), ColumnText(list.get(), 1)});
  }
  return columns;
}

bool HoldsTooLong(sqlite3* database, const TableColumn& place) {
  const std::string sql =
      "select " + Quoted(ToUtf8(place.column)) + " from " + Quoted(ToUtf8(place.table));
  sqlite3_stmt* raw = nullptr;
  sqlite3_prepare_v2(database, sql.c_str(), -1, &raw, nullptr);
  const StatementHandle values(raw);
  int step = SQLITE_ROW;
  while (step == SQLITE_ROW) step = sqlite3_step(values.get());
  return (step & 0xFF) == SQLITE_TOOBIG;
}

}  // namespace

void Harden(sqlite3* database) {
  sqlite3_hard_heap_limit64(kMostMemory);
  for (const int feature : {SQLITE_DBCONFIG_TRUSTED_SCHEMA, SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION,
                            SQLITE_DBCONFIG_ENABLE_TRIGGER, SQLITE_DBCONFIG_ENABLE_VIEW}) {
    sqlite3_db_config(database, feature, 0, nullptr);
  }
  sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_limit(database, SQLITE_LIMIT_LENGTH, kLongestValue);
  sqlite3_limit(database, SQLITE_LIMIT_ATTACHED, 0);
}

RunTimeError TooLongError(sqlite3* database, const std::string& file) {
  using Clock = std::chrono::steady_clock;
  constexpr auto kPatience = std::chrono::seconds(2);
  const auto deadline = Clock::now() + kPatience;
  std::string place = "A value";
  for (const TableColumn& column : StoredColumns(database)) {
    if (Clock::now() > deadline) break;
    if (!HoldsTooLong(database, column)) continue;
    place = "A value in the column '" + column.column + "' of the table '" + column.table + "'";
    break;
  }
  return {kDatabaseError, place + " of the database " + file + " is longer than 16 MB."};
}

void RefuseSharedPages(sqlite3* database, const std::string& path) {
  const StatementHandle check = PrepareStatement(database, "pragma quick_check", path);
  if (sqlite3_step(check.get()) != SQLITE_ROW) return;  // told where that page is read
  if (ColumnText(check.get(), 0).find("2nd reference to page") == std::string::npos) return;
  throw RunTimeError(kDatabaseError,
                     "The file '" + FromUtf8(path) + "' is damaged or no database.");
}

StepLimit::StepLimit(sqlite3* database, std::uintmax_t bytes)
    : database_(database), most_(kFreeSteps + kStepsPerByte * bytes) {
  sqlite3_trace_v2(database, SQLITE_TRACE_STMT, &StepLimit::Started, this);
  sqlite3_progress_handler(database, kPeriod, &StepLimit::Exceeded, this);
}

int StepLimit::Started(unsigned /*event*/, void* self, void* statement, void* /*text*/) {
  sqlite3_stmt_status(static_cast<sqlite3_stmt*>(statement), SQLITE_STMTSTATUS_VM_STEP, 1);
  static_cast<StepLimit*>(self)->periods_ = 0;
  return 0;
}

// A statement's own count grows when it has given a row; until then the periods tell.
int StepLimit::Exceeded(void* self) {
  auto& limit = *static_cast<StepLimit*>(self);
  std::uint64_t steps = ++limit.periods_ * kPeriod;
  for (sqlite3_stmt* statement = sqlite3_next_stmt(limit.database_, nullptr); statement != nullptr;
       statement = sqlite3_next_stmt(limit.database_, statement)) {
    if (sqlite3_stmt_busy(statement) == 0) continue;
    const int count = sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_VM_STEP, 0);
    steps = std::max<std::uint64_t>(steps, static_cast<unsigned>(count));
  }
  const auto changes = static_cast<std::uint64_t>(sqlite3_total_changes64(limit.database_));
  const std::uint64_t most = limit.most_ + changes * kStepsPerChange;
  return steps > std::min(most, kGreatestCount) ? 1 : 0;
}

}  // namespace merivane::store
