// Putting a database in another's place.
#ifndef _WIN32
#include <sys/resource.h>
#endif

#include <csignal>

#include "store_fixture.h"

namespace merivane::test {

namespace {

class CopyDatabase : public StoreFixture {
 protected:
  int CopyError(const std::string& from, const std::string& to) {
    return ErrorOf([&] { workspace.CopyDatabase(from, to); });
  }
  std::size_t FilesInFolder() {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(folder.Path(".")), {}));
  }
  std::string target = folder.Path("target.mdb");
};

TEST_F(CopyDatabase, CopiesByteForByteAndReplacesWhatWasThere) {
  connection.Close();
  for (const char* old : {"", "no database", "SQLite format 3"}) {
    folder.Write("target.mdb", old);
    workspace.CopyDatabase(path, target);
    EXPECT_EQ(ReadFile(target), ReadFile(path)) << old;
  }
  const std::string text = folder.Write("text.txt", "any file");
  workspace.CopyDatabase(text, target);
  EXPECT_EQ(ReadFile(target), "any file");
  EXPECT_EQ(FilesInFolder(), 3U);
}

TEST_F(CopyDatabase, OfADatabaseInUseHasTheRowsWrittenSoFar) {
  Recordset set = Dynamic("select * from T");
  set.MoveNext();
  Add(set, 6, "f");
  workspace.CopyDatabase(path, target);
  EXPECT_EQ(RawDatabase(target).Ask("select Name from T"), "abcdef");
  set.SetField("Name", "later");
  set.Update();
  EXPECT_EQ(All("select * from T where Num = 2"), "later ");
  EXPECT_EQ(RawDatabase(target).Ask("select Name from T"), "abcdef");
}

TEST_F(CopyDatabase, OverADatabaseInUseKeepsItsConnectionFromSpoilingTheNewFile) {
  workspace.CopyDatabase(path, target);
  Opened old(workspace, target);
  Recordset set = Dynamic("select * from T", old);
  Add(set, 6, "f");
  workspace.CopyDatabase(path, target);
  set.MoveNext();
  old.Close();
  EXPECT_EQ(RawDatabase(target).Ask("select Name from T"), "abcde");
  EXPECT_FALSE(std::filesystem::exists(target + "-journal"));
}

TEST_F(CopyDatabase, TakesNoStaleJournalIntoTheNewFile) {
  connection.Close();
  workspace.CopyDatabase(CutOff("crashed.mdb"), target);
  EXPECT_EQ(RawDatabase(target).Ask("select count(*) from T where Note is null"), "5");
  folder.Write("target.mdb-journal", "stale");
  folder.Write("target.mdb-wal", "stale");
  workspace.CopyDatabase(path, target);
  EXPECT_FALSE(std::filesystem::exists(target + "-journal"));
  EXPECT_FALSE(std::filesystem::exists(target + "-wal"));
  EXPECT_EQ(RawDatabase(target).Ask("select Name from T"), "abcde");
}

TEST_F(CopyDatabase, IsRefusedWithoutTouchingTheTarget) {
  connection.Close();
  workspace.CopyDatabase(path, target);
  const std::string before = ReadFile(target);
  EXPECT_EQ(CopyError(folder.Path("missing.mdb"), target), kFileNotFound);
  EXPECT_EQ(CopyError(path, folder.Path("nowhere/target.mdb")), kPathNotFound);
  EXPECT_EQ(CopyError(path, folder.Path(".")), kPermissionDenied);
  EXPECT_EQ(CopyError(path, path), kPermissionDenied);
  std::filesystem::create_hard_link(path, folder.Path("same.mdb"));
  EXPECT_EQ(CopyError(path, folder.Path("same.mdb")), kPermissionDenied);
  {
    RawDatabase reader(target);
    reader.Run("begin; select * from T");
    EXPECT_EQ(CopyError(path, target), kPermissionDenied);
    reader.Run("rollback; begin immediate");
    EXPECT_EQ(CopyError(path, target), kPermissionDenied);
  }
  EXPECT_EQ(ReadFile(target), before);
  EXPECT_EQ(FilesInFolder(), 3U);
}

