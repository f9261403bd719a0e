#include "floors.h"

#include <sqlite3.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <stdexcept>
#include <variant>

namespace merivane::bench {
namespace {

struct Database {
  explicit Database(const std::string& path) {
    if (sqlite3_open(path.c_str(), &handle) != SQLITE_OK) throw std::runtime_error(path);
    sqlite3_exec(handle, "pragma synchronous=normal; pragma cache_size=-16384", nullptr, nullptr,
                 nullptr);
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
  void Run() const {
    if (sqlite3_step(handle) != SQLITE_DONE) throw std::runtime_error("a row can't be written");
    sqlite3_reset(handle);
  }
  sqlite3_stmt* handle = nullptr;
};

struct Blob {
  std::string bytes;
  bool operator==(const Blob&) const = default;
};
using Cell = std::variant<std::monostate, sqlite3_int64, double, std::string, Blob>;
using Row = std::vector<Cell>;
struct Table {
  std::string name;
  std::vector<std::string> columns;
  std::map<sqlite3_int64, Row> rows;  // by row number
};

Cell CellOf(sqlite3_stmt* row, int column) {
  const auto bytes = [&] {
    const auto* start = static_cast<const char*>(sqlite3_column_blob(row, column));
    const int size = sqlite3_column_bytes(row, column);
    return std::string(start == nullptr ? "" : start, static_cast<std::size_t>(size));
  };
  switch (sqlite3_column_type(row, column)) {
    case SQLITE_INTEGER:
      return sqlite3_column_int64(row, column);
    case SQLITE_FLOAT:
      return sqlite3_column_double(row, column);
    case SQLITE_TEXT:
      return bytes();
    case SQLITE_BLOB:
      return Blob{bytes()};
    default:
      return {};
  }
}

void Bind(sqlite3_stmt* statement, int parameter, const Cell& cell) {
  if (const auto* whole = std::get_if<sqlite3_int64>(&cell)) {
    sqlite3_bind_int64(statement, parameter, *whole);
  } else if (const auto* number = std::get_if<double>(&cell)) {
    sqlite3_bind_double(statement, parameter, *number);
  } else if (const auto* text = std::get_if<std::string>(&cell)) {
    sqlite3_bind_text(statement, parameter, text->data(), static_cast<int>(text->size()),
                      SQLITE_STATIC);
  } else if (const auto* blob = std::get_if<Blob>(&cell)) {
    sqlite3_bind_blob(statement, parameter, blob->bytes.data(),
                      static_cast<int>(blob->bytes.size()), SQLITE_STATIC);
  } else {
    sqlite3_bind_null(statement, parameter);
  }
}

std::vector<std::string> Names(const Database& database, const std::string& sql) {
  std::vector<std::string> names;
  const Statement list(database, sql);
  while (list.Step()) {
    names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(list.handle, 0)));
  }
  return names;
}

std::vector<std::string> TableNames(const Database& database) {
  return Names(database, "select name from sqlite_master where type = 'table'");
}

std::string Joined(const std::vector<std::string>& words, const std::string& between) {
  std::string list;
  for (const std::string& word : words) list += (list.empty() ? "" : between) + word;
  return list;
}

std::string Quoted(const std::string& name) { return '"' + name + '"'; }

Table Load(const Database& database, const std::string& name) {
  Table table{name, {}, {}};
  for (const std::string& column :
       Names(database, "select name from pragma_table_xinfo('" + name + "') where hidden = 0")) {
    table.columns.push_back(Quoted(column));
  }
  const Statement rows(database,
                       "select rowid, " + Joined(table.columns, ", ") + " from " + Quoted(name));
  while (rows.Step()) {
    Row& row = table.rows[sqlite3_column_int64(rows.handle, 0)];
    for (int i = 1; i < sqlite3_column_count(rows.handle); ++i) {
      row.push_back(CellOf(rows.handle, i));
    }
  }
  return table;
}

// What makes one table from another: a statement, and what its parameters are bound to row by row.
struct Change {
  std::string sql;
  std::vector<Row> rows;
};

bool HasValue(const std::vector<Row>& rows, std::size_t column) {
  for (const Row& row : rows) {
    if (!std::holds_alternative<std::monostate>(row[column])) return true;
  }
  return false;
}

Change Insertion(const Table& table, const std::vector<Row>& added) {
  std::vector<std::string> columns;
  std::vector<std::string> marks;
  std::vector<Row> rows(added.size());
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    if (!HasValue(added, column)) continue;
    columns.push_back(table.columns[column]);
    marks.emplace_back("?");
    for (std::size_t i = 0; i < added.size(); ++i) rows[i].push_back(added[i][column]);
  }
  return {"insert into " + Quoted(table.name) + " (" + Joined(columns, ",") + ") values (" +
              Joined(marks, ",") + ")",
          std::move(rows)};
}

