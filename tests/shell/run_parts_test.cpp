// What stands around a run: the names it was given, its sources, what is kept of its targets, and
// how its end is told.
#include <gmock/gmock.h>

#include "database_fixture.h"
#include "error_of.h"
#include "shell/cancellable_run.h"
#include "shell/database_pick.h"
#include "shell/frmIDEF3ToProject.h"
#include "shell/named_files.h"
#include "shell/run_result.h"

namespace merivane::test {

using namespace shell;

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr auto kWrite = FileUse::kWrite;

class RunParts : public DatabaseFixture {
 protected:
  void AddProject(const std::string& number) {
    Sql("insert into MSP_PROJECTS (PROJ_ID, PROJ_NAME) values (" + number + ", 'Yard')");
  }
  ModelToProject& state = program->modelToProject;
  ProjectToModel& back = program->projectToModel;
};

TEST_F(RunParts, NamesAreHeldAgainstEachOtherAndAgainstWhatStands) {
  const std::string there = folder.Write("there.txt", "x");
  fs::create_hard_link(there, folder.Path("twin.txt"));
  const std::string missing = folder.Path("none/a.txt");
  const std::string fresh = folder.Path("new.txt");
  const std::pair<std::vector<NamedFile>, std::string> cases[] = {
      {{{"A", there}, {"B", there}}, ""},  // two that are read
      {{{"A", there}, {"B", folder.Path("./there.txt"), kWrite}},
       "A and B are the same file: " + folder.Path("./there.txt")},
      {{{"A", there, kWrite}, {"B", folder.Path("twin.txt")}},
       "A and B are the same file: " + folder.Path("twin.txt")},
      {{{"A", fresh, kWrite}, {"B", fresh, kWrite}}, "A and B are the same file: " + fresh},
      {{{"A", "", kWrite}, {"B", "", kWrite}}, ""},
      {{{"A", missing, kWrite}}, "A can't be written: there is no folder for " + missing + "."},
      {{{"A", missing}}, ""},
      {{{"A", there, kWrite, "--force"}}, there + " exists: say --force."},
      {{{"A", folder.Path(""), kWrite, "--force"}}, ""},
      {{{"A", fresh, kWrite, "--force"}}, ""}};
  for (const auto& [files, refusal] : cases) {
    EXPECT_EQ(RefusalOf(files).value_or(""), refusal) << refusal;
  }
}

TEST_F(RunParts, APickTellsWhatItEmptiedAndWhyItFailed) {
  DatabasePick pick;
  pick.Begin("plan.mdb");
  EXPECT_EQ(pick.Note("").text, "");
  pick.Failed(RunTimeError(kDiskFull));
  const std::string why = "plan.mdb can't be used: Disk full.";
  EXPECT_EQ(pick.Note("").text, why + " Nothing was changed.");
  EXPECT_EQ(pick.Note("old.mdb").text,
            why + " Nothing was changed. OK would still write into old.mdb.");
  pick.Replaced("");
  EXPECT_EQ(pick.Note("").text, why);
  EXPECT_FALSE(pick.Note("").emptied);
  pick.Replaced("plan.mdb.bak");
  EXPECT_EQ(pick.Note("").text, "plan.mdb was emptied; the old one is plan.mdb.bak. " + why);
  EXPECT_EQ(pick.Note("").emptied->backup, "plan.mdb.bak");
  pick.Begin("other.mdb");
  EXPECT_EQ(pick.Note("").text, "");
}

TEST_F(RunParts, AnEmptiedDatabaseComesBackUnlessItIsUsedAgain) {
  const std::string backup = databasePath + ".bak";
  const EmptiedDatabase emptied{databasePath, backup};
  std::string told;
  const auto putBack = [&] {
    return ErrorOf([&] { PutBackEmptied(program->workspace, emptied); }, &told);
  };
  EXPECT_EQ(putBack(), kFileNotFound);
  EXPECT_THAT(told, HasSubstr(backup));
  fs::copy_file(databasePath, backup);
  RawDatabase(backup).Run("insert into MSP_PROJECTS (PROJ_ID) values (3)");
  AddProject("1");
  EXPECT_EQ(putBack(), kPermissionDenied);
  EXPECT_EQ(told, databasePath + " holds a project again. The old one stays " + backup + ".");
  EXPECT_TRUE(fs::exists(backup));
  Sql("delete from MSP_PROJECTS");
  program->workspace.patience = kBrief;
  {
    RawDatabase other(databasePath);
    other.Run("begin immediate");
    EXPECT_EQ(putBack(), kPermissionDenied);
  }
  EXPECT_TRUE(fs::exists(backup));
  EXPECT_EQ(putBack(), 0);
  EXPECT_EQ(RawDatabase(databasePath).Ask("select PROJ_ID from MSP_PROJECTS"), "3");
  EXPECT_FALSE(fs::exists(backup));
  fs::rename(databasePath, backup);  // gone in the meantime
  EXPECT_EQ(putBack(), 0);
  EXPECT_EQ(RawDatabase(databasePath).Ask("select PROJ_ID from MSP_PROJECTS"), "3");
}

TEST_F(RunParts, CountsLeaveOutTheSummaryOfTheWholeAndOtherProjects) {
  AddProject("1");
  Sql("insert into MSP_TASKS (PROJ_ID, TASK_UID) values (1, 0), (1, 1), (1, 2), (2, 3)");
  Sql("insert into MSP_RESOURCES (PROJ_ID, RES_UID) values (1, -65535), (1, 1)");
  Sql("insert into MSP_LINKS (PROJ_ID, LINK_UID) values (1, 1), (1, 2), (2, 1)");
  Sql("insert into ProjectAct (Msp_ProjID, PID, Outline) values (1, 0, 0), (1, 1, 1), (2, 1, 1)");
  Sql("drop table MSP_ASSIGNMENTS");
  auto connection = Connect();
  EXPECT_EQ(CountsOfPlan(*connection, 1), "2 tasks, 1 resources, 2 links, no assignments");
  EXPECT_EQ(CountsOfWork(*connection, 1), "1 tasks, 0 resources, 0 links, 0 assignments");
  EXPECT_EQ(WrittenNote({}), "");
  EXPECT_EQ(WrittenNote({"a.mdb", "b.mpx"}), "; written: a.mdb, b.mpx");
}

TEST_F(RunParts, SourcesOfAnotherKindAreToldBeforeARun) {
  const std::string xml = "<Project xmlns=\"http://schemas.microsoft.com/project\"></Project>";
  const std::string mpx = "MPX,Microsoft Project for Windows,4.0,ANSI\r\n40,ID\r\n60,ID\r\n";
  const std::tuple<std::string, bool, bool, bool> cases[] = {
      {MERIVANE_SAMPLES "/onboarding.txt", true, false, false},
      {folder.Write("plan.mpx", mpx), false, true, false},
      {folder.Write("plan.xml", xml), false, false, true},
      {folder.Write("cut.xml", xml.substr(0, 30)), false, false, false},
      {folder.Write("empty.txt", ""), false, false, false},
      {folder.Path("missing.txt"), false, false, false}};
  for (const auto& [path, isModel, isMpx, isXml] : cases) {
    SCOPED_TRACE(path);
    desktop.boxes.clear();
    EXPECT_EQ(ProveModelText(state, path), isModel);
    EXPECT_EQ(ProveMpx(back, path), isMpx);
    EXPECT_EQ(ProveXml(back, path).has_value(), isXml);
    EXPECT_EQ(desktop.boxes.size(), isModel || isMpx || isXml ? 2U : 3U);
  }
  EXPECT_EQ(program->files.FreeFile(), 1);  // no source keeps its number
}

TEST_F(RunParts, DriversTellTheirFailureAndKeepTheConnection) {
  const std::string model = MERIVANE_SAMPLES "/onboarding.txt";
  OpenForModel();
  AddProject("1");
  EXPECT_FALSE(GenerateFromText(state, model, "", folder.Path("none/plan.xml")));
  EXPECT_THAT(desktop.MessageTexts().back(), HasSubstr("plan.xml"));
  EXPECT_TRUE(state.gMspConn);
  CloseMspConnection(state);
  EXPECT_FALSE(GenerateFromStoredModel(state, {}, "", ""));
  OpenForModel();
  const std::string xml = folder.Path("plan.xml");
  EXPECT_TRUE(GenerateFromText(state, model, folder.Path("plan.mpx"), xml));
  EXPECT_FALSE(state.gMspConn);
  EXPECT_THAT(ReadFile(xml), HasSubstr("<Name>"));
}

TEST_F(RunParts, WhereOneOutputCannotTakeItsPlaceEachIsAsItWas) {
  CancellableRun run;
  run.targets = {.database = databasePath,
                 .outputs = {folder.Write("a.mpx", "old"), folder.Path("b.mpx")}};
  run.drop = [] {};
  run.driver = [&] {
    for (const std::string& output : run.targets.outputs) {
      const std::int16_t number = program->files.FreeFile();
      program->files.OpenForOutput(number, output);
      program->files.Close(number);
    }
    return fs::create_directory(folder.Path("b.mpx"));
  };
  EXPECT_NE(ErrorOf([&] { RunUntilCancelled(state, run); }), 0);
  EXPECT_EQ(ReadFile(folder.Path("a.mpx")), "old");
  EXPECT_TRUE(fs::is_directory(folder.Path("b.mpx")));
}

TEST_F(RunParts, AdviceGoesByTheErrorAndByWhatTheFileIs) {
  const std::string compound = folder.Write("a.mpp", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 rest");
  const std::string access("\0\1\0\0Standard Jet DB", 19);
  const std::string whole = folder.Write("b.mpd", access + "rest");
  const std::string cut = folder.Write("c.mpd", access.substr(0, 9));
  const std::tuple<std::string, std::string, bool> cases[] = {
      {PlanFileAdvice(compound, RunTimeError(kInvalidFileFormat)), "as XML", true},
      {PlanFileAdvice(whole, RunTimeError(kUnknownTable)), "Project 98", true},
      {PlanFileAdvice(whole, RunTimeError(kDiskFull)), "", false},
      {PlanFileAdvice(cut, RunTimeError(kUnknownTable)), "", false},
      {PlanFileAdvice(folder.Path("none"), RunTimeError(kUnknownTable)), "", false},
      {NameAdvice("x.MPP"), "as XML", true},
      {NameAdvice("x.mpd"), ".mdb", true},
      {NameAdvice("mpp"), "", false},
      {MessageAdvice(kObjectNotSet), "No database is open", true},
      {MessageAdvice(kSubscriptOutOfRange), "circle", true},
      {MessageAdvice(0), "", false},
      {MessageAdvice(kDiskFull), "", false}};
  for (const auto& [told, words, isTold] : cases) {
    EXPECT_EQ(!told.empty(), isTold) << told;
    EXPECT_THAT(told, HasSubstr(words));
  }
}

}  // namespace
}  // namespace merivane::test
