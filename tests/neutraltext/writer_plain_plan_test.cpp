#include <sstream>

#include "writer_fixture.h"

namespace merivane::test {

namespace {

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
  EXPECT_EQ(Generate(), Expected("plan_of_another_program.txt"));
  EXPECT_TRUE(result);
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_EQ(state.gProjectConn, nullptr);
}

// Scenario and occurrence lines alone, one line a scenario.
std::string Tree(const std::string& text) {
  std::string tree;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("Scenario  ")) tree += "\n" + line;
    if (line.starts_with("  Parent:  ") || line.starts_with("  Process  ")) tree += line;
  }
  return tree;
}

// Task 9 has a level above its number: it is no occurrence, but what is below it is found.
TEST_F(PlainPlan, OutlineBecomesScenariosDepthFirst) {
  const char* outlines[] = {"1",     "1.1", "1.10",  "11",    "11.1",
                            "1.1.1", "2",   "2.x.1", "1.2.1", "1.2.1.1"};
  for (int uid = 1; uid <= 10; ++uid) AddTask(uid, outlines[uid - 1]);
  Sql("update MSP_TASKS set TASK_OUTLINE_LEVEL = TASK_UID - 7 where TASK_UID > 8");
  EXPECT_EQ(Tree(Generate()),
            "\nScenario  1  Process  1  #1  Process  4  #4  Process  7  #7"
            "\nScenario  2  Parent:  Process  #1  Process  2  #2  Process  3  #3"
            "\nScenario  3  Parent:  Process  #2  Process  6  #6"
            "\nScenario  4  Parent:  Process  #9  Process  10  #10"
            "\nScenario  5  Parent:  Process  #4  Process  5  #5");
}

TEST_F(PlainPlan, OutlineOfThousandsOfLevelsIsFollowedToItsEnd) {
  constexpr int kLevels = 3000;
  Sql("with recursive deep(n, num) as (select 1, '1' union all select n + 1, num || '.1' from deep"
      " where n < " +
      std::to_string(kLevels) +
      ") insert into MSP_TASKS (PROJ_ID, TASK_UID,"
      " TASK_OUTLINE_LEVEL, TASK_OUTLINE_NUM) select 1, n, n, num from deep");
  const std::string text = Generate();
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_NE(text.find("Scenario  3000\n"), text.npos);
}

TEST_F(PlainPlan, EachSectionReportsAnOutputThatIsNotOpen) {
  AddTask(1, "1");
  OpenPlan();
  program->files.CloseAll();
  EXPECT_FALSE(GenerateTextFromProject(state));
  EXPECT_EQ(desktop.boxes.size(), 4U);
  state.gProjectConn.reset();
  EXPECT_FALSE(GenerateTextFromProject(state));
  EXPECT_EQ(desktop.boxes.size(), 5U);
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
