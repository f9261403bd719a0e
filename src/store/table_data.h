// A table of an open database: what it declares, how often it was written, and its statements that
// write single rows.
//
// Rows that were added last are held in memory, where the table takes any row: the last one so that
// it is written once with what is set in it next, and those before it so that one statement writes
// several, for half the cost of one each. Who looks into the table by a statement calls WriteHeld
// before.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
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
  // `failure` keeps the error of the last write that failed.
  TableData(sqlite3* database, const std::string& path, TableSchema schema,
            std::optional<RunTimeError>& failure)
      : schema_(std::move(schema)), database_(database), path_(path), failure_(failure) {}
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

  // The row that was added last, where it is held: its number and the columns that were set. Null
  // without one.
  struct HeldRow {
    std::int64_t rowId = 0;
    std::vector<FieldChange> changes;

    Value* Find(int column);  // null for one that wasn't set
  };
  HeldRow* Held() { return heldRows_ > 0 ? &held_[heldRows_ - 1] : nullptr; }
  bool IsHeld(std::int64_t rowId) const {
    return heldRows_ > 0 && held_[heldRows_ - 1].rowId == rowId;
  }
  void WriteHeld() {
    if (heldRows_ > 0) WriteHeldRows();
  }
  void DropHeld() noexcept { heldRows_ = 0; }

 private:
  static constexpr std::size_t kTogether = 8;  // rows in one statement: more gain little

  // For rows of one set of columns.
  struct InsertStatements {
    StatementHandle one;
    StatementHandle several;
    std::size_t written = 0;  // rows
  };

  InsertStatements& FindInsert(std::span<const FieldChange> changes);
  sqlite3_stmt* FindUpdate(std::span<const FieldChange> changes);
  void TakeKey(std::span<const FieldChange> changes);
  std::string InsertSql(std::span<const FieldChange> changes, std::size_t rows) const;
  std::string UpdateSql(std::span<const FieldChange> changes) const;
  const std::string& NameOf(const FieldChange& change) const;
  void Run(sqlite3_stmt* statement);
  int BindRow(sqlite3_stmt* insert, int parameter, std::int64_t rowId,
              std::span<const FieldChange> changes) const;
  void InsertNow(std::int64_t rowId, std::span<const FieldChange> changes);
  void InsertTogether(InsertStatements& inserts, std::span<const HeldRow> rows);
  void WriteHeldRows();
  static bool AreAlike(std::span<const HeldRow> rows);
  bool HasRoomToHold() const;
  std::int64_t GreatestRowId();

  TableSchema schema_;
  sqlite3* database_;
  const std::string& path_;
  std::optional<RunTimeError>& failure_;
  std::uint64_t writes_ = 0;
  std::uint64_t deletes_ = 0;
  std::int64_t lastRowId_ = 0;
  std::uint64_t lastRowIdTransaction_ = 0;
  std::unordered_map<std::string, InsertStatements> inserts_;
  std::unordered_map<std::string, StatementHandle> updates_;
  StatementHandle delete_;
  StatementHandle greatest_;
  std::array<HeldRow, kTogether> held_;  // all but the last of one set of columns
  std::size_t heldRows_ = 0;
  std::size_t heldBytes_ = 0;  // of their texts and bytes
  std::string key_;
};

}  // namespace merivane::store