class Differences {
 public:
  Differences(const Table& before, const Table& after) : table_(after) {
    std::vector<Row> added;
    for (const auto& [number, row] : after.rows) {
      const auto old = before.rows.find(number);
      if (old == before.rows.end()) {
        added.push_back(row);
      } else if (old->second != row) {
        Update(number, old->second, row);
      }
    }
    std::vector<Row> removed;
    for (const auto& [number, row] : before.rows) {
      if (!after.rows.contains(number)) removed.push_back({Cell(number)});
    }
    const std::string name = Quoted(table_.name);
    if (!removed.empty()) changes_.push_back({"delete from " + name + " where rowid = ?", removed});
    if (!added.empty()) changes_.push_back(Insertion(table_, added));
    for (auto& [columns, rows] : updates_) {
      changes_.push_back({"update " + name + " set " + columns + " where rowid = ?", rows});
    }
  }

  std::vector<Change> Take() { return std::move(changes_); }

 private:
  void Update(sqlite3_int64 number, const Row& before, const Row& after) {
    std::vector<std::string> columns;
    Row values;
    for (std::size_t i = 0; i < after.size(); ++i) {
      if (before[i] == after[i]) continue;
      columns.push_back(table_.columns[i] + " = ?");
      values.push_back(after[i]);
    }
    values.emplace_back(number);
    updates_[Joined(columns, ", ")].push_back(std::move(values));
  }

  const Table& table_;
  std::map<std::string, std::vector<Row>> updates_;
  std::vector<Change> changes_;
};

void Write(const std::vector<Change>& changes, const std::string& path) {
  const Database target(path);
  sqlite3_exec(target.handle, "begin", nullptr, nullptr, nullptr);
  for (const Change& change : changes) {
    const Statement statement(target, change.sql);
    for (const Row& row : change.rows) {
      int parameter = 0;
      for (const Cell& cell : row) Bind(statement.handle, ++parameter, cell);
      statement.Run();
    }
  }
  sqlite3_exec(target.handle, "commit", nullptr, nullptr, nullptr);
}

std::vector<Change> ChangesBetween(const std::string& after, const std::string& before) {
  const Database from(before);
  const Database to(after);
  std::vector<Change> changes;
  for (const std::string& name : TableNames(to)) {
    for (Change& change : Differences(Load(from, name), Load(to, name)).Take()) {
      changes.push_back(std::move(change));
    }
  }
  if (changes.empty()) throw std::runtime_error(after + " is as " + before);
  return changes;
}

void ReadRows(const std::string& path) {
  const Database source(path);
  double sum = 0;
  for (const std::string& table : TableNames(source)) {
    const Statement rows(source, "select * from " + Quoted(table));
    const int columns = sqlite3_column_count(rows.handle);
    while (rows.Step()) {
      for (int i = 0; i < columns; ++i) {
        switch (sqlite3_column_type(rows.handle, i)) {
          case SQLITE_INTEGER:
            sum += 1 + static_cast<double>(sqlite3_column_int64(rows.handle, i));
            break;
          case SQLITE_FLOAT:
            sum += sqlite3_column_double(rows.handle, i);
            break;
          case SQLITE_NULL:
            break;
          default:
            sqlite3_column_blob(rows.handle, i);
            sum += sqlite3_column_bytes(rows.handle, i);
        }
      }
    }
  }
  if (sum == 0) throw std::runtime_error(path + " holds nothing");
}

void ReadLines(const std::string& path) {
  std::ifstream text(path, std::ios::binary);
  std::size_t bytes = 0;
  for (std::string line; std::getline(text, line);) bytes += line.size();
  if (bytes == 0) throw std::runtime_error(path + " is empty");
}

std::vector<std::string> LinesOf(const std::string& path) {
  std::ifstream text(path, std::ios::binary);
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

void WriteLines(const std::vector<std::string>& lines, const std::string& path) {
  const std::unique_ptr<FILE, int (*)(FILE*)> copy(std::fopen(path.c_str(), "wb"), std::fclose);
  if (!copy) throw std::runtime_error(path);
  for (const std::string& line : lines) {
    std::fwrite(line.data(), 1, line.size(), copy.get());
    std::fputc('\n', copy.get());
  }
}

}  // namespace

std::function<void()> PrepareFloor(const std::vector<std::string>& step) {
  const std::string& kind = step.at(0);
  const std::string& file = step.at(1);
  if (kind == "lines") return [file] { ReadLines(file); };
  if (kind == "select") return [file] { ReadRows(file); };
  const std::string& other = step.at(2);
  if (kind == "write") {
    return [lines = LinesOf(file), other] { WriteLines(lines, other); };
  }
  return [changes = ChangesBetween(file, other), other] { Write(changes, other); };
}

__attribute__((noinline)) void MeasuredFloor(const std::vector<std::function<void()>>& steps) {
  for (const auto& step : steps) step();
}

void Execute(const std::string& database, const std::string& sql) {
  const Database target(database);
  char* message = nullptr;
  if (sqlite3_exec(target.handle, sql.c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
    throw std::runtime_error(message);
  }
}

}  // namespace merivane::bench