TEST_F(CopyDatabase, OfADatabaseThatAnotherProcessIsWritingFailsInsteadOfBeingEmpty) {
  RawDatabase writer(path);
  ASSERT_EQ(All("select * from T where Num = 1"), "a ");
  ASSERT_EQ(writer.Run("begin exclusive"), SQLITE_OK);
  EXPECT_EQ(CopyError(path, target), kPermissionDenied);
  EXPECT_EQ(FilesInFolder(), 1U);
}

TEST_F(CopyDatabase, AConnectionOnAFileThatGaveWayWritesNothing) {
  connection.Close();
  workspace.CopyDatabase(path, target);
  Opened late(workspace, target);
  Workspace other;
  other.CopyDatabase(path, target);
  const std::string before = ReadFile(target);
#ifndef _WIN32  // where a name in use goes with its file
  EXPECT_EQ(ErrorOf([&] { late.BeginWrite(); }), kPermissionDenied);
#endif
  EXPECT_EQ(ReadFile(target), before);
}

TEST_F(CopyDatabase, NothingGivesWayBeforeItsCopyHasItsLastingName) {
  connection.Close();
  workspace.CopyDatabase(path, target);
  RawDatabase(target).Run("delete from T");
  const std::string before = ReadFile(target);
  const std::string backup = folder.Path("backup.mdb");
  const auto replace = [&](int failure) {
    workspace.ReplaceDatabase(path, target, backup, [&] {
      EXPECT_TRUE(ReadFile(backup) == before && ReadFile(target) == before);
      if (failure != 0) throw RunTimeError(failure);
    });
  };
  EXPECT_EQ(ErrorOf([&] { replace(kDiskFull); }), kDiskFull);
  EXPECT_TRUE(ReadFile(target) == before);
  replace(0);
  EXPECT_TRUE(ReadFile(target) == ReadFile(path) && ReadFile(backup) == before);
}

TEST_F(CopyDatabase, WhatIsHeldIsSeenByLaterConnectionsAndUndoneAsOne) {
  EXPECT_FALSE(workspace.Hold(path)) << "nothing was written yet";
  for (const bool keep : {true, false}) {
    connection.BeginWrite();
    ASSERT_TRUE(workspace.Hold(path));
    Dynamic("select * from T").AddNew({"Name"}, {"held"});
    connection.Close();
    Opened later(workspace, path, OpenMode::kReadOnly);
    EXPECT_EQ(Static("select * from T where Name = 'held'", later).RecordCount(), 1);
    later.Close();
    RawDatabase outside(path);
    EXPECT_EQ(outside.Ask("select count(*) from T where Name = 'held'"), "0");
    workspace.FlushHeld();
    keep ? workspace.KeepHeld() : workspace.DropHeld();
    EXPECT_EQ(outside.Ask("select count(*) from T where Name = 'held'"), keep ? "1" : "0");
    outside.Run("delete from T where Name = 'held'");
    connection.Open(ConnectionText(path));
  }
}

#ifndef _WIN32
// The error of an action while a file of this process ends at so many bytes, as on a full disk.
int ErrorOnFullDisk(rlim_t bytes, const std::function<void()>& action,
                    std::string* description = nullptr) {
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit full{bytes, before.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &full);
  const int error = ErrorOf(action, description);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  return error;
}

TEST_F(CopyDatabase, OnAFullDiskLeavesWhatStoodThereAndNothingNew) {
  RawDatabase(path).Run("insert into T (Note) values (hex(zeroblob(200000)))");
  workspace.CopyDatabase(path, target);
  const std::string before = ReadFile(target);
  for (const bool inUse : {true, false}) {
    if (!inUse) connection.Close();
    for (const std::string& to : {target, folder.Path("new.mdb")}) {
      std::string description;
      EXPECT_NE(ErrorOnFullDisk(
                    65536, [&] { workspace.CopyDatabase(path, to); }, &description),
                0);
      EXPECT_NE(description.find(to), std::string::npos) << description;
      EXPECT_EQ(ReadFile(target), before) << inUse;
      EXPECT_EQ(FilesInFolder(), 2U) << inUse;
    }
  }
}

