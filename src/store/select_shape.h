// All statements that read by one shape of SELECT: prepared once, lent to the record sets that walk
// by it at the time.
#pragma once

#include <array>
#include <span>
#include <string>
#include <vector>

#include "statement.h"
#include "table_data.h"

namespace merivane::store {

enum class ReadKind {
  kWalk,      // row number and columns, from the first row on
  kLast,      // the same of the last row, above one row number and up to another
  kKeys,      // row numbers alone, likewise
  kRow,       // the columns of the row with a row number
  kSnapshot,  // all fields, without row numbers
};

class SelectShape;

// A lent statement; it goes back when this is dropped, so that it locks nothing any more.
class LentStatement {
 public:
  LentStatement() = default;
  LentStatement(SelectShape* owner, ReadKind kind, StatementHandle statement, int width)
      : owner_(owner), kind_(kind), width_(width), statement_(std::move(statement)) {}
  LentStatement(LentStatement&& other) noexcept = default;
  LentStatement& operator=(LentStatement&& other) noexcept;
  ~LentStatement() { GiveBack(); }

  explicit operator bool() const { return statement_ != nullptr; }
  sqlite3_stmt* get() const { return statement_.get(); }
  ReadKind Kind() const { return kind_; }
  int Width() const { return width_; }
  void GiveBack() noexcept;

 private:
  SelectShape* owner_ = nullptr;
  ReadKind kind_ = ReadKind::kWalk;
  int width_ = 0;
  StatementHandle statement_;
};

class SelectShape {
 public:
  SelectShape(sqlite3* database, const std::string& path, StatementParts statement,
              TableData& table);
  SelectShape(const SelectShape&) = delete;
  SelectShape& operator=(const SelectShape&) = delete;

  const StatementParts& Statement() const { return statement_; }
  TableData& Table() const { return table_; }
  bool HasKeys() const { return statement_.list.empty() && !table_.Schema().RowId().empty(); }

  int FieldCount() const;
  std::string FieldName(int field) const;
  // The field of that name, ignoring case; -1 where there is none.
  int FindField(std::string_view name) const;

  // Where a column stands behind the row number. Only columns that were ever asked for are read
  // with a row; a statement lent before may be too narrow (see Width) to have it.
  int SlotOf(int column);
  int Width() const { return static_cast<int>(slotColumns_.size()); }

  LentStatement Lend(ReadKind kind, std::span<const Literal> literals);

 private:
  friend class LentStatement;

  std::string Sql(ReadKind kind) const;
  std::string Columns() const;
  std::string Where(std::string_view more) const;
  StatementHandle Prepare(ReadKind kind);
  void TakeBack(ReadKind kind, int width, StatementHandle statement) noexcept;

  sqlite3* database_;
  const std::string& path_;
  StatementParts statement_;
  TableData& table_;
  std::string hint_;
  std::vector<std::int16_t> slots_;  // by column; -1 for one that nobody asked for
  std::vector<int> slotColumns_;
  std::vector<std::string> computed_;  // the fields' names where they are no columns
  std::array<std::vector<StatementHandle>, 5> free_;
};

}  // namespace merivane::store
