#include <gmock/gmock.h>

#include <array>
#include <regex>
#include <set>

#include "changed_text.h"
#include "mpx_fixture.h"
#include "mspdi/plan_reader.h"

namespace merivane::test {

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
    tables.reset();
    const std::string plan = folder.Path("sent.mpx");
    RoundFixture::Translate(MERIVANE_SAMPLES "/" + sample + ".txt", plan);
    xml = WritePlan();
    program = std::make_unique<Program>(desktop);
    mpx = ReadFile(plan);
    tables = Connect();
    for (const char* sql : {kLinks, kJunctions, kNames}) before[sql] = RowsOf(sql);
  }

  bool BringBack() { return Translate(mpx, kMergePlan); }
  bool BringBackXml() { return TranslateXmlText(xml, kMergePlan); }

  void Replace(const std::string& text, const std::string& with) { Replace(mpx, text, with); }
  static void Replace(std::string& plan, const std::string& text, const std::string& with) {
    plan = With(plan, {{text, with}});
  }

  // Everything that a merge may touch, but for what tells which file it came from.
  std::string Dump() {
    std::istringstream names(
        "MSP_PROJECTS MSP_TASKS MSP_RESOURCES MSP_LINKS MSP_ASSIGNMENTS Activity_Pool Object_Pool "
        "Scenario Links_in_Scenario Junctions_in_Scenario Activity_in_Scenario "
        "Object_in_Activity_in_Scenario ProjectAct ProjectRes ProjectResReqts");
    std::string dump;
    for (std::string name; names >> name;) dump += name + "\n" + DumpTable(*tables, name);
    return dump;
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
  std::string TextOfDatabase() { return ReadFile(WriteText()); }

  std::string mpx;
  std::string xml;
  std::map<std::string, std::set<std::string>> before;
};

class UnchangedPlan : public RoundTrip, public testing::WithParamInterface<const char*> {};

TEST_P(UnchangedPlan, ChangesNeitherNamesNorLinks) {
  SendOut(GetParam());
  for (int merge = 0; merge < 2; ++merge) {
    EXPECT_TRUE(BringBack());
    for (const char* sql : {kLinks, kJunctions, kNames}) EXPECT_EQ(Changes(sql), "");
    EXPECT_EQ(Table("TASK_UID from MSP_TASKS where TASK_UID > 0 and KV7_PROCOCC_BROUGHT_BACK = 0"),
              "");
    EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>());
    EXPECT_EQ(Model(), TextOfDatabase());
  }
}

// What the model says: pools, scenarios, links; durations as numbers, since a plan has two
// decimals, and a day where there is none.
TEST_P(UnchangedPlan, AsXmlLeavesTheModelAsItWas) {
  constexpr const char* model[] = {
      "Num, Name, Glossary from Activity_Pool where Glossary is not null",
      "KV7_OBJ_HEX, RES_NAME, KV7_OBJ_GLOSSARY, KV7_OBJ_QUANTITY from MSP_RESOURCES",
      "KV7_PROCOCC_HEX, ifnull(KV7_PROCOCC_DURATION, 1) * 100, KV7_SCENARIO_HEX from MSP_TASKS",
      "Num, Name, Parent_Num from Scenario",
      "* from Links_in_Scenario",
      "* from Junctions_in_Scenario",
      "* from Object_Pool"};
  SendOut(GetParam());
  std::map<std::string, std::string> rows;
  for (const char* sql : model) rows[sql] = Table(sql);
  for (int merge = 0; merge < 2; ++merge) {
    EXPECT_TRUE(BringBackXml());
    for (const auto& [sql, sent] : rows) EXPECT_EQ(Table(sql), sent) << sql;
    EXPECT_EQ(Changes(kNames), "");
    EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>());
  }
  EXPECT_EQ(Model(), TextOfDatabase());
  const char* predecessors = "PID, Predecessor from ProjectAct";
  const std::string ofXml = Table(predecessors);
  EXPECT_TRUE(BringBack());
  EXPECT_EQ(Table(predecessors), ofXml) << "pairs that start or end together among others";
}

INSTANTIATE_TEST_SUITE_P(Samples, UnchangedPlan,
                         testing::Values("onboarding", "festival", "clinic", "bakery"),
                         [](const auto& info) { return std::string(info.param); });

TEST_F(RoundTrip, NamesDurationsNotesAndResourcesComeBack) {
  SendOut("onboarding");
  Replace("Set up the desk,1.50d", "Set up the room,20h");
  Replace("Chair, screen and telephone", "A desk,\x7F\x61 chair, a screen and a telephone");
  Replace("50,3,3,Mentor,Mentor,1,", "50,4,4,Locksmith,Locksmith,1,");
  EXPECT_TRUE(BringBack());
  EXPECT_EQ(Changes(kNames), "-2|1|Set up the desk; +2|1|Set up the room; ");
  EXPECT_EQ(Table("KV7_PROCOCC_DURATION from MSP_TASKS where KV7_PROCOCC_HEX = 2"), "2.50\n");
  EXPECT_EQ(Changes(kLinks), "");
  EXPECT_THAT(
      Model(),
      testing::AllOf(testing::HasSubstr("\r\n  Name:  Set up the room\r\n"),
                     testing::HasSubstr("\r\n    Name:  Set up the room\r\n"),
                     testing::HasSubstr("\r\n\"A desk,\r\na chair, a screen and a telephone are"),
                     testing::HasSubstr("\r\n  Name:  Locksmith\r\n"),
                     testing::Not(testing::HasSubstr("Set up the desk"))));
  EXPECT_EQ(Model(), TextOfDatabase());
}

