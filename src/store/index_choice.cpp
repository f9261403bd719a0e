#include "index_choice.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <tuple>

namespace merivane::store {

namespace {

// An index on `columns` of `table`. Within a table the entries stand from the most selective to the
// least; a statement that names several is served by the first.
struct KeyColumns {
  std::string_view table;
  std::string_view columns;  // separated by ", "
};

// The columns that the program's statements look rows up by: the template has an index on each,
// and a database that lacks some gets them in a copy.
constexpr auto kKeyColumns = std::to_array<KeyColumns>({
    {"Activity_Pool", "Num"},
    {"Activity_Pool", "Name"},
    {"Object_Pool", "Num"},
    {"Fact_Pool", "Num"},
    {"Scenario", "Num"},
    {"Scenario", "Parent_Num"},
    {"Scenario", "Project_Order"},
    {"Activity_in_Scenario", "Use_Num"},
    {"Activity_in_Scenario", "Scenario_Num"},
    {"Object_in_Activity_in_Scenario", "Activity_Num"},
    {"Object_in_Activity_in_Scenario", "Object_Name"},
    {"Junctions_in_Scenario", "Num"},
    {"Junctions_in_Scenario", "ID"},
    {"Junctions_in_Scenario", "Scenario_Num"},
    {"Facts_in_Junction", "Junction_Num"},
    {"Links_in_Scenario", "Origin_Num"},
    {"Links_in_Scenario", "Destination_Num"},
    {"Links_in_Scenario", "Destination_Name"},
    {"Links_in_Scenario", "Scenario_Num"},
    {"ProjectAct", "PID"},
    {"ProjectRes", "PID"},
    {"ProjectResReqts", "ActivityPID"},
    {"MSP_TASKS", "TASK_UID"},
    {"MSP_TASKS", "KV7_PROCOCC_HEX"},
    {"MSP_TASKS", "KV7_PROCOCC_P_ORDER"},
    {"MSP_TASKS", "TASK_OUTLINE_LEVEL, TASK_OUTLINE_NUM"},
    {"MSP_TASKS", "KV7_SCENARIO_HEX"},
    {"MSP_RESOURCES", "KV7_OBJ_HEX"},
    {"MSP_RESOURCES", "RES_NAME"},
    {"MSP_LINKS", "LINK_PRED_UID"},
    {"MSP_LINKS", "LINK_SUCC_UID"},
    {"MSP_LINKS", "LINK_TYPE"},
});

// Columns that nearly every statement names and that tell few rows apart: no index on them.
constexpr auto kProjectColumns = std::to_array<std::string_view>({"Msp_ProjID", "PROJ_ID"});

bool Contains(const std::vector<int>& columns, int column) {
  return std::find(columns.begin(), columns.end(), column) != columns.end();
}

bool IsProjectColumn(const TableSchema& table, int column) {
  const std::string& name = table.Columns()[static_cast<std::size_t>(column)].name;
  return std::any_of(kProjectColumns.begin(), kProjectColumns.end(),
                     [&](std::string_view project) { return IsSameName(project, name); });
}

// The place of the key that begins with the column; those that are none come last.
int KeyRank(const TableSchema& table, int column) {
  const std::string& name = table.Columns()[static_cast<std::size_t>(column)].name;
  int rank = 0;
  for (const KeyColumns& key : kKeyColumns) {
    const std::string_view first = key.columns.substr(0, key.columns.find(','));
    if (IsSameName(key.table, table.Name()) && IsSameName(first, name)) return rank;
    ++rank;
  }
  return rank;
}

// How well an index serves: compared from the first member on, the greatest is the best.
struct Service {
  int keys = 0;          // columns that it narrows by, those of the project aside
  bool inOrder = false;  // its rows come in their order of insertion
  int rank = 0;
  int unused = 0;

