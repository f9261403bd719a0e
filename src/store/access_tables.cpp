#include <glib.h>
#include <mdbtools.h>
#include <sqlite3.h>

#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "access_copy.h"
#include "access_fields.h"
#include "runtime/file_names.h"
#include "sqlite_handle.h"

namespace merivane::store {

namespace {

using Mdb = std::unique_ptr<MdbHandle, decltype(&mdb_close)>;
using Table = std::unique_ptr<MdbTableDef, decltype(&mdb_free_tabledef)>;

DatabaseHandle OpenTarget(const std::string& path) {
  sqlite3* raw = nullptr;
  const int opened = sqlite3_open(path.c_str(), &raw);
  DatabaseHandle database(raw);
  if (opened != SQLITE_OK) throw DatabaseError(raw, path);
  Execute(raw, "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; BEGIN", path);
  return database;
}

std::vector<MdbColumn*> ColumnsOf(const Table& table) {
  std::vector<MdbColumn*> columns;
  if (mdb_read_columns(table.get()) == nullptr) return columns;
  for (unsigned i = 0; i < table->num_cols; ++i)
    columns.push_back(static_cast<MdbColumn*>(g_ptr_array_index(table->columns, i)));
  return columns;
}

// False where the definition is none that a table can have.
bool CreateTable(sqlite3* database, const std::string& name,
                 const std::vector<MdbColumn*>& columns) {
  std::string sql;
  for (const MdbColumn* column : columns) {
    sql += sql.empty() ? "CREATE TABLE " + Quoted(name) + " (" : ", ";
    sql += Quoted(column->name) + " " + AccessFields::DeclaredType(*column);
  }
  sql += ")";
  return !columns.empty() &&
         sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::string InsertSql(const std::string& name, std::size_t columns) {
  std::string sql = "INSERT INTO " + Quoted(name) + " VALUES (?";
  for (std::size_t i = 1; i < columns; ++i) sql += ", ?";
  return sql + ")";
}

// The library's own bindings can't tell Null from empty text, so each fetched row is cracked anew.
void CopyRows(sqlite3* database, const Table& table, const std::vector<MdbColumn*>& columns,
              AccessFields& values, WorkListener& work) {
  const StatementHandle insert =
      PrepareStatement(database, InsertSql(table->name, columns.size()), table->name);
  std::vector<MdbField> fields(columns.size());
  unsigned rows = 0;
  mdb_rewind_table(table.get());
  for (; mdb_fetch_row(table.get()) != 0; ++rows) {
    work.Beat();
    int start = 0;
    std::size_t size = 0;
    mdb_find_row(table->entry->mdb, static_cast<int>(table->cur_row) - 1, &start, &size);
    if (mdb_crack_row(table.get(), start & 0x1FFF, size, fields.data()) < 0) break;
    for (std::size_t i = 0; i < columns.size(); ++i)
      values.Bind(*columns[i], fields[i], insert.get(), static_cast<int>(i) + 1);
    if (sqlite3_step(insert.get()) != SQLITE_DONE) throw DatabaseError(database, table->name);
    sqlite3_reset(insert.get());
    sqlite3_clear_bindings(insert.get());
  }
  if (rows < table->num_rows) throw DamagedValue("rows are lost");
}

bool CopyTable(sqlite3* database, MdbCatalogEntry* entry, AccessFields& values,
               WorkListener& work) {
  const Table table(mdb_read_table(entry), mdb_free_tabledef);
  if (!table) return false;
  const std::vector<MdbColumn*> columns = ColumnsOf(table);
  if (!CreateTable(database, table->name, columns)) return false;
  try {
    CopyRows(database, table, columns, values, work);
  } catch (const DamagedValue& damage) {
    throw std::runtime_error(std::string("table ") + table->name + " is damaged (" + damage.what() +
                             ")");
  }
  return true;
}

// The number of tables that came over.
int CopyTables(MdbHandle* mdb, sqlite3* database, const std::string& path, WorkListener& work) {
  const GPtrArray* catalog = mdb_read_catalog(mdb, MDB_TABLE);
  if (catalog == nullptr) throw std::runtime_error("its list of tables is damaged");
  AccessFields values(mdb, std::filesystem::file_size(PathOf(path)));
  int copied = 0;
  for (unsigned i = 0; i < catalog->len; ++i) {
    auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(catalog, i));
    if (mdb_is_user_table(entry) != 0 && CopyTable(database, entry, values, work)) ++copied;
  }
  return copied;
}

// To the library a page that the machine can't read is one that tells nothing, and a table or a row
// the less. The stream remembers.
void RefuseUnreadPages(const MdbHandle& mdb) {
  if (std::ferror(mdb.f->stream) != 0) throw std::runtime_error("a part of it can't be read");
}

}  // namespace

void CopyAccessTables(const std::string& path, const std::string& sqlitePath, WorkListener& work) {
  const Mdb mdb(mdb_open(path.c_str(), MDB_NOFLAGS), mdb_close);
  if (!mdb) throw std::runtime_error("it can't be opened, is encrypted or is damaged");
  const DatabaseHandle database = OpenTarget(sqlitePath);
  int copied = 0;
  try {
    copied = CopyTables(mdb.get(), database.get(), path, work);
  } catch (const std::exception&) {
    RefuseUnreadPages(*mdb);
    throw;
  }
  RefuseUnreadPages(*mdb);
  if (copied == 0) throw std::runtime_error("no table of it can be read");
  Execute(database.get(), "COMMIT", sqlitePath);
}

}  // namespace merivane::store
