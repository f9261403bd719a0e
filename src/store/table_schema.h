// What a table declares: its columns with the kind of value they take, and its indexes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sqlite_handle.h"

namespace merivane::store {

// How a value is converted when it is assigned: by the column's declared type.
enum class ColumnKind { kAny, kInt16, kInt32, kReal, kText, kBytes };

struct Column {
  std::string name;        // as declared, in Windows-1252
  std::string quotedName;  // for SQL
  ColumnKind kind = ColumnKind::kAny;
  bool ignoresCase = false;  // its texts compare without case by themselves
};

struct TableIndex {
  std::string quotedName;
  std::vector<int> columns;
};

class TableSchema {
 public:
  // Nothing where the database has no such table (names ignore case). A view or a virtual table of
  // the name is kUnknownTable, a column that a function makes kDatabaseError.
  static std::optional<TableSchema> Read(sqlite3* database, const std::string& path,
                                         std::string_view name);

  const std::string& Name() const { return name_; }
  const std::string& QuotedName() const { return quotedName_; }
  const std::vector<Column>& Columns() const { return columns_; }
  ColumnKind KindOf(int column) const { return columns_[static_cast<std::size_t>(column)].kind; }
  bool IsWhole(int column) const {
    return KindOf(column) == ColumnKind::kInt16 || KindOf(column) == ColumnKind::kInt32;
  }
  const std::vector<TableIndex>& Indexes() const { return indexes_; }
  // The name that reaches the row number; empty for a table without one.
  const std::string& RowId() const { return rowId_; }
  // A column of the table is its row number, so a row can be added in front of others.
  bool RowIdIsColumn() const { return rowIdIsColumn_; }
  // Rows of any values are taken: what can refuse one is the disk alone.
  bool TakesAnyRow() const { return takesAnyRow_; }

  int Find(std::string_view name) const;  // ignoring case; -1 where there is none

 private:
  void ReadColumns(sqlite3* database, const std::string& path);
  void ReadIndexes(sqlite3* database, const std::string& path);
  void FindRowId(sqlite3* database);

  std::string name_;
  std::string quotedName_;
  std::vector<Column> columns_;
  std::vector<TableIndex> indexes_;
  std::string rowId_;
  bool rowIdIsColumn_ = false;
  bool takesAnyRow_ = true;

  // The program names a column mostly by one literal after the other, so that a name found once is
  // known by where it lies; its letters tell whether it is still that name.
  struct Known {
    std::string name;
    int column = -1;
  };
  static constexpr std::size_t kKnown = 256;
  mutable std::vector<Known> known_ = std::vector<Known>(kKnown);
};

// Letters of ASCII without case, as names of tables and columns compare.
bool IsSameName(std::string_view a, std::string_view b);

// Converts to the column's kind; see Recordset::SetField for the failures. Null stays Null.
void ConvertTo(ColumnKind kind, Value& value);

}  // namespace merivane::store
