// Opening database files, their transactions, and several connections on one file.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "open_database.h"
#include "store_fixture.h"

namespace merivane::test {

namespace {

using ::testing::HasSubstr;

class Connections : public StoreFixture {
 protected:
  int OpenError(const std::string& file, std::string* description = nullptr) {
    Connection other(workspace);
    return ErrorOf([&] { other.Open(ConnectionText(file)); }, description);
  }
  bool HasJournal() { return std::filesystem::exists(path + "-journal"); }
  void Change(Connection& on, const std::string& name) {
    Recordset set = Dynamic("select * from T", on);
    set.SetField("Name", name);
    set.Update();
  }
  std::string FirstName(Connection& on) {
    Recordset set = Static("select * from T", on);
    return Joined(set.Field("Name"));
  }
};

TEST_F(Connections, OpenOnlyDatabasesThatAreThereAndSayWhichFileIsNone) {
  const struct {
    std::string file;
    int number;
  } cases[] = {
      {folder.Path("missing.mdb"), kFileNotFound},
      {folder.Write("empty.mdb", ""), kDatabaseError},
      {folder.Write("text.mdb", "just a text\r\n"), kDatabaseError},
      {folder.Write("cut.mdb", ReadFile(path).substr(0, 15)), kDatabaseError},
      {folder.Write("head.mdb", ReadFile(path).substr(0, 60)), kDatabaseError},
      {folder.Path("."), kDatabaseError},
  };
  for (const auto& item : cases) {
    std::string description;
    EXPECT_EQ(OpenError(item.file, &description), item.number) << item.file;
    EXPECT_THAT(description, HasSubstr(item.file));
  }
  EXPECT_FALSE(std::filesystem::exists(folder.Path("missing.mdb")));
}

TEST_F(Connections, DamagedFilesEndInAnErrorWhereverTheDamageIs) {
  connection.Close();
  {
    RawDatabase raw(path);
    for (int i = 0; i < 200; ++i)
      raw.Run("insert into T (Num, Note) values (7, hex(randomblob(200)))");
    raw.Run("create index NumIndex on T (Num)");
  }
  const std::string whole = ReadFile(path);
  for (std::size_t size = 16; size < whole.size(); size += whole.size() / 23) {
    std::string bytes = whole;
    std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(size),
                std::min<std::size_t>(300, whole.size() - size), '\x7F');
    for (const std::string& damaged : {whole.substr(0, size), bytes}) {
      folder.Write("damaged.mdb", damaged);
      ErrorOf([&] {
        Opened other(workspace, folder.Path("damaged.mdb"));
        Recordset set = Dynamic("select * from T where Num = 7 order by Note", other);
        for (; !set.Eof(); set.MoveNext()) {
          set.Field("Note");
          set.SetField("Size", 1);
        }
      });
    }
  }
}

TEST_F(Connections, TakePathsInUtf8AndKeepTheirName) {
  const std::string named = folder.Path(
      "Gr\xC3\xB6\xC3\x9F"
#ifdef _WIN32  // whose names have no question mark
      "e %20x#1.mdb");
#else
      "e %20?x#1.mdb");
#endif
  connection.Close();
  std::filesystem::copy_file(path, PathOf(named));
  Opened other(workspace, named);
  EXPECT_EQ(FirstName(other), "a");
  EXPECT_EQ(ErrorOf([&] { other.Open(ConnectionText(named)); }), kObjectOpen);
  other.Close();
  EXPECT_EQ(other.DatabaseName(), named);
  EXPECT_EQ(ErrorOf([&] { other.Close(); }), kObjectClosed);
}

TEST_F(Connections, KeepWhatIsWrittenUntilItIsCommitted) {
  RawDatabase other(path);
  const auto seen = [&] { return other.Ask("select Name from T where Num = 1"); };
  Change(connection, "one");
  EXPECT_EQ(seen(), "a");
  EXPECT_TRUE(HasJournal());
  connection.Commit();
  EXPECT_EQ(seen(), "one");
  EXPECT_FALSE(HasJournal());
  Change(connection, "two");
  workspace.CommitAll();
  EXPECT_EQ(seen(), "two");
  Change(connection, "three");
  connection.Close();
  EXPECT_EQ(seen(), "three");
  {
    Opened dropped(workspace, path);
    Change(dropped, "four");
  }
  EXPECT_EQ(seen(), "four");
}

