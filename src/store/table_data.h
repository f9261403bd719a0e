// A table of an open database: what it declares, how often it was written, and its statements that
// write single rows.
//
// The row that was added last is held in memory, where the table takes any row, so that it is
// written once with what is set in it next; who looks into the table by a statement calls WriteHeld
// before.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "table_schema.h"

namespace merivane::store {

// A value for a column, already converted to its kind.
struct FieldChange {
  int column;
  Value value;
};

class TableData {
 public:
  TableData(sqlite3* database, const std::string& path, TableSchema schema)
      : schema_(std::move(schema)), database_(database), path_(path) {}
  TableData(const TableData&) = delete;
  TableData& operator=(const TableData&) = delete;

  const TableSchema& Schema() const { return schema_; }

  // Grow with each write, so that what was read before can be told from what is there now.
  std::uint64_t Writes() const { return writes_; }
  std::uint64_t Deletes() const { return deletes_; }

  // A row number above all that the table has and has had since the database was opened, so that
  // the place of a deleted row is never taken.
  std::int64_t NextRowId();
  // REQUIRES: called before the first of these writes in each transaction.
  void BeginTransaction(std::uint64_t transaction);

  // REQUIRES: a transaction. Where a column is the row number, `rowId` is not used, and the number
  // comes back that the row got.
  // The changes of the row may be taken.
  std::int64_t Insert(std::int64_t rowId, std::vector<FieldChange>& changes);
  void Update(std::int64_t rowId, std::span<const FieldChange> changes);  // 3021 for no such row
  void Delete(std::int64_t rowId);                                        // likewise

  // The row that is held: its number and the columns that were set. Null without one.
  struct HeldRow {
    std::int64_t rowId = 0;
    std::vector<FieldChange> changes;

    Value* Find(int column);  // null for one that wasn't set
  };
  HeldRow* Held() { return isHeld_ ? &held_ : nullptr; }
  bool IsHeld(std::int64_t rowId) const { return isHeld_ && held_.rowId == rowId; }
  void WriteHeld() {
    if (isHeld_) WriteHeldRow();
  }
  void DropHeld() noexcept { isHeld_ = false; }

 private:
  enum class Write { kInsert, kUpdate };
  using Statements = std::unordered_map<std::string, StatementHandle>;

  sqlite3_stmt* Find(Write write, std::span<const FieldChange> changes);
  std::string InsertSql(std::span<const FieldChange> changes) const;
  std::string UpdateSql(std::span<const FieldChange> changes) const;
  const std::string& NameOf(const FieldChange& change) const;
  void Run(sqlite3_stmt* statement);
  void InsertNow(std::int64_t rowId, std::span<const FieldChange> changes);
  void WriteHeldRow();
  std::int64_t GreatestRowId();

  TableSchema schema_;
  sqlite3* database_;
  const std::string& path_;
  std::uint64_t writes_ = 0;
  std::uint64_t deletes_ = 0;
  std::int64_t lastRowId_ = 0;
  std::uint64_t lastRowIdTransaction_ = 0;
  Statements inserts_;
  Statements updates_;
  StatementHandle delete_;
  StatementHandle greatest_;
  bool isHeld_ = false;
  HeldRow held_;
  std::size_t heldBytes_ = 0;  // of its texts and bytes
  std::string key_;
};

}  // namespace merivane::store
