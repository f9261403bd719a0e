#include <filesystem>
#include <map>
#include <regex>
#include <set>

#include "mpx_fixture.h"
#include "neutraltext/modGlobal.h"
#include "neutraltext/modProjectToIDEF3.h"
#include "runtime/text.h"
#include "translator/modIDEF3ToProject.h"
#include "translator/multi.h"

namespace merivane::test {

using namespace neutraltext;
using namespace translator;

namespace {

constexpr const char* kLinks =
    "Num, Origin_Num, Destination_Num from Links_in_Scenario where Msp_ProjID = 1";
constexpr const char* kJunctions =
    "Num, Cardinality, Type, Scenario_Num from Junctions_in_Scenario";
constexpr const char* kNames =
    "KV7_PROCOCC_HEX, KV7_SCENARIO_HEX, TASK_NAME from MSP_TASKS where TASK_UID > 0";

// A sample model goes out as a plan, is changed there and comes back.
class RoundTrip : public MpxFixture {
 protected:
  void SendOut(const std::string& sample) {
    desktop.modalHandler = [](ModalForm& form) {
      auto& chooser = dynamic_cast<multi&>(form);
      chooser.ListIndex = 0;
      chooser.Command1();
    };
    tables.reset();
    program = std::make_unique<Program>(desktop);
    std::filesystem::copy_file(TemplateDatabase(), databasePath,
                               std::filesystem::copy_options::overwrite_existing);
    OpenForModel();
    const std::string plan = folder.Path("sent.mpx");
    ReadNeutralText(program->modelToProject, MERIVANE_SAMPLES "/" + sample + ".txt");
    TranslateToProject(program->modelToProject, plan);
    program->modelToProject.gMspConn.reset();
    program = std::make_unique<Program>(desktop);
    mpx = ReadFile(plan);
    tables = Connect();
    for (const char* sql : {kLinks, kJunctions, kNames}) before[sql] = RowsOf(sql);
  }

  bool BringBack() { return Translate(mpx, kMergePlan); }

  void Replace(const std::string& text, const std::string& with) {
    const std::size_t at = mpx.find(text);
    ASSERT_NE(at, std::string::npos) << text;
    mpx.replace(at, text.size(), with);
  }

  void SetPredecessors(const std::string& id, const std::string& list) {
    const std::regex field("(\r\n70," + id + ",[^\r\"]*,Yes,[0-9]+,,)(\"[^\"]*\")?");
    mpx = std::regex_replace(mpx, field, "$1\"" + list + "\"");
  }

  // The rows that went, with "-" in front, then those that came, with "+".
  std::string Changes(const char* sql) {
    std::set<std::string> rows = RowsOf(sql);
    std::string went, came;
    for (const std::string& row : before[sql]) {
      if (rows.erase(row) == 0) went += "-" + row + "; ";
    }
    for (const std::string& row : rows) came += "+" + row + "; ";
    return went + came;
  }

  std::set<std::string> RowsOf(const char* sql) {
    std::istringstream in(Table(sql));
    std::set<std::string> rows;
    for (std::string row; std::getline(in, row);) rows.insert(row);
    return rows;
  }

  // What the direct writer makes of the database by itself.
  std::string TextOfDatabase() {
    State().gProjectConn = Connect();
    program->files.OpenForOutput(State().gOutFile, folder.Path("again.txt"));
    EXPECT_TRUE(GenerateTextFromProject(State()));
    return ReadFile(folder.Path("again.txt"));
  }