TEST_F(Connections, LeaveTheFileUnlockedWhenTheirSetsAreClosedOrCommitted) {
  RawDatabase other(path);
  Recordset set = Dynamic("select * from T");
  EXPECT_EQ(set.Field("Name"), Value("a"));
  connection.Commit();
  EXPECT_EQ(other.Run("begin exclusive; rollback"), SQLITE_OK);
  EXPECT_EQ(Rest(set), "a b c d e ");
  set.Close();
  EXPECT_EQ(other.Run("begin exclusive; rollback"), SQLITE_OK);
}

TEST_F(Connections, AskForPermissionWhileAnotherProcessWrites) {
  RawDatabase other(path);
  Recordset set = Dynamic("select * from T");
  ASSERT_EQ(other.Run("begin exclusive"), SQLITE_OK);
  EXPECT_EQ(ErrorOf([&] { set.Eof(); }), kPermissionDenied);
  set.AddNew();
  EXPECT_EQ(ErrorOf([&] { set.Update(); }), kPermissionDenied);
  other.Run("rollback");
  set.Update();
  EXPECT_EQ(Rest(set, "Num"), "1 2 3 4 5  ");
}

TEST_F(Connections, OfOneWorkspaceSeeEachOthersRowsAndNeverWaitForEachOther) {
  Change(connection, "one");
  const std::string link = folder.Path("link.mdb");
  Link(path, link);
  Opened other(workspace, link);
  EXPECT_EQ(FirstName(other), "one");
  Recordset reading = Dynamic("select * from T");
  EXPECT_EQ(reading.Field("Name"), Value("one"));
  Change(other, "two");
  other.Commit();
  Change(connection, "three");
  Change(other, "four");
  EXPECT_EQ(FirstName(connection), "three");
  other.Close();
  EXPECT_EQ(FirstName(connection), "four");
}

TEST_F(Connections, ReadingLeavesTheFileAsItIs) {
  connection.Close();
  for (const char* mode : {"delete", "wal"}) {
    RawDatabase(path).Run(std::string("pragma journal_mode = ") + mode);
    const std::string before = ReadFile(path);
    Opened reader(workspace, path, OpenMode::kReadOnly);
    Recordset set = Dynamic("select * from T", reader);
    EXPECT_EQ(ErrorOf([&] { set.SetField("Name", "x"); }), kNotUpdatable);
    EXPECT_EQ(ErrorOf([&] { set.AddNew(); }), kNotUpdatable);
    EXPECT_EQ(ErrorOf([&] { set.Delete(); }), kNotUpdatable);
    EXPECT_EQ(Rest(set), "a b c d e ");
    for (const char* ending : {"-journal", "-wal", "-shm"}) {
      EXPECT_FALSE(std::filesystem::exists(path + ending)) << mode << ending;
    }
    reader.Close();
    EXPECT_EQ(ReadFile(path), before) << mode;
  }
}

TEST_F(Connections, WriteToACopyWithoutTouchingTheFile) {
  connection.Close();
  Opened copy(workspace, path, OpenMode::kCopy);
  Recordset set = Dynamic("select * from T", copy);
  set.SetField("Name", "x");
  set.Update();
  Opened reader(workspace, path, OpenMode::kReadOnly);
  EXPECT_EQ(FirstName(reader), "a");
  EXPECT_EQ(RawDatabase(path).Run("update T set Name = Name"), SQLITE_OK) << "it isn't held";
  EXPECT_EQ(FirstName(copy), "x");
  copy.Close();
  EXPECT_EQ(FirstName(reader), "a");
}

TEST_F(Connections, WaitForAnotherProgramFromTheFirstLook) {
  connection.Close();
  workspace.patience = std::chrono::minutes(1);
  for (const OpenMode mode : {OpenMode::kReadWrite, OpenMode::kReadOnly, OpenMode::kAside}) {
    RawDatabase other(path);
    other.Run("begin exclusive");
    std::thread commits([&other] {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      other.Run("commit");
    });
    Connection waiting(workspace);
    EXPECT_NO_THROW(waiting.Open(ConnectionText(path), mode)) << static_cast<int>(mode);
    commits.join();
  }
}

#ifndef _WIN32  // where a file that is open can't be replaced
TEST_F(Connections, DoNotWaitForAFileThatAnotherHasReplaced) {
  connection.Close();
  workspace.patience = std::chrono::minutes(1);
  const std::string journal = path + "-journal";
  RawDatabase other(path);
  other.Run("begin exclusive");
  std::thread replaces([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    std::filesystem::copy_file(path, path + ".new");
    std::filesystem::rename(path + ".new", path);
    std::ofstream(journal) << "of the transaction in the new file";
    other.Run("commit");
  });
  Connection waiting(workspace);
  EXPECT_EQ(ErrorOf([&] { waiting.Open(ConnectionText(path)); }), kPermissionDenied);
  replaces.join();
  EXPECT_TRUE(std::filesystem::exists(journal));
}
#endif

