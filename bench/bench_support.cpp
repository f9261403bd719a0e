#include "bench_support.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace merivane::bench {

namespace {

struct Database {
  explicit Database(const std::string& path) {
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
  std::string Text(int column) const {
    return reinterpret_cast<const char*>(sqlite3_column_text(handle, column));
  }
  sqlite3_stmt* handle = nullptr;
};

std::vector<std::string> TablesOf(const Database& database) {
  std::vector<std::string> tables;
  const Statement names(database, "select name from sqlite_master where type = 'table'");
  while (names.Step()) tables.push_back(names.Text(0));
  return tables;
}

std::vector<std::string> StoredColumns(const Database& database, const std::string& table) {
  std::vector<std::string> columns;
  const Statement info(database,
                       "select name from pragma_table_xinfo('" + table + "') where hidden = 0");
  while (info.Step()) columns.push_back(info.Text(0));
  return columns;
}

struct TableCopy {
  std::string table;
  std::string columns;
  std::vector<std::vector<sqlite3_value*>> rows;
};

TableCopy ReadTable(const Database& database, const std::string& table) {
  TableCopy copy{table, "", {}};
  for (const std::string& column : StoredColumns(database, table)) {
    copy.columns += (copy.columns.empty() ? "\"" : ", \"") + column + "\"";
  }
  const Statement rows(database, "select " + copy.columns + " from \"" + table + "\"");
  while (rows.Step()) {
    std::vector<sqlite3_value*> row;
    for (int column = 0; column < sqlite3_column_count(rows.handle); ++column) {
      row.push_back(sqlite3_value_dup(sqlite3_column_value(rows.handle, column)));
    }
    copy.rows.push_back(std::move(row));
  }
  return copy;
}

void InsertRows(const Database& database, const TableCopy& copy) {
  if (copy.rows.empty()) return;
  std::string marks = "?";
  for (std::size_t column = 1; column < copy.rows.front().size(); ++column) marks += ", ?";
  const Statement insert(
      database, "insert into \"" + copy.table + "\" (" + copy.columns + ") values (" + marks + ")");
  for (const auto& row : copy.rows) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      sqlite3_bind_value(insert.handle, static_cast<int>(column) + 1, row[column]);
    }
    sqlite3_step(insert.handle);
    sqlite3_reset(insert.handle);
  }
}

}  // namespace

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double PeakMemory(const std::function<void()>& work) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    work();
    _exit(0);
  }
  rusage usage{};
  int status = 0;
  wait4(child, &status, 0, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "merivane-bench-XXXXXX").string();
  if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  std::filesystem::remove_all(path_, error);
}

std::string TemporaryFolder::TemplateCopy(const std::string& name) const {
  std::filesystem::copy_file(MERIVANE_BIN "/MerivaneTemplate.mdb", File(name),
                             std::filesystem::copy_options::overwrite_existing);
  return File(name);
}

void WriteFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

void Execute(const std::string& database, const std::string& sql) {
  const Database target(database);
  char* message = nullptr;
  if (sqlite3_exec(target.handle, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
    throw std::runtime_error(message);
  }
}

double InsertFloor(const std::string& from, const std::string& into) {
  std::vector<TableCopy> tables;
  {
    const Database source(from);
    for (const std::string& table : TablesOf(source)) tables.push_back(ReadTable(source, table));
  }
  const Database target(into);
  const double seconds = Seconds([&] {
    sqlite3_exec(target.handle, "begin", nullptr, nullptr, nullptr);
    for (const TableCopy& table : tables) InsertRows(target, table);
    sqlite3_exec(target.handle, "commit", nullptr, nullptr, nullptr);
  });
  for (const TableCopy& table : tables) {
    for (const auto& row : table.rows) {
      for (sqlite3_value* value : row) sqlite3_value_free(value);
    }
  }
  return seconds;
}

double SelectAndPrintFloor(const std::string& database, const std::string& text,
                           const std::string& copy) {
  std::vector<std::string> lines;
  std::ifstream input(text, std::ios::binary);
  for (std::string line; std::getline(input, line);) lines.push_back(line);
  const Database source(database);
  return Seconds([&] {
    std::size_t bytes = 0;
    for (const std::string& table : TablesOf(source)) {
      const Statement rows(source, "select * from \"" + table + "\"");
      while (rows.Step()) {
        for (int column = 0; column < sqlite3_column_count(rows.handle); ++column) {
          sqlite3_column_text(rows.handle, column);
          bytes += static_cast<std::size_t>(sqlite3_column_bytes(rows.handle, column));
        }
      }
    }
    std::ofstream output(copy, std::ios::binary);
    for (const std::string& line : lines) output << line << '\n';
    if (bytes == 0) std::fprintf(stderr, "nothing was read\n");
  });
}

}  // namespace merivane::bench