// SQLite undoes all that was written, and what is done next is no part of it.
TEST_F(CopyDatabase, OnAFullDiskDropsTheRowThatWaitsAsWell) {
  RawDatabase(path).Run("create table Big (Note longtext)");
  Opened fresh(workspace, path);
  Recordset added = Dynamic("select * from T", fresh);
  Add(added, 7, "new");
  Recordset big = Dynamic("select * from Big", fresh);
  const auto fill = [&] {
    for (int i = 0; i < 100; ++i) big.AddNew({"Note"}, {std::string(200000, 'x')});
  };
  EXPECT_NE(ErrorOnFullDisk(65536, fill), 0);
  EXPECT_EQ(fresh.Undone(), 1U);
  Dynamic("select * from Empty", fresh).AddNew({"Num"}, {1});
  fresh.Close();
  EXPECT_EQ(RawDatabase(path).Ask("select count(*) from T where Num = 7"), "0");
  EXPECT_EQ(RawDatabase(path).Ask("select count(*) from Empty"), "1");
}

// A row that waits is written where somebody counts; what he makes of the error saves nothing.
TEST_F(CopyDatabase, OnAFullDiskTellsOfRowsThatWereLostWhenTheyAreKept) {
  RawDatabase(path).Run("create table Big (Note longtext)");
  connection.BeginWrite();
  ASSERT_TRUE(workspace.Hold(path));
  Recordset big = Dynamic("select * from Big");
  big.AddNew({"Note"}, {"lost"});
  const int error = ErrorOnFullDisk(4096, [&] { Static("select * from Big").RecordCount(); });
  EXPECT_NE(error, 0);
  EXPECT_EQ(ErrorOf([&] { workspace.FlushHeld(); }), error);
  workspace.DropHeld();
}

TEST_F(CopyDatabase, PutsBackWhatARunCouldNeitherFinishNorUndo) {
  RawDatabase(path).Run("insert into T (Note) values (hex(zeroblob(200000)))");
  connection.Close();
  const std::string before = ReadFile(path), made = folder.Write("made.mdb", before);
  const std::string kept = folder.Path("kept.mdb");
  for (const bool full : {true, false}) {
    folder.Write("kept.mdb", before);
    ASSERT_NE(ReadFile(CutOff("target.mdb")), before);
    const auto putBack = [&] { EXPECT_TRUE(workspace.PutBack(kept, target, made)) << full; };
    EXPECT_EQ(ErrorOnFullDisk(full ? 4096 : 1U << 30U, putBack), 0);
    EXPECT_EQ(ReadFile(target), before) << full;
    EXPECT_FALSE(std::filesystem::exists(target + "-journal"));
  }
  folder.Write("kept.mdb", before);
  // Two runs begin with the same file.
  Workspace other;
  workspace.CopyDatabase(made, target);
  other.CopyDatabase(made, target);
  EXPECT_FALSE(workspace.PutBack(kept, target, made));
  EXPECT_TRUE(std::filesystem::exists(kept));
  EXPECT_TRUE(other.PutBack(kept, target, made));
}

TEST_F(CopyDatabase, FollowsALinkAndKeepsTheTargetsPermissions) {
  connection.Close();
  folder.Write("target.mdb", "old");
  namespace fs = std::filesystem;
  fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(target, folder.Path("link.mdb"));
  workspace.CopyDatabase(path, folder.Path("link.mdb"));
  EXPECT_TRUE(fs::is_symlink(folder.Path("link.mdb")));
  EXPECT_EQ(ReadFile(target), ReadFile(path));
  EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}
#endif

}  // namespace
}  // namespace merivane::test
