#include "inspect/merge_preview.h"

#include <gmock/gmock.h>

#include <sstream>

#include "changed_text.h"
#include "database_fixture.h"
#include "inspect/model_snapshot.h"
#include "neutraltext/modGlobal.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::test {

using namespace neutraltext;
using namespace translator;
using namespace inspect;

namespace {

using ::testing::ElementsAreArray;

struct Edit {
  std::string passage;
  std::string other;
};

struct Row {
  const char* name;
  std::vector<Edit> edits;  // of the plan
  std::vector<std::string> changes;
  bool merged = true;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

const char* WordOf(inspect::ChangeKind kind) {
  constexpr const char* kWords[] = {"added", "changed", "removed", "kept", "stop"};
  return kWords[static_cast<int>(kind)];
}

class MergePreviewTest : public DatabaseFixture, public ::testing::WithParamInterface<Row> {
 protected:
  // The sample model in the database, its plan in the file.
  std::string MakePlan() {
    const std::string mpx = folder.Path("plan.mpx");
    OpenForModel();
    ReadNeutralText(program->modelToProject, MERIVANE_SAMPLES "/onboarding.txt");
    TranslateToProject(program->modelToProject, mpx);
    program = std::make_unique<Program>(desktop);
    return mpx;
  }

  static void Change(const std::string& path, const std::vector<Edit>& edits) {
    std::string text = ReadFile(path);
    for (const auto& [passage, other] : edits) text = With(text, {{passage, other}});
    std::ofstream(path, std::ios::binary) << text;
  }
};

TEST_P(MergePreviewTest, TellsWhatTheMergeChangesAndTouchesNothing) {
  const std::string mpx = MakePlan();
  Change(mpx, GetParam().edits);
  const std::string database = ReadFile(databasePath);
  const inspect::MergePreview preview = inspect::PreviewMerge(mpx, databasePath, 1);
  std::vector<std::string> changes;
  for (const inspect::MergeChange& change : preview.changes) {
    changes.push_back(std::string(WordOf(change.kind)) + ": " + Described(change.element) + ": " +
                      change.sentence);
    EXPECT_EQ(change.advice.empty(), change.kind != inspect::ChangeKind::kStop);
  }
  EXPECT_THAT(changes, ElementsAreArray(GetParam().changes));
  EXPECT_EQ(preview.merged, GetParam().merged);
  EXPECT_EQ(preview.boxes.empty(), GetParam().merged);
  EXPECT_EQ(ReadFile(databasePath), database);
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

const std::string kLastTask = "70,5,5,Work on the first task with the mentor,3.00d,Yes,1,,\"4\"";
const std::string kWithPredecessors = kLastTask.substr(0, kLastTask.size() - 3);
const std::string kWork = "unit 5 'Work on the first task with the mentor'";

INSTANTIATE_TEST_SUITE_P(
    Plans, MergePreviewTest,
    ::testing::Values(
        Row{"Unchanged", {}, {}},
        Row{"NameDurationAndNote",
            {{"Set up the desk,1.50d", "Build the desk,2.50d"}, {"are brought to", "stand in"}},
            {"changed: unit 2 'Build the desk': It was called 'Set up the desk'.",
             "changed: unit 2 'Build the desk': It takes 2.50 days instead of 1.5.",
             "changed: unit 2 'Build the desk': It has another note."}},
        Row{"NewTask",
            {{kLastTask, "70,6,6,Lunch,1.00d,Yes,1,," + std::string(34, ',') + "\r\n" + kLastTask}},
            {"added: unit 15 'Lunch': It comes new from the plan."}},
        Row{"TaskGone",
            {{"70,5,5,Work", "70,none,5,Work"}, {"75,3,1,24.00h", ""}},
            {"kept: " + kWork + ": The plan no longer has it; it lives on in the model.",
             "removed: assignment: Of resource 4 'Mentor' for " + kWork + "."}},
        Row{"ResourcesAndAssignments",
            {{"75,2,1,12.00h", "75,2,3,12.00h"},
             {"freed from other work", "the whole day"},
             {"75,3,1,8.00h", "75,4,2,8.00h"},
             {"50,3,3,Mentor", "50,4,4,Cook,Cook,2,10/h,15/h,,,,,,,,,,,,\r\n50,3,3,Mentor"}},
            {"changed: resource 4 'Mentor': It has another note.",
             "added: resource 5 'Cook': It comes new from the plan.",
             "changed: assignment: Of resource 3 'System administrator' for unit 2 'Set up the "
             "desk': 3 instead of 1.",
             "removed: assignment: Of resource 4 'Mentor' for unit 4 'Welcome and walk around'.",
             "added: assignment: Of resource 5 'Cook' for unit 4 'Welcome and walk around': 2."}},
        Row{"SecondPredecessor",
            {{kLastTask, kWithPredecessors + "\"4,1\""}},
            {"added: junction 15: It is new: Fan In, Async. AND.",
             "added: link: It leads from unit 4 'Welcome and walk around' to junction 15.",
             "added: link: It leads from junction 6 to junction 15.",
             "added: link: It leads from junction 15 to " + kWork + ".",
             "removed: link: It leads from unit 4 'Welcome and walk around' to " + kWork + "."}},
        Row{"NoPredecessor",
            {{kLastTask, kWithPredecessors}},
            {"removed: link: It leads from unit 4 'Welcome and walk around' to " + kWork + "."}},
        Row{"PredecessorBesidePlainLink",
            {{kLastTask, kWithPredecessors + "\"3\""}},
            {"stop: task 5 'Work on the first task with the mentor': Its new predecessor '3' stops "
             "the merge, since the task's only link in the model comes straight from a unit."},
            false},
        Row{"LoneStartToStart",
            {{"\"2,3\"", "\"2SS\""}},
            {"stop: task 4 'Welcome and walk around': Its only predecessor '2SS' is of the kind "
             "start-to-start, which stops the merge."},
            false},
        Row{"TaskMoved",
            {{"Set up the desk,1.50d,Yes,1", "Set up the desk,1.50d,Yes,2"}},
            {"stop: task 2 'Set up the desk': The task was moved under another summary task, which "
             "stops the merge."},
            false},
        Row{"TaskIndented",
            {{"Open the personnel file,1.00d,Yes,1", "Open the personnel file,1.00d,Yes,2"}},
            {"stop: task 1 'Open the personnel file': The task is indented below no summary task, "
             "which stops the merge."},
            false},
        Row{"NameWithComma",
            {{"Set up the desk", "\"Set up, the desk\""}},
            {"stop: task 2: In line 30 of the file: Merivane requires that Task names do not have "
             "commas. Please change '\"Set up, the desk'."},
            false},
        Row{"ResourceWithApostrophe",
            {{"Mentor,Mentor", "Ada's mentor,Mentor"}},
            {"stop: resource 3: In line 22 of the file: Its name holds an apostrophe, which stops "
             "the merge."},
            false},
        Row{"QuantityOfNoNumber",
            {{"Mentor,Mentor,1,", "Mentor,Mentor,one,"}},
            {"stop: resource 3: In line 22 of the file: A value in this line can't be taken over: "
             "Type mismatch."},
            false}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace merivane::test
