// What tests on real files share: a temporary folder, a copy of the built template in it, a program
// with a scripted desktop, and short ways to ask a database for its rows.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "program/program.h"
#include "raw_database.h"
#include "runtime/conversions.h"
#include "scripted_desktop.h"
#include "store/connection.h"
#include "store/interim_db.h"
#include "store/recordset.h"
#include "temporary_folder.h"

namespace merivane::runtime {

inline std::string Shown(const Value& value) {
  if (value.IsNull()) return "Null";
  if (value.IsBytes()) return "bytes(" + std::to_string(value.GetBytes().size()) + ")";
  return value.IsText() ? "'" + value.Text() + "'" : ToText(value);
}

inline void PrintTo(const Value& value, std::ostream* out) { *out << Shown(value); }

}  // namespace merivane::runtime

namespace merivane::test {

using namespace program;

inline std::string TemplateDatabase() { return MERIVANE_BIN "/MerivaneTemplate.mdb"; }

// The patience where a lock lasts for the whole test.
inline constexpr std::chrono::milliseconds kBrief{30};

using Row = std::vector<Value>;

// All rows of a statement, every column.
inline std::vector<Row> Rows(Connection& connection, const std::string& sql) {
  std::vector<Row> rows;
  Recordset set;
  set.OpenStatic(sql, &connection);
  for (; !set.Eof(); set.MoveNext()) {
    Row row;
    for (int i = 0; i < set.FieldCount(); ++i) row.push_back(set.Field(i));
    rows.push_back(std::move(row));
  }
  set.Close();
  return rows;
}

// One column of all rows.
inline std::vector<Value> ColumnOf(Connection& connection, const std::string& column,
                                   const std::string& table, const std::string& rest = "") {
  std::vector<Value> values;
  Recordset set;
  set.OpenStatic("select * from " + table + " " + rest, &connection);
  for (; !set.Eof(); set.MoveNext()) values.push_back(set.Field(column));
  set.Close();
  return values;
}

inline std::size_t CountRows(Connection& connection, const std::string& table,
                             const std::string& rest = "") {
  return Rows(connection, "select * from " + table + " " + rest).size();
}

// The rows of a table as lines of "column=value" for the columns that aren't Null.
inline std::string DumpTable(Connection& connection, const std::string& table,
                             const std::string& rest = "") {
  std::string dump;
  Recordset set;
  set.OpenStatic("select * from " + table + " " + rest, &connection);
  for (; !set.Eof(); set.MoveNext()) {
    std::string line;
    for (int i = 0; i < set.FieldCount(); ++i) {
      const Value value = set.Field(i);
      if (value.IsNull()) continue;
      line += (line.empty() ? "" : " ") + set.FieldName(i) + "=" + Shown(value);
    }
    dump += line + "\n";
  }
  set.Close();
  return dump;
}

// A program with a scripted desktop, and database.mdb as a fresh copy of the template. Nothing is
// opened until a test asks for it.
class DatabaseFixture : public ::testing::Test {
 protected:
  DatabaseFixture() {
    std::filesystem::copy_file(TemplateDatabase(), databasePath);
    desktop.appPath = MERIVANE_BIN;
  }

  // As the browse step leaves it: the database is open as gMspConn and the project is settled.
  void OpenForModel(std::int16_t projectId = 1, bool overwrite = true) {
    ModelToProject& state = program->modelToProject;
    state.gOverwriteDb = overwrite;
    state.gMspProjId = projectId;
    state.gDatabaseName = databasePath;
    OpenInterimDb(program->workspace, state.gMspConn, overwrite, databasePath);
  }
  Connection& Model() { return *program->modelToProject.gMspConn; }

  // A further connection of the same program.
  std::unique_ptr<Connection> Connect(OpenMode mode = OpenMode::kReadWrite) {
    auto connection = std::make_unique<Connection>(program->workspace);
    connection->Open(ConnectionText(databasePath), mode);
    return connection;
  }

  // Statements through a handle of its own, as another program has one.
  void Sql(const std::string& statements) {
    EXPECT_EQ(RawDatabase(databasePath).Run(statements), SQLITE_OK) << statements;
  }

  // A text of one line, by the way of every output.
  void Print(const std::string& path, const std::string& line) {
    const std::int16_t number = program->files.FreeFile();
    program->files.OpenForOutput(number, path);
    program->files.Print(number, line);
    program->files.Close(number);
  }

  // True when `action` ended the program.
  template <typename Action>
  static bool EndsProgram(Action action) {
    try {
      action();
    } catch (const ProgramEnd&) {
      return true;
    }
    return false;
  }

  TemporaryFolder folder;
  std::string databasePath = folder.Path("database.mdb");
  ScriptedDesktop desktop;
  std::unique_ptr<Program> program = std::make_unique<Program>(desktop);
};

}  // namespace merivane::test