  bool IsBetterThan(const Service& other) const {
    return std::tie(keys, inOrder, rank, unused) >
           std::tie(other.keys, other.inOrder, other.rank, other.unused);
  }
};

Service ServiceOf(const TableIndex& index, const StatementParts& statement) {
  Service service;
  std::size_t matched = 0;
  bool range = false;
  for (const int column : index.columns) {
    const bool equal = Contains(statement.equalColumns, column);
    range = !equal && Contains(statement.prefixColumns, column);
    if (!equal && !range) break;
    ++matched;
    if (!IsProjectColumn(*statement.table, column)) {
      if (service.keys == 0) service.rank = -KeyRank(*statement.table, column);
      ++service.keys;
    }
    if (range) break;
  }
  service.inOrder = matched == index.columns.size() && !range;
  service.unused = static_cast<int>(matched) - static_cast<int>(index.columns.size());
  return service;
}

bool LeadsTo(const TableSchema& table, const TableIndex& index, const std::vector<int>& key) {
  std::size_t matched = 0;
  for (const int column : index.columns) {
    if (matched == key.size()) break;
    if (column == key[matched]) {
      ++matched;
    } else if (!IsProjectColumn(table, column)) {
      return false;
    }
  }
  return matched == key.size();
}

// The columns of a key; empty where the table lacks one.
std::vector<int> FindKey(const TableSchema& table, std::string_view names) {
  std::vector<int> key;
  while (!names.empty()) {
    const std::size_t comma = std::min(names.find(", "), names.size());
    const int column = table.Find(names.substr(0, comma));
    if (column < 0) return {};
    key.push_back(column);
    names.remove_prefix(std::min(comma + 2, names.size()));
  }
  return key;
}

std::string IndexSql(const TableSchema& table, const std::vector<int>& key, std::size_t number) {
  std::string columns;
  for (const int column : key) {
    const Column& declared = table.Columns()[static_cast<std::size_t>(column)];
    columns += columns.empty() ? "" : ", ";
    columns += declared.quotedName;
    if (declared.kind == ColumnKind::kText) columns += " collate nocase";
  }
  return "create index \"merivane key " + std::to_string(number) + "\" on " + table.QuotedName() +
         " (" + columns + ")";
}

std::vector<std::string> MissingIndexes(sqlite3* database, const std::string& path) {
  std::vector<std::string> missing;
  std::optional<TableSchema> table;
  std::string_view tableName;
  for (const KeyColumns& wanted : kKeyColumns) {
    if (wanted.table != tableName) table = TableSchema::Read(database, path, wanted.table);
    tableName = wanted.table;
    if (!table || table->RowId().empty()) continue;
    const std::vector<int> key = FindKey(*table, wanted.columns);
    const auto leads = [&](const TableIndex& index) { return LeadsTo(*table, index, key); };
    if (key.empty() || std::any_of(table->Indexes().begin(), table->Indexes().end(), leads)) {
      continue;
    }
    missing.push_back(IndexSql(*table, key, missing.size()));
  }
  return missing;
}

}  // namespace

std::string IndexHint(const StatementParts& statement) {
  if (!statement.list.empty() || statement.table->RowId().empty()) return "";
  const TableIndex* best = nullptr;
  Service service;
  for (const TableIndex& index : statement.table->Indexes()) {
    const Service offered = ServiceOf(index, statement);
    if (offered.keys == 0 && !offered.inOrder) continue;
    if (best == nullptr || offered.IsBetterThan(service)) {
      best = &index;
      service = offered;
    }
  }
  if (service.keys == 0 && !statement.order.empty()) return "";
  return best == nullptr ? std::string(kNotIndexed) : " indexed by " + best->quotedName;
}

void AddMissingKeyIndexes(sqlite3* database, const std::string& path, WorkListener& work) {
  for (const std::string& sql : MissingIndexes(database, path)) {
    work.Beat();
    Execute(database, sql.c_str(), path);
  }
}

void DropProjectIndexes(sqlite3* database, const std::string& path) {
  std::string drops;
  {
    const StatementHandle indexes = PrepareStatement(
        database,
        "select printf('drop index \"%w\";', name) from sqlite_master where type = 'index' and "
        "sql like 'create index %' and (select group_concat(name) from "
        "pragma_index_info(sqlite_master.name)) collate nocase in (?1, ?2)",
        path);
    static_assert(kProjectColumns.size() == 2);
    int place = 0;
    for (const auto& column : kProjectColumns) {
      Bind(indexes.get(), ++place, Value(std::string(column)));
    }
    int step = SQLITE_ROW;
    while ((step = sqlite3_step(indexes.get())) == SQLITE_ROW) {
      drops += Utf8ColumnText(indexes.get(), 0);
    }
    if (step != SQLITE_DONE) throw DatabaseError(database, path, step);
  }
  Execute(database, drops.c_str(), path);
}

bool LacksKeyIndexes(sqlite3* database, const std::string& path) {
  return !MissingIndexes(database, path).empty();
}

}  // namespace merivane::store