TEST_F(RoundTrip, TwoProgramsSideBySideShareNothing) {
  SendOut("onboarding");
  Program first(desktop), second(desktop);
  const auto read = [&](Program& each, const std::string& name) -> ModelToProject& {
    const std::string database = folder.Path(name + ".mdb");
    std::filesystem::copy_file(TemplateDatabase(), database);
    each.modelToProject.gMspProjId = 1;
    OpenInterimDb(each.workspace, each.modelToProject.gMspConn, true, database);
    ReadNeutralText(each.modelToProject, MERIVANE_SAMPLES "/" + name + ".txt");
    return each.modelToProject;
  };
  ModelToProject &one = read(first, "onboarding"), &other = read(second, "festival");
  TranslateToProject(one, folder.Path("sent.mpx"));
  TranslateToProject(other, folder.Path("second.mpx"));
  EXPECT_EQ(ReadFile(folder.Path("sent.mpx")), mpx);
  EXPECT_EQ(CountRows(*other.gMspConn, "MSP_TASKS", "where TASK_UID > 0"), 20U);
}

TEST_F(RoundTrip, PredecessorsOfEachKindChangeTheLinks) {
  const std::array<std::string, 5> cases[] = {
      {"a branch removed: its junction joins nothing any more", "9", "",
       "-59|17|30; -60|30|18; -61|30|19; +59|17|19; ", "-30|Fan Out|Async. OR|4; "},
      {"start to start", "10", "5,9SS",
       "-59|17|30; -60|30|18; -61|30|19; +59|17|70; +68|67|19; +69|67|18; +71|70|30; +72|70|67; ",
       "+67|Fan Out|Sync. AND|4; +70|Fan Out|Async. AND|4; "},
      {"finish to finish", "10", "5,9FF", "", "-31|Fan In|Async. OR|4; +31|Fan In|Sync. AND|4; "},
  };
  for (const auto& [rule, task, list, links, junctions] : cases) {
    SendOut("festival");
    SetPredecessors(task, list);
    EXPECT_TRUE(BringBack()) << rule;
    EXPECT_EQ(Changes(kLinks), links) << rule;
    EXPECT_EQ(Changes(kJunctions), junctions) << rule;
  }
}

TEST_F(RoundTrip, EditInXmlChangesThatAndNothingElse) {
  SendOut("onboarding");
  Replace(xml, "<Name>Set up the desk</Name>", "<Name>Set up the room, again</Name>");
  Replace(xml, "Chair, screen and telephone", "A desk,\n\xC4\x8D chair, screen and telephone");
  EXPECT_TRUE(BringBackXml());
  EXPECT_EQ(Changes(kNames), "-2|1|Set up the desk; +2|1|Set up the room, again; ");
  EXPECT_EQ(Changes(kLinks), "");
  EXPECT_THAT(Model(), testing::HasSubstr("A desk,\r\n? chair, screen and telephone"));
  EXPECT_THAT(desktop.MessageTexts(),
              testing::ElementsAre(testing::StartsWith("1 character of the plan is not in")));
}

TEST_F(RoundTrip, XmlThatCannotBeMergedChangesNothing) {
  const std::array<std::string, 3> cases[] = {
      {"<FieldID>188743731</FieldID>\n    <Value>", "<FieldID>188743734</FieldID>\n    <Value>",
       "--overwrite"},
      {"<Value>2</Value>", "<Value>1</Value>", "(task 2 in line"},
      {"<Name>Set up the desk", "<Name>Set up the \"desk", "Please change 'Set up the \"desk'"},
      {"<Name>Set up the desk", "<Name>Set up\nthe desk", "(task 2 in line"},
      {"<Name>Mentor", "<Name>Mentor, first", "'Mentor, first' (resource 3 in line"},
      {"<Name>Mentor", "<Name>O'Brien", "apostrophes"},
      {"<UID>3</UID>", "<UID>2</UID>", "plan.xml, line"},
  };
  for (const auto& [text, with, message] : cases) {
    SendOut("onboarding");
    desktop.boxes.clear();
    const std::string dump = Dump();
    xml = std::regex_replace(xml, std::regex(text), with);
    EXPECT_FALSE(BringBackXml()) << with;
    EXPECT_THAT(desktop.MessageTexts(), testing::ElementsAre(testing::HasSubstr(message)));
    EXPECT_EQ(Dump(), dump) << with;
  }
}

