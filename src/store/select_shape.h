// All statements that read by one shape of SELECT: prepared once, lent to the record sets that walk
// by it at the time.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "sqlite_handle.h"
#include "statement.h"
#include "table_data.h"

namespace merivane::store {

enum class ReadKind : std::uint8_t {
  kWalk,   // the rows, from the first one on
  kCount,  // their number
  // REQUIRES: HasKeys, for the rest.
  kLast,  // the last row, above one row number and up to another
  kKeys,  // row numbers alone, likewise
  kRow,   // the row with a row number
};

class SelectShape;

// A lent statement goes back when it is dropped, so that it locks nothing any more.
struct StatementReturner {
  SelectShape* owner = nullptr;
  ReadKind kind = ReadKind::kWalk;
  void operator()(sqlite3_stmt* statement) const noexcept;
};
using LentStatement = std::unique_ptr<sqlite3_stmt, StatementReturner>;

class SelectShape {
 public:
  SelectShape(sqlite3* database, const std::string& path, StatementParts statement,
              TableData& table);
  SelectShape(const SelectShape&) = delete;
  SelectShape& operator=(const SelectShape&) = delete;

  const StatementParts& Statement() const { return statement_; }
  TableData& Table() const { return table_; }
  // The rows have numbers, which stand before the values; their values are columns of the table.
  bool HasKeys() const { return computed_.empty() && !table_.Schema().RowId().empty(); }

  int FieldCount() const;
  std::string FieldName(int field) const;
  // The field of that name, ignoring case; -1 where there is none.
  int FindField(std::string_view name) const;
  int ColumnOf(int field) const { return statement_.columns[static_cast<std::size_t>(field)]; }

  // Where a field stands in the rows, and its value in the row that a statement stands on. Of a
  // row that has a number, only the columns that the statement names are read, and where it names
  // all of them, those that were ever asked for, so that a statement lent before may be too narrow.
  int SlotOf(int field) { return HasKeys() ? SlotOfColumn(ColumnOf(field)) : field; }
  int SlotOfColumn(int column);
  Value ValueIn(sqlite3_stmt* row, int field);
  // The same of all fields, of a row that has the slot that TakeUpAll has given.
  int TakeUpAll();
  void ReadAll(sqlite3_stmt* row, std::vector<Value>& fields) const;
  static bool IsIn(sqlite3_stmt* row, int slot) { return slot < sqlite3_column_count(row); }

  // The row that the table holds, if any, is among those of the statement. False where only SQLite
  // could tell.
  bool FindsHeld(std::span<const Literal> literals) const;

  // Writes the row that the table holds, so that every row can be read.
  LentStatement Lend(ReadKind kind, std::span<const Literal> literals);

 private:
  friend struct StatementReturner;

  void AddSlot(int column);
  ReadAs FormOf(int field) const;
  std::string Sql(ReadKind kind) const;
  std::string Columns() const;
  std::string Where(std::string_view more) const;
  StatementHandle Prepare(ReadKind kind);
  void TakeBack(ReadKind kind, sqlite3_stmt* statement) noexcept;

  sqlite3* database_;
  const std::string& path_;
  StatementParts statement_;
  TableData& table_;
  std::string hint_;
  std::vector<std::string> computed_;  // the fields' names where they are no columns
  std::vector<std::int16_t> slots_;    // by column; -1 for one that nobody asked for
  std::vector<int> slotColumns_;
  std::vector<std::pair<int, ReadAs>> all_;  // by field: its slot, and how it is read
  std::array<std::vector<StatementHandle>, 5> free_;
};

}  // namespace merivane::store
