#include "inspect/merge_preview.h"

#include <gmock/gmock.h>

#include <sstream>

#include "check_fixture.h"
#include "mspdi/plan_writer.h"

namespace merivane::test {

using namespace inspect;

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsSupersetOf;

struct Row {
  const char* name;
  Edits edits;  // of the plan
  std::vector<std::string> changes;
  bool merged = true;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

const std::string kLastTask = "70,5,5,Work on the first task with the mentor,3.00d,Yes,1,,\"4\"";
const std::string kWithPredecessors = kLastTask.substr(0, kLastTask.size() - 3);
const std::string kWork = "unit 5 'Work on the first task with the mentor'";
const std::string kWorkTask = "task 5 'Work on the first task with the mentor'";

class MergePreviewTest : public CheckFixture, public ::testing::WithParamInterface<Row> {
 protected:
  static void Change(const std::string& path, const Edits& edits) {
    const std::string text = Edited(ReadFile(path), edits);
    std::ofstream(path, std::ios::binary) << text;
  }
};

TEST_P(MergePreviewTest, TellsWhatTheMergeChangesAndTouchesNothing) {
  const std::string mpx = MakePlan();
  Change(mpx, GetParam().edits);
  const std::string database = ReadFile(databasePath);
  const inspect::MergePreview preview = inspect::PreviewMerge(mpx, databasePath, 1);
  for (const inspect::MergeChange& change : preview.changes) {
    EXPECT_TRUE(!change.advice.empty() || change.kind < inspect::ChangeKind::kNotTaken);
  }
  EXPECT_THAT(Shown(preview.changes), ElementsAreArray(GetParam().changes));
  EXPECT_EQ(preview.merged, GetParam().merged);
  EXPECT_EQ(preview.boxes.size(), GetParam().merged ? 0U : 1U);
  EXPECT_EQ(ReadFile(databasePath), database);
}

TEST_F(MergePreviewTest, CallsAUnitThatWasLeftOutAUnit) {
  const std::string mpx = MakePlan();
  RawDatabase(databasePath)
      .Run(
          "insert into Activity_in_Scenario (Use_Num, Msp_ProjID, Name) values (77, 1, 'Wait');"
          "update Links_in_Scenario set Origin_Num = 77 where Destination_Num = 5");
  Change(mpx, {{kLastTask, kWithPredecessors}});
  const inspect::MergePreview preview = inspect::PreviewMerge(mpx, databasePath, 1);
  EXPECT_THAT(Shown(preview.changes),
              ElementsAre("removed: 5: link: It leads from unit 77 'Wait' to " + kWork + "."));
}

TEST_F(MergePreviewTest, ACompleteMergeTellsWhatIsRenamedAndWhichProcessesPart) {
  const std::string mpx = MakePlan("clinic");
  Change(mpx, {{"Plan the rooms,", "Plan the wards,"}, {",Builder,Builder,", ",Team,Team,"}});
  const auto preview = PreviewCompleteMerge(mpx, databasePath, 1, TemplateDatabase(), Proof::kNone);
  EXPECT_THAT(Shown(preview.changes),
              ElementsAre("changed: 1: unit 4 'Plan the wards': It was called 'Plan the rooms'.",
                          "changed: 1: unit 4 'Plan the wards': It has a process of its own now, "
                          "10 instead of 1.",
                          "changed: 1: resource 2 'Team': It was called 'Builder'."));
}

// The first stop alone has a box: behind it the merge shows nothing any more.
TEST_F(MergePreviewTest, TellsTheStopsOfPlanningXmlAtOnce) {
  MakePlan();
  const std::string xml = folder.Path("plan.xml");
  mspdi::WritePlan(*Connect(), 1, desktop.Today(), xml);
  Change(xml, {{"<Name>Mentor<", "<Name>Ada's mentor<"},
               {"<Name>Set up the desk<", "<Name>Set up \"the\" desk<"},
               {"<Value>5<", "<Value>4<"},
               {"<Name>Create the accounts<", "<Name>Open accounts<"}});
  const inspect::MergePreview preview = inspect::PreviewMerge(xml, databasePath, 1);
  EXPECT_THAT(
      Shown(preview.changes),
      IsSupersetOf({"stop: 3: resource 3 'Ada's mentor': Its name holds an apostrophe, which "
                    "stops the merge.",
                    "stop: 2: task 2 'Set up \"the\" desk': Its name holds double quotes, "
                    "which stop the merge.",
                    "changed: 3: unit 3 'Open accounts': It was called 'Create the "
                    "accounts'."}));
  EXPECT_EQ(preview.boxes.size(), 1U);
}

TEST_F(MergePreviewTest, ReadsAModelWithANullInEachColumn) {
  MakePlan();
  RawDatabase database(databasePath);
  database.Run("pragma synchronous = off");
  for (const char* table :
       {"Activity_Pool", "MSP_TASKS", "Junctions_in_Scenario", "Links_in_Scenario", "MSP_RESOURCES",
        "MSP_ASSIGNMENTS", "Object_in_Activity_in_Scenario"}) {
    std::istringstream columns(
        database.Ask("select name || ' ' from pragma_table_info('" + std::string(table) + "')"));
    for (std::string column; columns >> column;) {
      const std::string value = '"' + column + '"';
      const std::string name = table + ("." + column);
      database.Run("create table kept as select rowid as r, " + value + " as v from " + table);
      ASSERT_EQ(database.Run("update " + (table + (" set " + value)) + " = Null"), SQLITE_OK)
          << name;
      Connection connection(program->workspace);
      connection.Open(ConnectionText(databasePath), OpenMode::kReadOnly);
      EXPECT_NO_THROW(ReadSnapshot(connection, 1)) << name;
      connection.Close();
      database.Run("update " + (table + (" set " + value)) +
                   " = (select v from kept where r = " + table + ".rowid); drop table kept");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Plans, MergePreviewTest,
    ::testing::Values(
        Row{"Unchanged", {}, {}},
        Row{"NameDurationAndNote",
            {{"Set up the desk,1.50d", "Build the desk,2.50d"}, {"are brought to", "stand in"}},
            {"changed: 2: unit 2 'Build the desk': It was called 'Set up the desk'.",
             "changed: 2: unit 2 'Build the desk': It takes 2.50 days instead of 1.5.",
             "changed: 2: unit 2 'Build the desk': It has another note."}},
        Row{"NewTask",
            {{kLastTask, "70,6,6,Lunch,1.00d,Yes,1,," + std::string(34, ',') + "\r\n" + kLastTask}},
            {"added: 6: unit 15 'Lunch': It comes new from the plan. The merged text holds its "
             "process but not the unit."}},
        Row{"NewTaskWithALink",
            {{kLastTask,
              "70,6,6,Lunch,1.00d,Yes,1,,\"5\"" + std::string(34, ',') + "\r\n" + kLastTask}},
            {"added: 6: unit 15 'Lunch': It comes new from the plan. The merged text holds its "
             "process but not the unit, so that its links lead to nothing.",
             "added: 6: link: It leads from " + kWork + " to unit 15 'Lunch'."}},
        Row{"TaskGone",
            {{"70,5,5,Work", "70,none,5,Work"}, {"75,3,1,24.00h", ""}},
            {"kept: " + kWork + ": The plan no longer has it; it lives on in the model.",
             "removed: assignment: Of resource 4 'Mentor' for " + kWork + "."}},
        Row{"ResourcesAndAssignments",
            {{"75,2,1,12.00h", "75,2,3,12.00h"},
             {"freed from other work", "the whole day"},
             {"75,3,1,8.00h", "75,4,2,8.00h"},
             {"50,3,3,Mentor", "50,4,4,Cook,Cook,2,10/h,15/h,,,,,,,,,,,,\r\n50,3,3,Mentor"}},
            {"changed: 3: resource 4 'Mentor': It has another note.",
             "added: 4: resource 5 'Cook': It comes new from the plan.",
             "changed: 2: assignment: Of resource 3 'System administrator' for unit 2 'Set up the "
             "desk': 3 instead of 1.",
             "removed: 4: assignment: Of resource 4 'Mentor' for unit 4 'Welcome and walk around'.",
             "added: 4: assignment: Of resource 5 'Cook' for unit 4 'Welcome and walk around': "
             "2."}},
        Row{"SecondPredecessor",
            {{kLastTask, kWithPredecessors + "\"4,1\""}},
            {"added: junction 15: It is new: Fan In, Async. AND.",
             "added: link: It leads from unit 4 'Welcome and walk around' to junction 15.",
             "added: link: It leads from junction 6 to junction 15.",
             "added: 5: link: It leads from junction 15 to " + kWork + ".",
             "removed: 5: link: It leads from unit 4 'Welcome and walk around' to " + kWork + "."}},
        Row{"NoPredecessor",
            {{kLastTask, kWithPredecessors}},
            {"removed: 5: link: It leads from unit 4 'Welcome and walk around' to " + kWork + "."}},
        Row{"PredecessorsPassedOver",
            {{kLastTask, kWithPredecessors + "\"4,9,1SF\""}},
            {"not taken: 5: " + kWorkTask +
                 ": Its predecessor '9' isn't in the plan, so that the "
                 "merge passes it over.",
             "not taken: 5: " + kWorkTask +
                 ": Its predecessor '1SF' is of the kind "
                 "start-to-finish, so that the merge passes it over."}},
        Row{"PredecessorBesidePlainLink",
            {{kLastTask, kWithPredecessors + "\"3\""}},
            {"stop: 5: " + kWorkTask +
             ": Its new predecessor '3' stops the merge, since the task's "
             "only link in the model comes straight from a unit."},
            false},
        Row{"LoneStartToStartOfNothing",
            {{"\"2,3\"", "\"12SS\""}},
            {"not taken: 4: task 4 'Welcome and walk around': Its predecessor '12SS' isn't in the "
             "plan, so that the merge makes a link to nothing of it.",
             "added: junction 15: It is new: Fan Out, Sync. AND.",
             "added: link: It leads from junction 15 to nothing.",
             "added: 4: link: It leads from junction 15 to unit 4 'Welcome and walk around'.",
             "removed: 4: link: It leads from junction 7 to unit 4 'Welcome and walk around'."}},
        Row{"PredecessorBeyondAnyTask",
            {{"\"2,3\"", "\"2,70000\""}},
            {"stop: 4: task 4 'Welcome and walk around': Its predecessor '70000' isn't in the "
             "plan, "
             "which stops the merge."},
            false},
        Row{"TaskIndented",
            {{"Open the personnel file,1.00d,Yes,1", "Open the personnel file,1.00d,Yes,2"}},
            {"stop: 1: task 1 'Open the personnel file': The task is indented below no summary "
             "task, which stops the merge.",
             "stop: plan: What lies behind can't be tried before that is mended."},
            false},
        Row{"NumberBeyondReason",
            {{"70,2,2,Set", "70,3000000000,2,Set"},
             {"Create the accounts,0.5", "Open accounts,0.5"}},
            {"stop: task 'Set up the desk': A value of it (line 30 of the file) can't be taken "
             "over: "
             "a number is beyond what the model can hold.",
             "not taken: 4: task 4 'Welcome and walk around': Its predecessor '2' isn't in the "
             "plan, "
             "so that the merge passes it over.",
             "changed: 3: unit 3 'Open accounts': It was called 'Create the accounts'.",
             "removed: assignment: Of resource 3 'System administrator' for unit 2 'Set up the "
             "desk'."},
            false},
        Row{"AllStopsAtOnceAndTheChangesBesideThem",
            {{"Mentor,Mentor,1,", "Ada's mentor,Mentor,1,"},
             {"System administrator,System administrator,2,", "System administrator,S,200%,"},
             {"Open the personnel file,1.00d", "\"Open the \"\"file\"\"\",1.00d"},
             {"Set up the desk,1.50d", "\"Set up, the desk\",2.50d"},
             {"Create the accounts,0.50d,Yes,1", "Create the accounts,0.50d,Yes,2"},
             {"\"2,3\"", "\"2SS\""},
             {"75,3,1,24.00h", ""}},
            {"stop: 2: resource 2 'System administrator': Its quantity '200%' is no number, which "
             "stops the merge.",
             "stop: 3: resource 3 'Ada's mentor': Its name holds an apostrophe, which stops the "
             "merge.",
             "stop: 1: task 1 'Open the \"\"file\"\"': Its name holds double quotes, which stop "
             "the "
             "merge.",
             "stop: 2: task 2 'Set up, the desk': Its name holds a comma, which stops the merge.",
             "stop: 3: task 3 'Create the accounts': The task was moved under another summary "
             "task, "
             "which stops the merge.",
             "stop: 4: task 4 'Welcome and walk around': Its only predecessor '2SS' is of the kind "
             "start-to-start, which stops the merge.",
             "changed: 1: unit 1 'Open the file': It was called 'Open the personnel file'.",
             "changed: 2: unit 2 'Set up the desk': It takes 2.50 days instead of 1.5.",
             "added: 3: resource 5 'Adas mentor': It comes new from the plan.",
             "removed: resource 4 'Mentor': The plan no longer has it.",
             "removed: 4: assignment: Of resource 4 'Mentor' for unit 4 'Welcome and walk around'.",
             "added: 4: assignment: Of resource 5 'Adas mentor' for unit 4 'Welcome and walk "
             "around': 1.",
             "removed: 5: assignment: Of resource 4 'Mentor' for " + kWork + "."},
            false}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace merivane::test
