#include "shell/kept_files.h"

#include "database_fixture.h"
#include "error_of.h"

namespace merivane::test {

using namespace shell;

namespace {

namespace fs = std::filesystem;

using KeptFilesTest = DatabaseFixture;

// Its temporary name would be cleared away by a run on a later day.
TEST_F(KeptFilesTest, ACopyThatCanNotBePutBackIsKeptUnderALastingName) {
  const std::string before = ReadFile(databasePath);
  KeptFiles kept;
  kept.KeepDatabase(program->workspace, databasePath, Copy::kUntilDone);
  fs::remove(databasePath);
  fs::create_directories(databasePath + "/folder");
  EXPECT_EQ(kept.PutBack(),
            std::vector<std::string>{databasePath + " can't be put back; as it was it is kept in " +
                                     databasePath + ".bak."});
  EXPECT_EQ(ReadFile(databasePath + ".bak"), before);
}

TEST_F(KeptFilesTest, PutsBackOnlyWhatTheRunItselfHasChanged) {
  const std::string before = ReadFile(databasePath);
  for (const bool another : {false, true}) {
    KeptFiles kept;
    const std::string copy =
        ReplaceDatabase(program->workspace, TemplateDatabase(), databasePath, Copy::kBackup);
    kept.KeepReplaced(program->workspace, databasePath, TemplateDatabase(), copy, Copy::kBackup);
    if (another) RawDatabase(databasePath).Run("insert into MSP_PROJECTS (PROJ_ID) values (9)");
    const std::vector<std::string> told = kept.PutBack();
    EXPECT_EQ(told.size(), another ? 1U : 0U);
    EXPECT_EQ(ReadFile(databasePath) == before, !another);
    EXPECT_EQ(fs::exists(copy), another);
  }
  EXPECT_EQ(RawDatabase(databasePath).Ask("select PROJ_ID from MSP_PROJECTS"), "9");
}

TEST_F(KeptFilesTest, AnOutputThatTookItsPlaceGivesItBackWhereTheNextOneFindsNone) {
  const std::string first = folder.Write("a.txt", "old");
  const std::string second = folder.Path("b.txt");
  KeptFiles kept;
  for (const std::string& output : {first, second}) {
    kept.NewOutput(program->files, output);
    Print(output, "new");
  }
  fs::create_directories(second + "/folder");
  EXPECT_THROW(kept.Finish(), RunTimeError);
  kept.PutBack();
  EXPECT_EQ(ReadFile(first), "old");
}

#ifndef _WIN32
TEST_F(KeptFilesTest, AnOutputThatIsRefusedGoesToNoPlaceOfAnEarlierRun) {
  const std::string text = folder.Path("model.txt");
  KeptFiles kept;
  kept.NewOutput(program->files, text);
  Print(text, "line");
  EXPECT_FALSE(fs::exists(text));
  kept.Finish();
  EXPECT_EQ(ReadFile(text), "line\r\n");
  fs::remove(text);
  fs::create_symlink("/proc/sys/kernel/osrelease", text);  // which nobody may write
  EXPECT_EQ(ErrorOf([&] { kept.NewOutput(program->files, text); }), kPermissionDenied);
  EXPECT_EQ(ErrorOf([&] { Print(text, "line"); }), kPermissionDenied);
}
#endif

}  // namespace
}  // namespace merivane::test