  std::string mpx;
  std::map<const char*, std::set<std::string>> before;
};

class UnchangedPlan : public RoundTrip, public testing::WithParamInterface<const char*> {};

TEST_P(UnchangedPlan, ChangesNeitherNamesNorLinks) {
  SendOut(GetParam());
  EXPECT_TRUE(BringBack());
  for (const char* sql : {kLinks, kJunctions, kNames}) EXPECT_EQ(Changes(sql), "");
  EXPECT_EQ(CountRows(*tables, "MSP_TASKS", "where TASK_UID > 0 and KV7_PROCOCC_BROUGHT_BACK = 0"),
            0U);
  EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>());
  EXPECT_EQ(Model(), TextOfDatabase());
  EXPECT_TRUE(BringBack()) << "the plan can be merged twice";
  for (const char* sql : {kLinks, kJunctions, kNames}) EXPECT_EQ(Changes(sql), "");
}

INSTANTIATE_TEST_SUITE_P(Samples, UnchangedPlan,
                         testing::Values("onboarding", "festival", "clinic", "bakery"),
                         [](const auto& info) { return std::string(info.param); });

TEST_F(RoundTrip, NamesDurationsNotesAndResourcesComeBack) {
  SendOut("onboarding");
  Replace("Set up the desk,1.50d", "Set up the room,20h");
  Replace("Chair, screen and telephone", "A desk,\x7F\x61 chair, a screen and a telephone");
  Replace("75,2,1,4.00h\r\n", "75,4,0.5,4.00h\r\n");
  Replace("50,3,3,Mentor,Mentor,1,", "50,4,4,Locksmith,Locksmith,1,");
  EXPECT_TRUE(BringBack());
  EXPECT_EQ(Changes(kNames), "-2|1|Set up the desk; +2|1|Set up the room; ");
  EXPECT_EQ(Table("KV7_PROCOCC_DURATION from MSP_TASKS where KV7_PROCOCC_HEX = 2"), "2.50\n");
  EXPECT_EQ(Changes(kLinks), "");
  EXPECT_EQ(Table("RES_UID, RES_NAME, KV7_OBJ_HEX from MSP_RESOURCES where RES_UID > 0"),
            "1|Personnel officer|2\n2|System administrator|3\n4|Locksmith|5\n");
  EXPECT_EQ(Table("Activity_Num, Object_Name, Qty from Object_in_Activity_in_Scenario where "
                  "Brought_from_Project = 1"),
            "1|Personnel officer|1\n2|System administrator|1\n4|Personnel officer|1\n"
            "3|Locksmith|0.5\n");
  const std::string text = Model();
  for (const char* line : {"\r\n  Name:  Set up the room\r\n", "\r\n    Name:  Set up the room\r\n",
                           "\r\n\"A desk,\r\na chair, a screen and a telephone are brought",
                           "\r\n  Name:  Locksmith\r\n"}) {
    EXPECT_TRUE(Holds(text, line)) << line;
  }
  EXPECT_FALSE(Holds(text, "Set up the desk"));
  EXPECT_EQ(text, TextOfDatabase());
}

TEST_F(RoundTrip, NewTasksGoIntoTheScenariosOfTheirSummaryTasks) {
  SendOut("festival");
  Replace("70,9,9,Hang", Tasks("21 Scrub 3 - 8; 22 Guide 2; 23 Wave 3") + "70,9,9,Hang");
  EXPECT_TRUE(BringBack());
  EXPECT_EQ(Changes(kNames), "+67|5|Scrub; +68|4|Guide; +69|6|Wave; ");
  EXPECT_EQ(Changes(kLinks), "+70|23|67; ");
  EXPECT_EQ(Table("Name, Parent_Num from Scenario where Num = 6"), "Scenario#6|68\n");
  EXPECT_TRUE(Holds(Model(), "\r\n  Name:  Wave\r\n"));
}

struct LinkCase {
  const char *rule, *task, *list, *links, *junctions;
};

TEST_F(RoundTrip, PredecessorsOfEachKindChangeTheLinks) {
  const std::vector<LinkCase> cases = {
      {"a lag", "8", "7FS+2d", "", ""},
      {"start to finish", "8", "7,6SF", "", ""},
      {"another scenario", "8", "7,1", "", ""},
      {"finish to finish that is there", "19", "17,18FF", "", ""},
      {"a plain link removed", "7", "", "-65|21|22; ", ""},
      {"a branch removed: its junction joins nothing any more", "9", "",
       "-59|17|30; -60|30|18; -61|30|19; +59|17|19; ", "-30|Fan Out|Async. OR|4; "},
      {"one more finish to start", "8", "6,7",
       "-65|21|22; -66|22|23; +65|21|67; +66|69|23; +68|67|22; +70|22|69; +71|67|69; ",
       "+67|Fan Out|Async. AND|5; +69|Fan In|Async. AND|5; "},
      {"start to start", "10", "5,9SS",
       "-59|17|30; -60|30|18; -61|30|19; +59|17|70; +68|67|19; +69|67|18; +71|70|30; +72|70|67; ",
       "+67|Fan Out|Sync. AND|4; +70|Fan Out|Async. AND|4; "},
      {"finish to finish", "10", "5,9FF", "", "-31|Fan In|Async. OR|4; +31|Fan In|Sync. AND|4; "},
      {"several more at once", "11", "9,10,3,4",
       "-55|14|32; -57|16|33; -64|31|20; +55|14|69; +57|16|72; +64|67|20; +68|31|67; +70|69|32; "
       "+71|69|67; +73|72|33; +74|72|67; ",
       "+67|Fan In|Async. AND|4; +69|Fan Out|Async. AND|4; +72|Fan Out|Async. AND|4; "},
  };
  for (const LinkCase& test : cases) {
    SendOut("festival");
    SetPredecessors(test.task, test.list);
    EXPECT_TRUE(BringBack()) << test.rule;
    EXPECT_EQ(Changes(kLinks), test.links) << test.rule;
    EXPECT_EQ(Changes(kJunctions), test.junctions) << test.rule;
  }
  SendOut("festival");
  SetPredecessors("8", "6");
  EXPECT_FALSE(BringBack()) << "a plain incoming link can't be replaced";
  EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>{ErrorText(kNoCurrentRecord)});
}

}  // namespace
}  // namespace merivane::test
