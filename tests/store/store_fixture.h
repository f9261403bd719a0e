// A small database of its own for a test of the store, and short ways to look at it.
#pragma once

#include "error_of.h"
#include "raw_database.h"
#include "runtime/conversions.h"
#include "store/connection.h"
#include "store/recordset.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace store;

// A connection on a file, open as long as it lives.
struct Opened : Connection {
  Opened(Workspace& workspace, const std::string& path, OpenMode mode = OpenMode::kReadWrite)
      : Connection(workspace) {
    Open(ConnectionText(path), mode);
  }
};

class StoreFixture : public ::testing::Test {
 protected:
  // The table T has the rows 1 to 5 with names "a" to "e"; of these 1, 3 and 5 are odd.
  StoreFixture() {
    RawDatabase(path).Run(
        "create table T (Num integer, Name varchar(20) collate nocase, Odd smallint, Size double,"
        " Note longtext, Data blob, \"Column\" text);"
        "insert into T (Num, Name, Odd) values"
        " (1, 'a', 1), (2, 'b', 0), (3, 'c', 1), (4, 'd', 0), (5, 'e', 1);"
        "create table Empty (Num integer)");
    workspace.patience = std::chrono::milliseconds(30);  // nobody here lets a lock go
    connection.Open(ConnectionText(path));
  }

  Recordset Dynamic(const std::string& sql) { return Dynamic(sql, connection); }
  static Recordset Dynamic(const std::string& sql, Connection& on) {
    Recordset set;
    set.OpenDynamic(sql, &on);
    return set;
  }
  Recordset Static(const std::string& sql) { return Static(sql, connection); }
  static Recordset Static(const std::string& sql, Connection& on) {
    Recordset set;
    set.OpenStatic(sql, &on);
    return set;
  }

  // The texts of a column from the set's position on.
  static std::string Rest(Recordset& set, const std::string& column = "Name") {
    std::string texts;
    for (; !set.Eof(); set.MoveNext()) texts += Joined(set.Field(column)) + " ";
    return texts;
  }
  std::string All(const std::string& sql, const std::string& column = "Name") {
    Recordset set = Static(sql);
    return Rest(set, column);
  }

  void Add(Recordset& set, int num, const std::string& name, int odd = 1) {
    set.AddNew({"Num", "Name", "Odd"}, {num, name, odd});
  }
  // Of the first row.
  void Rename(Connection& on, const std::string& name) {
    Recordset set = Dynamic("select * from T", on);
    set.SetField("Name", name);
    set.Update();
  }

  // A copy of the file as a transaction leaves it that was cut off behind its first pages.
  std::string CutOff(const std::string& name) {
    RawDatabase writer(path);
    writer.Run("pragma cache_size = 1; begin; update T set Note = hex(zeroblob(200001))");
    folder.Write(name + "-journal", ReadFile(path + "-journal"));
    return folder.Write(name, ReadFile(path));
  }

  TemporaryFolder folder;
  std::string path = folder.Path("small.mdb");
  Workspace workspace;
  Connection connection{workspace};
};

}  // namespace merivane::test