// Pages that were written come from memory, others from the file, whose end moves on.
TEST_F(Connections, HoldACopyOfWhichOnlyChangesAreInMemory) {
  connection.Close();
  for (const char* pageSize : {"512", "4096", "65536"}) {
    RawDatabase(path).Run(std::string("pragma page_size = ") + pageSize + "; vacuum");
    const std::string before = ReadFile(path);
    {
      Workspace aside;
      Connection first(aside);
      aside.HoldCopy(first, path);
      Opened second(aside, path);
      Recordset set = Dynamic("select * from T", second);
      set.SetField("Name", "x");
      set.Update();
      for (int row = 0; row < 2000; ++row) {
        set.AddNew({"Name", "Note"}, {std::to_string(row), std::string(100, 'n')});
      }
      second.Close();
      EXPECT_EQ(FirstName(first), "x");
      Recordset all = Static("select * from T", first);
      EXPECT_EQ(all.RecordCount(), 2005);
      all.MoveLast();
      EXPECT_EQ(all.Field("Name"), Value("1999"));
      Opened reader(workspace, path, OpenMode::kReadOnly);
      EXPECT_EQ(FirstName(reader), "a");
      EXPECT_EQ(RawDatabase(path).Run("update T set Name = Name"), SQLITE_BUSY);
      EXPECT_FALSE(std::filesystem::exists(path + "-journal"));
    }
    EXPECT_EQ(ReadFile(path), before) << pageSize;
    EXPECT_EQ(RawDatabase(path).Run("update T set Name = Name"), SQLITE_OK);
  }
}

// The pages of a table that is dropped are used again, and those behind the new end are none.
TEST_F(Connections, HoldACopyThatShrinks) {
  connection.Close();
  RawDatabase(path).Run(
      "pragma auto_vacuum = full; vacuum; create table Long (A);"
      "insert into Long values (randomblob(400000))");
  const std::string before = ReadFile(path);
  const DatabaseHandle overlay = OpenOverlay(path, path);
  Execute(overlay.get(), "pragma journal_mode = memory; drop table Long", path);
  Execute(overlay.get(), "create table Again (A); insert into Again values (zeroblob(700000))",
          path);
  const StatementHandle check = PrepareStatement(overlay.get(), "pragma integrity_check", path);
  ASSERT_EQ(sqlite3_step(check.get()), SQLITE_ROW);
  EXPECT_EQ(ColumnText(check.get(), 0), "ok");
  EXPECT_EQ(ReadFile(path), before);
}

TEST_F(Connections, ReadAFileWhoseLastTransactionWasCutOffAsItWasBefore) {
  connection.Close();
  const std::string crashed = folder.Path("crashed.mdb");
  {
    RawDatabase writer(path);
    writer.Run("pragma page_size = 512; vacuum; pragma cache_size = 2");
    writer.Run("begin; update T set Name = 'lost', Note = hex(randomblob(4000))");
    std::filesystem::copy_file(path, crashed);
    std::filesystem::copy_file(path + "-journal", crashed + "-journal");
    writer.Run("rollback");
  }
  const std::string before = ReadFile(crashed);
  Opened reader(workspace, crashed, OpenMode::kReadOnly);
  EXPECT_EQ(FirstName(reader), "a");
  EXPECT_EQ(ReadFile(crashed), before);
  EXPECT_TRUE(std::filesystem::exists(crashed + "-journal"));
  Opened writer(workspace, crashed);
  EXPECT_EQ(FirstName(writer), "a");
  EXPECT_FALSE(std::filesystem::exists(crashed + "-journal"));
}

TEST_F(Connections, ListTheirTables) {
  Recordset tables;
  connection.OpenSchema(adSchemaTables, tables);
  EXPECT_EQ(Rest(tables, "table_name"), "T Empty ");
  EXPECT_EQ(tables.RecordCount(), 2);
  tables.Close();
  EXPECT_EQ(ErrorOf([&] { connection.OpenSchema(4, tables); }), kInvalidProcedureCall);
  connection.Close();
  EXPECT_EQ(ErrorOf([&] { connection.OpenSchema(adSchemaTables, tables); }), kConnectionInvalid);
}

}  // namespace
}  // namespace merivane::test
