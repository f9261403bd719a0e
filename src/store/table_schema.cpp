#include "table_schema.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <unordered_map>

#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::store {

namespace {

struct DeclaredType {
  std::string_view name;
  ColumnKind kind;
};

constexpr auto kTypes = std::to_array<DeclaredType>({
    {"SMALLINT", ColumnKind::kInt16},
    {"INT2", ColumnKind::kInt16},
    {"INTEGER", ColumnKind::kInt32},
    {"INT", ColumnKind::kInt32},
    {"LONG", ColumnKind::kInt32},
    {"REAL", ColumnKind::kReal},
    {"DOUBLE", ColumnKind::kReal},
    {"DOUBLE PRECISION", ColumnKind::kReal},
    {"FLOAT", ColumnKind::kReal},
    {"TEXT", ColumnKind::kText},
    {"VARCHAR", ColumnKind::kText},
    {"NVARCHAR", ColumnKind::kText},
    {"CHAR", ColumnKind::kText},
    {"MEMO", ColumnKind::kText},
    {"LONGTEXT", ColumnKind::kText},
    {"DATETIME", ColumnKind::kText},
    {"BLOB", ColumnKind::kBytes},
});

ColumnKind KindOfType(std::string_view declared) {
  declared = declared.substr(0, declared.find('('));
  while (!declared.empty() && declared.back() == ' ') declared.remove_suffix(1);
  const auto* type = std::find_if(kTypes.begin(), kTypes.end(), [&](const DeclaredType& known) {
    return IsSameName(known.name, declared);
  });
  return type == kTypes.end() ? ColumnKind::kAny : type->kind;
}

// Templates of earlier versions declare this column of quantities as whole numbers; a column of
// that type keeps a real all the same.
bool IsEarlierQuantity(std::string_view table, std::string_view column) {
  return IsSameName(table, "Object_in_Activity_in_Scenario") && IsSameName(column, "Qty");
}

char Lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character | 0x20) : character;
}

// A value of any size can come out of a function, for each row of a small file.
bool IsMadeByFunction(sqlite3* database, const std::string& path, const std::string& quotedTable,
                      const std::string& quotedColumn) {
  constexpr int kOpcode = 1;  // column of the answer
  const StatementHandle program =
      PrepareStatement(database, "explain select " + quotedColumn + " from " + quotedTable, path);
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(program.get())) == SQLITE_ROW) {
    const std::string opcode = ColumnText(program.get(), kOpcode);
    if (opcode == "Function" || opcode == "PureFunc" || opcode == "Concat") return true;
  }
  if (step != SQLITE_DONE) throw DatabaseError(database, path, step);
  return false;
}

// A word of one stands in the statement that made the table, be it in a name.
bool DeclaresConstraint(std::string_view sql) {
  constexpr auto kWords = std::to_array<std::string_view>(
      {"check", "null", "unique", "primary", "strict", "default (", "default("});
  return std::any_of(kWords.begin(), kWords.end(),
                     [&](std::string_view word) { return HoldsNoCase(sql, word); });
}

}  // namespace

std::optional<TableSchema> TableSchema::Read(sqlite3* database, const std::string& path,
                                             std::string_view name) {
  const StatementHandle find =
      PrepareStatement(database,
                       "select name, rootpage > 0, sql, (select group_concat(sql, ';')"
                       " from sqlite_master i where i.tbl_name = t.name and i.type = 'index')"
                       " from sqlite_master t"
                       " where type in ('table', 'view') and name = ?1 collate nocase",
                       path);
  const Value wanted(name);  // outlives the step
  Bind(find.get(), 1, wanted);
  const int found = sqlite3_step(find.get());
  if (found == SQLITE_DONE) return std::nullopt;
  if (found != SQLITE_ROW) throw DatabaseError(database, path);
  TableSchema schema;
  const std::string utf8 = Utf8ColumnText(find.get(), 0);
  schema.name_ = FromUtf8(utf8);
  schema.quotedName_ = Quoted(utf8);
  if (sqlite3_column_int(find.get(), 1) == 0) {
    throw RunTimeError(kUnknownTable, "'" + schema.name_ + "' in the database '" + FromUtf8(path) +
                                          "' is not a table, and only tables are read.");
  }
  // What the statements of a table say is read once, whichever database they stand in.
  constexpr std::size_t kMostRead = 200;
  static thread_local std::unordered_map<std::string, TableSchema> read;
  const std::string declared =
      utf8 + ';' + Utf8ColumnText(find.get(), 2) + ';' + Utf8ColumnText(find.get(), 3);
  if (const auto known = read.find(declared); known != read.end()) return known->second;
  schema.ReadColumns(database, path);
  schema.FindRowId(database);
  if (schema.rowId_.empty() || DeclaresConstraint(Utf8ColumnText(find.get(), 2))) {
    schema.takesAnyRow_ = false;
  }
  schema.ReadIndexes(database, path);
  if (read.size() >= kMostRead) read.clear();
  return read.emplace(declared, std::move(schema)).first->second;
}

