// Opening database files, their transactions, and several connections on one file.
#include <gmock/gmock.h>

#include "open_database.h"
#include "store_fixture.h"

namespace merivane::test {

namespace {

using ::testing::HasSubstr;

class Connections : public StoreFixture {
 protected:
  bool HasJournal() { return std::filesystem::exists(path + "-journal"); }
  std::string FirstName(Connection& on) {
    return Joined(Static("select * from T", on).Field("Name"));
  }
  // Opens the file while another program holds it, and lets go when it has done something more.
  int OpenWhileHeld(OpenMode mode, const std::function<void()>& more) {
    workspace.patience = std::chrono::minutes(1);
    RawDatabase other(path);
    other.Run("begin exclusive");
    std::thread ends([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      more();
      other.Run("commit");
    });
    const int error = ErrorOf([&] { Opened(workspace, path, mode); });
    ends.join();
    return error;
  }
};

TEST_F(Connections, OpenOnlyDatabasesThatAreThereAndSayWhichFileIsNone) {
  const std::pair<std::string, int> cases[] = {
      {folder.Path("missing.mdb"), kFileNotFound},
      {folder.Write("empty.mdb", ""), kDatabaseError},
      {folder.Write("text.mdb", "just a text\r\n"), kDatabaseError},
      {folder.Write("head.mdb", ReadFile(path).substr(0, 60)), kDatabaseError},
      {folder.Path("."), kDatabaseError},
  };
  for (const auto& [file, number] : cases) {
    std::string description;
    EXPECT_EQ(ErrorOf([&, &at = file] { Opened(workspace, at); }, &description), number) << file;
    EXPECT_THAT(description, HasSubstr(file));
  }
  EXPECT_FALSE(std::filesystem::exists(folder.Path("missing.mdb")));
}

TEST_F(Connections, DamagedFilesEndInAnErrorWhereverTheDamageIs) {
  connection.Close();
  RawDatabase(path).Run(
      "with recursive n(i) as (select 1 union all select i + 1 from n where i < 200)"
      " insert into T (Num, Note) select 7, hex(randomblob(200)) from n;"
      "create index NumIndex on T (Num)");
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
  Rename(connection, "one");
  EXPECT_EQ(seen(), "a");
  EXPECT_TRUE(HasJournal());
  connection.Commit();
  EXPECT_EQ(seen(), "one");
  EXPECT_FALSE(HasJournal());
  Rename(connection, "two");
  workspace.CommitAll();
  EXPECT_EQ(seen(), "two");
  Rename(connection, "three");
  connection.Close();
  EXPECT_EQ(seen(), "three");
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
  Rename(connection, "one");
  const std::string link = folder.Path("link.mdb");
  Link(path, link);
  Opened other(workspace, link);
  EXPECT_EQ(FirstName(other), "one");
  Recordset reading = Dynamic("select * from T");
  EXPECT_EQ(reading.Field("Name"), Value("one"));
  Rename(other, "two");
  other.Commit();
  Rename(connection, "three");
  Rename(other, "four");
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
  Rename(copy, "x");
  Opened reader(workspace, path, OpenMode::kReadOnly);
  EXPECT_EQ(FirstName(reader), "a");
  EXPECT_EQ(RawDatabase(path).Run("update T set Name = Name"), SQLITE_OK) << "it isn't held";
  EXPECT_EQ(FirstName(copy), "x");
  copy.Close();
  EXPECT_EQ(FirstName(reader), "a");
}

TEST_F(Connections, WaitForAnotherProgramFromTheFirstLook) {
  connection.Close();
  for (const OpenMode mode : {OpenMode::kReadWrite, OpenMode::kReadOnly, OpenMode::kAside}) {
    EXPECT_EQ(OpenWhileHeld(mode, [] {}), 0) << static_cast<int>(mode);
  }
}

#ifndef _WIN32  // where a file that is open can't be replaced
TEST_F(Connections, DoNotWaitForAFileThatAnotherHasReplaced) {
  connection.Close();
  const auto replace = [&] {
    std::filesystem::copy_file(path, path + ".new");
    std::filesystem::rename(path + ".new", path);
    folder.Write("small.mdb-journal", "of the transaction in the new file");
  };
  EXPECT_EQ(OpenWhileHeld(OpenMode::kReadWrite, replace), kPermissionDenied);
  EXPECT_TRUE(HasJournal());
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
      Rename(second, "x");
      Recordset set = Dynamic("select * from T", second);
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
      EXPECT_FALSE(HasJournal());
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
  const std::string crashed = CutOff("crashed.mdb");
  const std::string before = ReadFile(crashed);
  const auto noted = [&](OpenMode mode) {
    Opened opened(workspace, crashed, mode);
    return Static("select * from T where Note is not null", opened).RecordCount();
  };
  EXPECT_EQ(noted(OpenMode::kReadOnly), 0);
  EXPECT_EQ(ReadFile(crashed), before);
  EXPECT_TRUE(std::filesystem::exists(crashed + "-journal"));
  EXPECT_EQ(noted(OpenMode::kReadWrite), 0);
  EXPECT_FALSE(std::filesystem::exists(crashed + "-journal"));
}

TEST_F(Connections, HaveTheSettingsThatKeepThemSafeAndSmall) {
  connection.Close();
  WorkListener nobody;
  const std::pair<OpenMode, const char*> cases[] = {{OpenMode::kReadWrite, "1 2 -16384 delete 0 "},
                                                    {OpenMode::kReadOnly, "1 2 -16384 delete 0 "},
                                                    {OpenMode::kCopy, "1 1 -65536 delete 0 "}};
  for (const auto& [mode, settings] : cases) {
    const auto engine = OpenDatabase(path, mode, {}, nobody, {});
    std::string told;
    for (const std::string name :
         {"synchronous", "temp_store", "cache_size", "journal_mode", "trusted_schema"}) {
      const StatementHandle answer = PrepareStatement(engine->Database(), "pragma " + name, path);
      ASSERT_EQ(sqlite3_step(answer.get()), SQLITE_ROW);
      told += ColumnText(answer.get(), 0) + " ";
    }
    EXPECT_EQ(told, settings) << static_cast<int>(mode);
    EXPECT_GT(sqlite3_memory_used(), 0);  // by which the limit counts
  }
  EXPECT_EQ(sqlite3_hard_heap_limit64(-1), 512 << 20);
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
