#include "runtime/new_file.h"

#include <gmock/gmock.h>

#include <list>
#include <set>

#include "error_of.h"
#include "runtime/file_names.h"
#include "runtime/run_time_error.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace runtime;

namespace {

namespace fs = std::filesystem;

class NewFiles : public ::testing::Test {
 protected:
  NewFile& Make(const std::string& name, const std::string& text) {
    NewFile& file = files.emplace_back(folder.Path(name));
    std::ofstream(PathOf(file.Target().path)) << text;
    return file;
  }
  void MoveAll() {
    for (NewFile& file : files) {
      file.Prepare();
      file.KeepOld();
    }
    for (NewFile& file : files) file.TakePlace();
  }
  // Names and contents of all files.
  std::set<std::string> Files() const {
    std::set<std::string> found;
    for (const auto& entry : fs::directory_iterator(PathOf(folder.Path("")))) {
      found.insert(Utf8Of(entry.path().filename()) + "=" + ReadFile(Utf8Of(entry.path())));
    }
    return found;
  }

  TemporaryFolder folder;
  std::list<NewFile> files;
};

TEST_F(NewFiles, StandBesideUntilAllOfThemTakeTheirPlace) {
  folder.Write("a", "old");
  Make("a", "new");
  Make("b", "new");
  EXPECT_EQ(ReadFile(folder.Path("a")), "old");
  EXPECT_FALSE(fs::exists(folder.Path("b")));
  MoveAll();
  for (NewFile& file : files) file.Settle();
  files.clear();
  EXPECT_THAT(Files(), testing::ElementsAre("a=new", "b=new"));
}

TEST_F(NewFiles, LeaveWhatStoodWhereARunEndsOnItsWay) {
  folder.Write("a", "old");
  for (const bool moved : {false, true}) {
    Make("a", "new");
    Make("b", "new");
    files.emplace_back(folder.Path("nothing was written"));
    if (moved) MoveAll();
    EXPECT_EQ(ReadFile(folder.Path("a")), moved ? "new" : "old");
    files.clear();
    EXPECT_THAT(Files(), testing::ElementsAre("a=old")) << moved;
  }
}

TEST_F(NewFiles, ThatCanNotTakeTheirPlaceAreNamedAsTheUserDid) {
  const NewFile& file = Make("a", "new");
  fs::create_directories(PathOf(folder.Path("a/full")));
  std::string told;
#ifdef _WIN32
  constexpr int kIsFolder = kPermissionDenied;
#else
  constexpr int kIsFolder = kPathFileAccessError;
#endif
  EXPECT_EQ(ErrorOf([&] { MoveAll(); }, &told), kIsFolder);
  EXPECT_EQ(told, ErrorText(kIsFolder) + ": '" + folder.Path("a") + "'");
  EXPECT_EQ(file.Name(), folder.Path("a"));
}

#ifndef _WIN32
TEST_F(NewFiles, TakeThePlaceBehindALinkWithItsModeAndLeaveDevicesAlone) {
  folder.Write("real", "old");
  fs::permissions(folder.Path("real"), fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("real", folder.Path("link"));
  Make("link", "new");
  MoveAll();
  for (NewFile& file : files) file.Settle();
  EXPECT_TRUE(fs::is_symlink(folder.Path("link")));
  EXPECT_EQ(ReadFile(folder.Path("real")), "new");
  EXPECT_EQ(fs::status(folder.Path("real")).permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  for (const std::string& asItStands : {std::string("/dev/null"), folder.Path("")}) {
    NewFile file(asItStands);
    EXPECT_EQ(file.Target().path, asItStands);
    file.Prepare();
    file.TakePlace();
  }
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}
#endif

TEST(TemporaryNames, WhatKilledRunsLeftUnderThemGoesAfterADay) {
  const TemporaryFolder folder;
  const auto leave = [&](const char* name, int hours) {
    fs::last_write_time(PathOf(folder.Write(name, "")),
                        fs::file_time_type::clock::now() - std::chrono::hours(hours));
  };
  leave("merivane-01234567890123456789.mdb-journal", 25);
  leave("merivane-11234567890123456789", 23);
  leave("merivane-2024.mdb", 9999);  // the user's
  TemporaryNameBeside(folder.Path("plan.mdb"));
  EXPECT_THAT(NamesIn(PathOf(folder.Path(""))),
              testing::AllOf(
                  testing::Not(testing::Contains("merivane-01234567890123456789.mdb-journal")),
                  testing::IsSupersetOf({"merivane-11234567890123456789", "merivane-2024.mdb"})));
}

}  // namespace
}  // namespace merivane::test