void TableSchema::ReadColumns(sqlite3* database, const std::string& path) {
  constexpr int kHidden = 6;        // column of the answer
  constexpr int kMostComputed = 8;  // of columns that may each repeat a long value
  int computed = 0;
  const StatementHandle info =
      PrepareStatement(database, "pragma table_xinfo(" + quotedName_ + ")", path);
  const std::string table = ToUtf8(name_);
  int keyColumns = 0;
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(info.get())) == SQLITE_ROW) {
    const std::string utf8 = Utf8ColumnText(info.get(), 1);
    const bool isComputed = sqlite3_column_int(info.get(), kHidden) != 0;
    if (isComputed && (++computed > kMostComputed ||
                       IsMadeByFunction(database, path, quotedName_, Quoted(utf8)))) {
      throw RunTimeError(kDatabaseError, "The column '" + FromUtf8(utf8) + "' of the table '" +
                                             name_ + "' in the database '" + FromUtf8(path) +
                                             "' is computed in a way that is not read.");
    }
    const std::string type = Utf8ColumnText(info.get(), 2);
    if (sqlite3_column_int(info.get(), 5) > 0) {
      ++keyColumns;
      rowIdIsColumn_ = IsSameName(type, "INTEGER");
    }
    const char* collation = nullptr;
    const int result =
        sqlite3_table_column_metadata(database, nullptr, table.c_str(), utf8.c_str(), nullptr,
                                      &collation, nullptr, nullptr, nullptr);
    if (result == SQLITE_NOMEM) throw DatabaseError(database, path, result);
    const ColumnKind kind = IsEarlierQuantity(table, utf8) ? ColumnKind::kReal : KindOfType(type);
    columns_.push_back({FromUtf8(utf8), Quoted(utf8), kind,
                        collation != nullptr && IsSameName(collation, "NOCASE")});
  }
  if (step != SQLITE_DONE) throw DatabaseError(database, path);
  if (keyColumns != 1) rowIdIsColumn_ = false;
}

void TableSchema::FindRowId(sqlite3* database) {
  for (const char* alias : {"rowid", "_rowid_", "oid"}) {
    const bool taken = std::any_of(columns_.begin(), columns_.end(), [&](const Column& column) {
      return IsSameName(column.name, alias);
    });
    if (taken) continue;
    sqlite3_stmt* probe = nullptr;
    const std::string sql =
        "select " + std::string(alias) + " from " + quotedName_ + " order by " + alias;
    if (sqlite3_prepare_v2(database, sql.c_str(), -1, &probe, nullptr) == SQLITE_OK) rowId_ = alias;
    sqlite3_finalize(probe);
    return;
  }
}

void TableSchema::ReadIndexes(sqlite3* database, const std::string& path) {
  const StatementHandle list =
      PrepareStatement(database,
                       "select i.name, x.cid, x.coll, i.partial, i.\"unique\" from "
                       "pragma_index_list(?1) i, "
                       "pragma_index_xinfo(i.name) x where x.key order by i.seq desc, x.seqno",
                       path);
  const std::string table = ToUtf8(name_);
  sqlite3_bind_text(list.get(), 1, table.c_str(), -1, SQLITE_STATIC);
  bool usable = false;
  std::string current;
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(list.get())) == SQLITE_ROW) {
    const std::string name = Utf8ColumnText(list.get(), 0);
    if (indexes_.empty() || name != current) {
      current = name;
      usable = sqlite3_column_int(list.get(), 3) == 0;
      indexes_.push_back({Quoted(name), {}});
      if (sqlite3_column_int(list.get(), 4) != 0) takesAnyRow_ = false;
    }
    const int ordinal = sqlite3_column_int(list.get(), 1);
    if (ordinal < 0 || sqlite3_column_int(list.get(), 3) != 0) takesAnyRow_ = false;
    // Texts are compared without case, which only an index of that order serves.
    usable = usable && ordinal >= 0 && ordinal < static_cast<int>(columns_.size()) &&
             (columns_[static_cast<std::size_t>(ordinal)].kind != ColumnKind::kText ||
              IsSameName(Utf8ColumnText(list.get(), 2), "NOCASE"));
    if (usable) indexes_.back().columns.push_back(ordinal);
  }
  if (step != SQLITE_DONE) throw DatabaseError(database, path, step);
  std::erase_if(indexes_, [](const TableIndex& index) { return index.columns.empty(); });
}

int TableSchema::Find(std::string_view name) const {
  const auto address = reinterpret_cast<std::uintptr_t>(name.data());
  Known& known = known_[(address ^ (address >> 8U)) % kKnown];
  if (known.column >= 0 && known.name.size() == name.size() &&
      std::memcmp(known.name.data(), name.data(), name.size()) == 0) {
    return known.column;
  }
  const auto found = std::find_if(columns_.begin(), columns_.end(), [&](const Column& column) {
    return IsSameName(column.name, name);
  });
  if (found == columns_.end()) return -1;
  known = {std::string(name), static_cast<int>(found - columns_.begin())};
  return known.column;
}

bool IsSameName(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char left, char right) { return Lower(left) == Lower(right); });
}

void ConvertTo(ColumnKind kind, Value& value) {
  if (value.IsNull()) return;
  switch (kind) {
    case ColumnKind::kInt16:
      value = ToInt16(value);
      break;
    case ColumnKind::kInt32:
      if (value.IsInteger() && value.Integer() == static_cast<std::int32_t>(value.Integer())) break;
      value = static_cast<std::int64_t>(ToInt32(value));
      break;
    case ColumnKind::kReal:
      if (!value.IsReal()) value = ToDouble(value);
      break;
    case ColumnKind::kText:
      if (!value.IsText()) value = ToText(value);
      break;
    case ColumnKind::kBytes:
      if (value.IsText()) value = Bytes(value.Text().begin(), value.Text().end());
      break;
    case ColumnKind::kAny:
      break;
  }
}

}  // namespace merivane::store
