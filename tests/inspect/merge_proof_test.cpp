#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <regex>

#include "check_fixture.h"
#include "inspect/merge_preview.h"
#include "roundtrip/modMpxtoIDEF3.h"

namespace merivane::test {

using namespace roundtrip;
using namespace inspect;

namespace {

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

struct Case {
  const char* name;
  Edits edits;  // of the plan
  std::vector<std::string> differences;
};

void PrintTo(const Case& row, std::ostream* out) { *out << row.name; }

class MergeProofTest : public CheckFixture, public ::testing::WithParamInterface<Case> {
 protected:
  // Cycle times and labor rules of other objects than entities don't stand in a written text.
  static std::string WithoutWhatATextLacks(const std::string& mpx) {
    const std::string days =
        std::regex_replace(mpx, std::regex("(\r\n70,[0-9]+,[0-9]+,[^,]*,)[0-9.]+d"), "$011.00d");
    return std::regex_replace(days, std::regex("\r\n75,[^\r]*"), "");
  }

  void Merge(const std::string& mpx) {
    ProjectToModel& state = program->projectToModel;
    state.gInterimConn = Connect();
    state.gInterimProjId = 1;
    state.gOutFile = program->files.FreeFile();
    program->files.OpenForOutput(state.gOutFile, text);
    EXPECT_TRUE(TranslateMpx(state, folder.Write("changed.mpx", mpx), "", -1));
    program = std::make_unique<Program>(desktop);
  }

  MergeProof Prove() {
    return ProveMerge(*Connect(OpenMode::kReadOnly), 1, text, TemplateDatabase());
  }

  std::vector<std::string> Differences() {
    const MergeProof proof = Prove();
    EXPECT_EQ(proof.failure, "");
    for (const auto& difference : proof.differences) EXPECT_FALSE(difference.advice.empty());
    return Shown(proof.differences);
  }

  std::string plan = MakePlan();
  std::string text = folder.Path("merged.txt");
};

TEST_P(MergeProofTest, TellsWhatTheMergedModelDoesNotGive) {
  Merge(Edited(WithoutWhatATextLacks(ReadFile(plan)), GetParam().edits));
  const std::string database = ReadFile(databasePath);
  EXPECT_THAT(Differences(), ElementsAreArray(GetParam().differences));
  EXPECT_EQ(ReadFile(databasePath), database);
}

const std::string kWork = "task 'Work on the first task with the mentor'";

INSTANTIATE_TEST_SUITE_P(
    Edits, MergeProofTest,
    ::testing::Values(
        Case{"Nothing", {}, {}}, Case{"Renamed", {{"Set up the desk", "Set up two desks"}}, {}},
        Case{"Added",
             {{"mentor,1.00d,Yes,1,,\"4\"" + std::string(34, ',') + "5\r\n",
               "mentor,1.00d,Yes,1,,\"4\"" + std::string(34, ',') +
                   "5\r\n70,6,6,Clear up,1.00d,Yes,1,,\"5\"" + std::string(34, ',') + "\r\n"}},
             {"6: task 'Clear up': The merged model gives no task for it.",
              "6: task 'Clear up': The merged model doesn't give its predecessor " + kWork +
                  " (FS)."}},
        Case{"LongerAndWithALag",
             {{"Set up the desk,1.00d", "Set up the desk,4.00d"}, {"\"4\"", "\"4FS+1d\""}},
             {"2: task 'Set up the desk': It takes 4.00 days in the plan, and 1 by the merged "
              "model.",
              "5: " + kWork +
                  ": The merged model doesn't give its predecessor task 'Welcome and walk around' "
                  "(FS+1d).",
              "5: " + kWork +
                  ": The merged model gives it the predecessor task 'Welcome and walk around' "
                  "(FS), which the plan doesn't have."}},
        Case{"OnePredecessorLess",
             {{"\"2,3\"", "\"2\""}},
             {"4: task 'Welcome and walk around': The merged model gives it the predecessor task "
              "'Create the accounts' (FS), which the plan doesn't have."}},
        Case{"MoreOfAResource",
             {{"System administrator,System administrator,2,",
               "System administrator,System administrator,5,"}},
             {"2: resource 'System administrator': There are 5 of it in the plan, and 2 by the "
              "merged model."}}),
    [](const auto& row) { return row.param.name; });

TEST_F(MergeProofTest, TellsTheCycleTimesAndAssignmentsThatATextLacks) {
  Merge(ReadFile(plan));
  const std::vector<std::string> told = Differences();
  EXPECT_EQ(told.size(), 9U);  // three durations, six assignments
  EXPECT_EQ(told.front(),
            "2: task 'Set up the desk': It takes 1.50 days in the plan, and 1 by the "
            "merged model.");
}

TEST_F(MergeProofTest, ANullOrATextInAnyColumnStopsNothing) {
  Merge(WithoutWhatATextLacks(ReadFile(plan)));
  const std::string whole = folder.Path("whole.mdb");
  std::filesystem::copy_file(databasePath, whole);
  for (const char* table : {"ProjectAct", "ProjectRes", "ProjectResReqts", "MSP_RESOURCES"}) {
    const auto columns =
        RawDatabase(whole).Rows("select name from pragma_table_info('" + std::string(table) + "')");
    for (const auto& column : columns) {
      for (const char* value : {"Null", "'text'"}) {
        SCOPED_TRACE(std::string(table) + "." + column[0] + " " + value);
        Sql("update " + std::string(table) + " set \"" + column[0] + "\" = " + value);
        EXPECT_NO_THROW(EXPECT_EQ(Prove().failure, ""));
        std::filesystem::remove(databasePath);
        std::filesystem::copy_file(whole, databasePath);
      }
    }
  }
}

TEST_F(MergeProofTest, ATextThatCannotBeReadBackIsItsFailure) {
  Merge(WithoutWhatATextLacks(ReadFile(plan)));
  const std::string whole = ReadFile(text);
  for (const std::size_t length : {std::size_t{0}, std::size_t{200}, whole.size() / 2}) {
    std::ofstream(text, std::ios::binary) << whole.substr(0, length);
    std::string told;
    try {
      const MergeProof proof = Prove();
      EXPECT_THAT(proof.differences, IsEmpty());
      told = proof.failure;
    } catch (const RunTimeError& error) {
      told = error.Description();
    }
    EXPECT_NE(told, "") << length;
  }
}

}  // namespace
}  // namespace merivane::test
