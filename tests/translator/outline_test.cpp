#include "model_fixture.h"

namespace merivane::test {

namespace {

using Outline = ModelFixture;

TEST_F(Outline, PutsADecompositionBehindItsUob) {
  Scenario(1, "Parts", 1);
  Scenario(2, "Main");
  Scenario(3, "Pieces", 3);
  Scenario(4, "Parts of two", 2);
  const std::pair<int, int> uses[] = {{3, 1}, {1, 2}, {2, 2}, {4, 3}, {5, 1}, {6, 4}};
  for (const auto& [use, scenario] : uses) Uob(use, scenario);
  Translate();
  EXPECT_EQ(Plan(), "U1 U3 U4 U5 U2 U6");
  EXPECT_EQ(Tasks("KV7_PROCOCC_P_ORDER"), (Values{"00001", "0000100003", "000010000300004",
                                                  "0000100005", "00002", "0000200006"}));
  EXPECT_EQ(Tasks("TASK_OUTLINE_LEVEL"), (Values{1, 2, 3, 2, 1, 2}));
  EXPECT_EQ(Tasks("TASK_OUTLINE_NUM"), (Values{"1", "1.1", Value(), "1.2", "2", "2.1"}));
}

TEST_F(Outline, CountsTheTasksOfOtherProjectsToo) {
  Recordset others;
  others.OpenDynamic("select * from MSP_TASKS", &Model());
  for (const char* order : {"00001", "00002"}) {
    others.AddNew({"PROJ_ID", "TASK_UID", "TASK_OUTLINE_LEVEL", "KV7_PROCOCC_P_ORDER"},
                  {7, 90, 1, order});
  }
  Scenario(1, "Main");
  Scenario(2, "Parts", 1);
  for (const int use : {1, 3}) Uob(use, use == 1 ? 1 : 2);
  Translate();
  EXPECT_EQ(Tasks("TASK_OUTLINE_NUM"), (Values{"3", "1.1", "1", "2"}));
}

TEST_F(Outline, WarnsOfEachNumberOfMoreThanFiveDigits) {
  Scenario(1, "Main");
  Scenario(2, "Parts", 2);
  Scenario(3, "Parts of nobody, without a word", 77);
  const std::pair<int, int> uses[] = {{123456, 1}, {2, 1}, {123457, 2}, {4, 3}};
  for (const auto& [use, scenario] : uses) Uob(use, scenario);
  Translate();
  EXPECT_EQ(Activities("p_order"), (Values{"99999", "00002", "99999", "99999"}));
  EXPECT_EQ(Activities("outline"), (Values{1, 1, 1, 1}));
  const std::string warning =
      "Merivane curretly handles 99999 UOB IDs.  This file has UOB ID more than 99999 and some UOBs"
      " will be rearranged in the translation.";
  EXPECT_EQ(desktop.MessageTexts(), (Texts{warning, warning}));
}

TEST_F(Outline, CutsTheKeyBelowTheTenthLevel) {
  for (int level = 1; level <= 11; ++level) {
    Scenario(level, "Level", level - 1);
    Uob(level, level);
  }
  Translate();
  EXPECT_EQ(Joined(Activities("p_order")[9]).size(), 50U);
  EXPECT_EQ(Activities("p_order")[10], Activities("p_order")[9]);
  EXPECT_EQ(Activities("outline"), (Values{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 1}));
  EXPECT_EQ(desktop.MessageTexts(),
            Texts{"Merivane curretly handles 10 levels of hierarchy.  This file has more than 10 "
                  "levels and some hierarchy information will be lost in the translation."});
}

}  // namespace
}  // namespace merivane::test
