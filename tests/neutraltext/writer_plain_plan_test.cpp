#include "writer_fixture.h"

namespace merivane::test {

namespace {

const std::string kPoolFront =
    "|  Creator:  |  Date Created:  |  Last Modified:  |[  Glossary][  Note List][  Source List]";
const std::string kScenarioRest =
    "  Type:  Role View|  Creator:  |  ID  1|  Revision Number  1|  Review Status:  Working|"
    "  Date Created:  |  Last Modified:  |[  Purpose][  Viewpoint][  Context][  Description]"
    "{  }[  Note List][  Source List]|Process Occurrence List|";

std::string Process(const std::string& uid, const std::string& name) {
  return "Process  " + uid + "|  Name:  " + name + kPoolFront + "[  Property List]  ID:  " + uid +
         "|  IDEF0 Ref:  |{  }End  Process " + uid + "||";
}

std::string Resource(const std::string& uid, const std::string& name, const std::string& property) {
  return "Object  " + uid + "|  Name:  " + name + kPoolFront + "  Property List|" + property +
         "  End  Property List|  Type:  Agent|  Type:  Shared Resource|{  }End  Object " + uid +
         "||";
}

std::string Occurrence(const std::string& uid, const std::string& name) {
  return "|  Process  " + uid + "  #" + uid + "|  Name:  " + name +
         "|    ID:  1|    IDEF0 Ref:  |{    }  End  Process |";
}

using PlainPlan = WriterFixture;

TEST_F(PlainPlan, PlanOfAnotherProgramComesOutWhole) {
  UsePlanOfAnotherProgram();
  Sql("insert into MSP_PROJECTS values (1, 'House', 'Ann', null, 'Two\r\nlines', '1/2/2000', null),"
      " (2, 'Other', null, null, null, null, null)");
  Sql("insert into MSP_RESOURCES values (1, 0, 'none', 1, 1), (1, 1, 'Mason', 1.5, 1),"
      " (1, 2, 'Bricks', 200, 0), (1, 3, 'Crane', null, 1), (1, 4, 'Van', 1, null)");
  AddTask(0, "0");
  AddTask(1, "1", "Design");
  AddTask(2, "2", "Build");
  AddTask(3, "2.1", "Walls");
  AddLink(1, 1, 2, 1);
  const std::string widget =
      "    Property|      Name:  @Simulation Information|      Glossary|"
      "Sim_Widget|Icon:  1|End  Sim_Widget|";
  const std::string widgetEnd = "      End  Glossary|    End  Property|";
  const std::string expected =
      "Dunmar Neutral Text; Version:2.20;  |Project Summary|  Creator: Ann|  Used At: |"
      "  Project: House|  Date Created: 1/2/2000|  Last Modified: |[  Description=Two|lines]"
      "End  Project Summary||Project Properties||[  Property List=]End  Project Properties|||"
      "Process Pool|" +
      Process("1", "Design") + Process("2", "Build") + Process("3", "Walls") +
      "|End  Process Pool||Object Pool|" +
      Resource("1", "Mason", widget + "Sim_Shared|Quantity:  1.5|End Sim_Shared|" + widgetEnd) +
      Resource("2", "Bricks", widget + widgetEnd) + Resource("3", "Crane", "") +
      Resource("4", "Van", widget + widgetEnd) +
      "|End  Object Pool|[State Pool]|"
      "[Fact Pool]|[Property Pool]|[Constraint Pool]|[Note Pool]|[Source Pool]|[Unknown Pool]||"
      "Scenario List|Scenario  1|  Name:  Scenario #1|" +
      kScenarioRest + Occurrence("1", "Design") + Occurrence("2", "Build") +
      "End  Process Occurrence List|[Junction List]|Link List|"
      "Link 4|  Origin  #1|  Destination  #2|  id 1|  Type:  Precedence|  glossary|"
      "  End  Glossary|{  }[Property List]End  Link|End  Link List|End  Scenario||"
      "Scenario  2|  Name:  Scenario #2|  Parent:  Process  #2|" +
      kScenarioRest + Occurrence("3", "Walls") +
      "End  Process Occurrence List|[Junction List]|[Link List]End  Scenario||"
      "End  Scenario List|";
  EXPECT_EQ(Lines(Generate()), Lines(expected));
  EXPECT_TRUE(result);
  EXPECT_TRUE(desktop.shown.empty());
  EXPECT_EQ(state.gProjectConn, nullptr);
}

// Scenario and occurrence lines alone.
std::string Tree(const std::string& text) {
  std::string tree;
  for (std::size_t at = 0; at < text.size(); at = text.find('|', at) + 1) {
    const std::string line = text.substr(at, text.find('|', at) - at);
    const bool head = line.starts_with("Scenario  ");
    if (head) tree += "|";
    if (head || line.starts_with("  Parent:  ") || line.starts_with("  Process  ")) tree += line;
  }
  return tree;
}

// Task 9 has a level above its number: it is no occurrence, but what is below it is found.
TEST_F(PlainPlan, OutlineBecomesScenariosDepthFirst) {
  const char* outlines[] = {"1",     "1.1", "1.10",  "11",    "11.1",
                            "1.1.1", "2",   "2.x.1", "1.2.1", "1.2.1.1"};
  for (int uid = 1; uid <= 10; ++uid) AddTask(uid, outlines[uid - 1]);
  Sql("update MSP_TASKS set TASK_OUTLINE_LEVEL = TASK_UID - 7 where TASK_UID > 8");
  EXPECT_EQ(Lines(Tree(Generate())),
            Lines("|Scenario  1  Process  1  #1  Process  4  #4  Process  7  #7"
                  "|Scenario  2  Parent:  Process  #1  Process  2  #2  Process  3  #3"
                  "|Scenario  3  Parent:  Process  #2  Process  6  #6"
                  "|Scenario  4  Parent:  Process  #9  Process  10  #10"
                  "|Scenario  5  Parent:  Process  #4  Process  5  #5"));
}

TEST_F(PlainPlan, OutlineOfThousandsOfLevelsIsFollowedToItsEnd) {
  constexpr int kLevels = 3000;
  Sql("with recursive deep(n, num) as (select 1, '1' union all select n + 1, num || '.1' from deep"
      " where n < " +
      std::to_string(kLevels) +
      ") insert into MSP_TASKS (PROJ_ID, TASK_UID,"
      " TASK_OUTLINE_LEVEL, TASK_OUTLINE_NUM) select 1, n, n, num from deep");
  const std::string text = Generate();
  EXPECT_TRUE(desktop.shown.empty());
  EXPECT_NE(text.find("Scenario  3000|"), text.npos);
}

TEST_F(PlainPlan, EachSectionReportsAnOutputThatIsNotOpen) {
  AddTask(1, "1");
  OpenPlan();
  program->files.CloseAll();
  EXPECT_FALSE(GenerateTextFromProject(state));
  EXPECT_EQ(desktop.shown.size(), 4U);
  state.gProjectConn.reset();
  EXPECT_FALSE(GenerateTextFromProject(state));
  EXPECT_EQ(desktop.shown.size(), 5U);
  EXPECT_EQ(desktop.MessageTexts().back(), ErrorText(kObjectNotSet));
}

TEST_F(PlainPlan, AFullDiskIsToldOnceAndTheRunFails) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no full device here";
  UsePlanOfAnotherProgram();
  Sql("insert into MSP_PROJECTS (PROJ_ID, PROJ_NAME) values (1, 'House')");
  for (int task = 1; task < 300; ++task) AddTask(task, std::to_string(task), "Wall");
  OpenPlan();
  program->files.Close(state.gOutFile);
  program->files.OpenForOutput(state.gOutFile, "/dev/full");
  EXPECT_FALSE(GenerateTextFromProject(state));
  program->files.CloseAll();
  EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>{"Disk full: '/dev/full'"});
}

}  // namespace
}  // namespace merivane::test
