#include "access_tables.h"

#include <glib.h>
#include <mdbtools.h>
#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "access_fields.h"

namespace merivane {

namespace {

using Database = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;
using Mdb = std::unique_ptr<MdbHandle, decltype(&mdb_close)>;
using Table = std::unique_ptr<MdbTableDef, decltype(&mdb_free_tabledef)>;

// What the writers of a model text ask for. A key on columns that a file lacks is left out.
constexpr const char* kKeys[] = {
    "MSP_TASKS (PROJ_ID, TASK_OUTLINE_LEVEL, TASK_OUTLINE_NUM)",
    "MSP_TASKS (KV7_PROCOCC_HEX, PROJ_ID)",
    "MSP_RESOURCES (KV7_OBJ_HEX, PROJ_ID)",
    "MSP_LINKS (LINK_PRED_UID, PROJ_ID)",
    "MSP_LINKS (LINK_SUCC_UID, PROJ_ID)",
    "MSP_LINKS (PROJ_ID, LINK_TYPE)",
    "Activity_Pool (Num, Msp_ProjID)",
    "Scenario (Num)",
    "Scenario (Parent_Num, Msp_ProjID)",
    "Object_in_Activity_in_Scenario (Activity_Num, Msp_ProjID)",
    "Junctions_in_Scenario (Num, Msp_ProjID)",
    "Junctions_in_Scenario (Scenario_Num, Msp_ProjID)",
    "Links_in_Scenario (Scenario_Num, Msp_ProjID)",
};

bool TryRun(const Database& database, const std::string& sql) {
  return sqlite3_exec(database.get(), sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

[[noreturn]] void FailOn(const Database& database) {
  throw std::runtime_error(std::string("its copy can't be written: ") +
                           sqlite3_errmsg(database.get()));
}

void Run(const Database& database, const std::string& sql) {
  if (!TryRun(database, sql)) FailOn(database);
}

std::string Quoted(const char* name) {
  std::string quoted = "\"";
  for (; *name != '\0'; ++name) quoted += *name == '"' ? "\"\"" : std::string(1, *name);
  return quoted + '"';
}

Database OpenTarget(const std::string& path) {
  sqlite3* raw = nullptr;
  const int opened = sqlite3_open(path.c_str(), &raw);
  Database database(raw, sqlite3_close);
  if (opened != SQLITE_OK) FailOn(database);
  Run(database, "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN");
  return database;
}

std::vector<MdbColumn*> ColumnsOf(const Table& table) {
  std::vector<MdbColumn*> columns;
  if (mdb_read_columns(table.get()) == nullptr) return columns;
  for (unsigned i = 0; i < table->num_cols; ++i)
    columns.push_back(static_cast<MdbColumn*>(g_ptr_array_index(table->columns, i)));
  return columns;
}

bool CreateTable(const Database& database, const std::string& name,
                 const std::vector<MdbColumn*>& columns) {
  std::string sql;
  for (const MdbColumn* column : columns) {
    sql += sql.empty() ? "CREATE TABLE " + name + " (" : ", ";
    sql += Quoted(column->name) + " " + AccessFields::DeclaredType(*column);
  }
  return !columns.empty() && TryRun(database, sql + ")");
}

Statement PrepareInsert(const Database& database, const std::string& name, std::size_t columns) {
  std::string sql = "INSERT INTO " + name + " VALUES (?";
  for (std::size_t i = 1; i < columns; ++i) sql += ", ?";
  sqlite3_stmt* raw = nullptr;
  if (sqlite3_prepare_v2(database.get(), (sql + ")").c_str(), -1, &raw, nullptr) != SQLITE_OK)
    FailOn(database);
  return {raw, sqlite3_finalize};
}

// The library's own bindings can't tell Null from empty text, so each fetched row is cracked anew.
void CopyRows(const Database& database, const Table& table, const std::vector<MdbColumn*>& columns,
              AccessFields& values) {
  const Statement insert = PrepareInsert(database, Quoted(table->name), columns.size());
  std::vector<MdbField> fields(columns.size());
  unsigned rows = 0;
  mdb_rewind_table(table.get());
  for (; mdb_fetch_row(table.get()) != 0; ++rows) {
    int start = 0;
    std::size_t size = 0;
    mdb_find_row(table->entry->mdb, static_cast<int>(table->cur_row) - 1, &start, &size);
    if (mdb_crack_row(table.get(), start & 0x1FFF, size, fields.data()) < 0) break;
    for (std::size_t i = 0; i < columns.size(); ++i)
      values.Bind(*columns[i], fields[i], insert.get(), static_cast<int>(i) + 1);
    if (sqlite3_step(insert.get()) != SQLITE_DONE) FailOn(database);
    sqlite3_reset(insert.get());
    sqlite3_clear_bindings(insert.get());
  }
  if (rows < table->num_rows) throw DamagedValue("rows are lost");
}

bool CopyTable(const Database& database, MdbCatalogEntry* entry, AccessFields& values) {
  const Table table(mdb_read_table(entry), mdb_free_tabledef);
  if (!table) return false;
  const std::vector<MdbColumn*> columns = ColumnsOf(table);
  if (!CreateTable(database, Quoted(table->name), columns)) return false;
  try {
    CopyRows(database, table, columns, values);
  } catch (const DamagedValue& damage) {
    throw std::runtime_error(std::string("table ") + table->name + " is damaged (" + damage.what() +
                             ")");
  }
  return true;
}

void CreateKeys(const Database& database) {
  int number = 0;
  for (const char* key : kKeys)
    TryRun(database, "CREATE INDEX key_" + std::to_string(++number) + " ON " + key);
  TryRun(database, "ANALYZE");  // so that a statement takes the narrowest one
}

}  // namespace

void CopyAccessTables(const std::string& path, const std::string& sqlitePath) {
  const Mdb mdb(mdb_open(path.c_str(), MDB_NOFLAGS), mdb_close);
  if (!mdb) throw std::runtime_error("it can't be opened, is encrypted or is damaged");
  const GPtrArray* catalog = mdb_read_catalog(mdb.get(), MDB_TABLE);
  if (catalog == nullptr) throw std::runtime_error("its list of tables is damaged");
  const Database database = OpenTarget(sqlitePath);
  AccessFields values(mdb.get(), std::filesystem::file_size(path));
  int copied = 0;
  for (unsigned i = 0; i < catalog->len; ++i) {
    auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(catalog, i));
    if (mdb_is_user_table(entry) != 0 && CopyTable(database, entry, values)) ++copied;
  }
  if (copied == 0) throw std::runtime_error("no table of it can be read");
  CreateKeys(database);
  Run(database, "COMMIT");
}

}  // namespace merivane