TEST_F(RoundTrip, SamePlanAsMpxAndAsXmlGivesTheSameModel) {
  const std::string resources =
      "50,1,1,Crew,Crew,2,10/h,15/h,,,,,,,,,,,,\r\n50,2,2,Crane,Crane,1,10/h,15/h,,,,,,,,,,,,\r\n";
  std::string plan = Plan(resources, Tasks("1 Plan 1 - - 2.50d; 2 Build 1 - 1 3d; 3 Walls 2 - - 4h;"
                                           "4 Roof 2 - 3FS+1d; 5 Paint 1 - 2,1SF 30m"));
  Replace(plan, "70,2,2", "71,\"one\x7Ftwo\"\r\n70,2,2");
  Replace(plan, "70,4,4", "75,1,2,8.00h\r\n70,4,4");
  Replace(plan, "70,5,5", "75,2,0.5,4.00h\r\n70,5,5");
  ASSERT_TRUE(Translate(plan, kRebuildModel));
  const auto withoutQuotes = [](std::string text) {
    std::erase(text, '"');
    return text;
  };
  const std::string dump = withoutQuotes(Dump());
  const std::string model = withoutQuotes(Model());
  const std::string planXml = WritePlan();
  tables.reset();
  std::filesystem::copy_file(TemplateDatabase(), databasePath,
                             std::filesystem::copy_options::overwrite_existing);
  ASSERT_TRUE(TranslateXmlText(planXml, kRebuildModel));
  EXPECT_THAT(desktop.MessageTexts(),
              testing::ElementsAre("A model doesn't take everything of this plan:\n"
                                   "1 lag of a link: left out\n1 start-to-finish link: left out"));
  std::string again = withoutQuotes(Dump());
  Replace(again, "KV7_PROJ_START_DATE='10/17/2014'", "KV7_PROJ_START_DATE='17/10/14'");
  EXPECT_EQ(again, dump);
  EXPECT_EQ(withoutQuotes(Model()), model);
}

// Plans that Microsoft Project wrote. They lie beside the project, not in it.
TEST_F(RoundTrip, PlansOfProject98BecomeAModelOrEndInTheBoxOfTheirFault) {
  const std::string plans = MERIVANE_PLANS;
  if (!std::filesystem::exists(plans)) GTEST_SKIP() << plans << " isn't there";
  const auto rebuild = [&](const std::string& name) {
    return Translate(ReadFile(plans + "/" + name + ".mpx"), kRebuildModel);
  };
  EXPECT_TRUE(rebuild("task-links-project98"));
  EXPECT_EQ(CountRows(*tables, "MSP_TASKS", "where KV7_SCENARIO_HEX = 1"), 16U);
  EXPECT_EQ(Table("Origin_Num, Destination_Num from Links_in_Scenario"),
            "1|2\n3|4\n5|6\n7|8\n9|10\n22|13\n22|14\n15|25\n16|25\n");
  EXPECT_FALSE(rebuild("sample")) << "its resource records begin with the name";
  EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>{ErrorText(kTypeMismatch)});
  EXPECT_TRUE(rebuild("resource-misc-project98")) << "no task, but the scenario is there still";
  EXPECT_EQ(Table("RES_NAME, KV7_OBJ_GLOSSARY from MSP_RESOURCES where RES_UID > 0"),
            "Resource 1|Notes1\r\nResource 2|Notes2\r\n");
}

class PlansOfProject : public RoundTrip, public testing::WithParamInterface<const char*> {};

TEST_P(PlansOfProject, BecomeModelsAndComeOutAgain) {
  const std::string path = std::string(MERIVANE_PLANS) + "/" + GetParam();
  if (!std::filesystem::exists(path)) GTEST_SKIP() << path << " is not there";
  EXPECT_TRUE(TranslateXmlText(ReadFile(path), kRebuildModel));
  const std::string untaken = mspdi::ReadPlanFile(path).untaken.Text();
  EXPECT_EQ(desktop.MessageTexts().size(), untaken.empty() ? 0U : 1U);
  EXPECT_THAT(desktop.MessageTexts(), testing::Each(testing::HasSubstr(untaken)));
  const std::string again = folder.Write("again.xml", WritePlan());
  const auto shown = [](const mspdi::FilePlan& plan) {
    std::ostringstream text;
    for (const auto& task : plan.tasks) {
      text << task.id << " " << task.name << " " << task.level << " " << *task.days;
      for (const auto& link : task.predecessors) {
        text << " " << link.predecessor << static_cast<int>(link.kind) << LagText(link.lag, 480);
      }
      text << "\n";
    }
    for (const auto& resource : plan.resources) text << resource.name << *resource.units << "\n";
    for (const auto& a : plan.assignments) text << a.task << a.resource << a.units << "\n";
    return text.str();
  };
  EXPECT_EQ(shown(mspdi::ReadPlanFile(again)), shown(mspdi::ReadPlanFile(path)));
}

INSTANTIATE_TEST_SUITE_P(Files, PlansOfProject,
                         testing::Values("task-links-project2003-mspdi.xml",
                                         "task-links-project2019-mspdi.xml",
                                         "assignment-assignments-project2010-mspdi.xml",
                                         "task-text-project2007-mspdi.xml",
                                         "resource-misc-project2019-mspdi.xml"),
                         [](const auto& info) { return "n" + std::to_string(info.index); });

}  // namespace
}  // namespace merivane::test
