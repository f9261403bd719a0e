#include "floors.h"

#include <sqlite3.h>

#include <fstream>
#include <map>
#include <stdexcept>
#include <vector>

namespace merivane::bench {
namespace {

struct Database {
  explicit Database(const std::string& path) {
    sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    if (sqlite3_open(path.c_str(), &handle) != SQLITE_OK) throw std::runtime_error(path);
  }
  ~Database() { sqlite3_close(handle); }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  sqlite3* handle = nullptr;
};

struct Statement {
  Statement(const Database& database, const std::string& sql) {
    if (sqlite3_prepare_v2(database.handle, sql.c_str(), -1, &handle, nullptr) != SQLITE_OK) {
      throw std::runtime_error(sqlite3_errmsg(database.handle));
    }
  }
  ~Statement() { sqlite3_finalize(handle); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  bool Step() const { return sqlite3_step(handle) == SQLITE_ROW; }
  sqlite3_stmt* handle = nullptr;
};

std::vector<std::string> Names(const Database& database, const std::string& sql) {
  std::vector<std::string> names;
  const Statement list(database, sql);
  while (list.Step()) {
    names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(list.handle, 0)));
  }
  return names;
}

std::vector<std::string> Tables(const Database& database) {
  return Names(database, "select name from sqlite_master where type = 'table'");
}

std::string Listed(const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names) list += (list.empty() ? "\"" : ", \"") + name + "\"";
  return list;
}

// Inserts rows with values in the same columns by one statement.
class Inserter {
 public:
  Inserter(const Database& target, std::string table, std::vector<std::string> columns)
      : target_(target), table_(std::move(table)), columns_(std::move(columns)) {}

  void Insert(sqlite3_stmt* row) {
    std::vector<bool> present(columns_.size());
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      present[i] = sqlite3_column_type(row, static_cast<int>(i)) != SQLITE_NULL;
    }
    auto found = statements_.find(present);
    if (found == statements_.end()) {
      found = statements_.try_emplace(present, target_, Sql(present)).first;
    }
    sqlite3_stmt* insert = found->second.handle;
    int parameter = 0;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (!present[i]) continue;
      sqlite3_bind_value(insert, ++parameter, sqlite3_column_value(row, static_cast<int>(i)));
    }
    sqlite3_step(insert);
    sqlite3_reset(insert);
  }

 private:
  std::string Sql(const std::vector<bool>& present) const {
    std::vector<std::string> names;
    std::string marks;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (!present[i]) continue;
      names.push_back(columns_[i]);
      marks += marks.empty() ? "?" : ", ?";
    }
    return "insert into \"" + table_ + "\" (" + Listed(names) + ") values (" + marks + ")";
  }

  const Database& target_;
  std::string table_;
  std::vector<std::string> columns_;
  std::map<std::vector<bool>, Statement> statements_;
};

}  // namespace

void InsertFloor(const std::string& from, const std::string& into) {
  const Database source(from);
  const Database target(into);
  sqlite3_exec(target.handle, "begin", nullptr, nullptr, nullptr);
  for (const std::string& table : Tables(source)) {
    const auto columns =
        Names(source, "select name from pragma_table_xinfo('" + table + "') where hidden = 0");
    const Statement last(target, "select coalesce(max(rowid), 0) from \"" + table + "\"");
    last.Step();
    const Statement rows(source, "select " + Listed(columns) + " from \"" + table +
                                     "\" where rowid > " +
                                     std::to_string(sqlite3_column_int64(last.handle, 0)));
    Inserter inserter(target, table, columns);
    while (rows.Step()) inserter.Insert(rows.handle);
  }
  sqlite3_exec(target.handle, "commit", nullptr, nullptr, nullptr);
}

void SelectFloor(const std::string& database, const std::string& text, const std::string& copy) {
  const Database source(database);
  std::size_t bytes = 0;
  for (const std::string& table : Tables(source)) {
    const Statement rows(source, "select * from \"" + table + "\"");
    while (rows.Step()) {
      for (int column = 0; column < sqlite3_column_count(rows.handle); ++column) {
        sqlite3_column_text(rows.handle, column);
        bytes += static_cast<std::size_t>(sqlite3_column_bytes(rows.handle, column));
      }
    }
  }
  if (bytes == 0) throw std::runtime_error("nothing was read");
  std::ifstream input(text, std::ios::binary);
  std::ofstream output(copy, std::ios::binary);
  for (std::string line; std::getline(input, line);) output << line << '\n';
}

void Execute(const std::string& database, const std::string& sql) {
  const Database target(database);
  char* message = nullptr;
  if (sqlite3_exec(target.handle, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
    throw std::runtime_error(message);
  }
}

}  // namespace merivane::bench
