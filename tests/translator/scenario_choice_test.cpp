#include "model_fixture.h"
#include "translator/multi.h"

namespace merivane::test {

namespace {

// Two top scenarios with decompositions: U1 with U3; U2 with U4 or U5.
class ScenarioChoice : public ModelFixture {
 protected:
  ScenarioChoice() {
    Scenario(1, "Side");
    Scenario(2, "Main");
    Scenario(3, "Side parts", 1);
    Scenario(4, "By hand", 2);
    Scenario(5, "By machine", 2);
    for (const int num : {1, 2, 3, 4, 5}) Uob(num, num);
  }
  // Answers the choosers in turn; keeps what they offered.
  void Choose(const Texts& answers) {
    desktop.onModalForm = [this, answers](ModalForm& form) {
      auto& chooser = dynamic_cast<multi&>(form);
      const std::string& answer = answers.at(offered.size());
      offered.push_back(chooser.Label1 + " " + chooser.Label2);
      for (std::size_t i = 0; i < chooser.List1.size(); ++i) {
        offered.back() += " " + chooser.List1[i];
        if (chooser.List1[i] == answer) chooser.ListIndex = i;
      }
      chooser.Command1();
    };
  }

  Texts offered;
};

TEST_F(ScenarioChoice, AsksEvenWhereAFactNamesOneThatIsNotTheLast) {
  for (const char* fact : {"Choose Side", "Choose By hand"}) Add("Fact_Pool", {{"Name", fact}});
  Choose({"Main", "By hand"});
  Translate();
  EXPECT_EQ(Plan(), "U2 U4");
  EXPECT_EQ(offered, (Texts{"Multiple scenarios found. Please select the scenario to translate: "
                            "Side Main",
                            "Multiple decompositions found for U2. Please select the decomposition "
                            "to use: By hand By machine"}));
}

TEST_F(ScenarioChoice, NeedsNoQuestionWhereFactsNameTheLastOfSeveral) {
  for (const char* fact : {"choose MAIN", "Choose By machine"}) Add("Fact_Pool", {{"Name", fact}});
  Translate();
  EXPECT_EQ(Plan(), "U2 U5");
}

TEST_F(ScenarioChoice, StaysWithTheEarlierChoiceWhereTheFormIsClosed) {
  program->modelToProject.chosenName = "Side";
  Translate();
  EXPECT_EQ(Plan(), "U1 U3");
}

TEST_F(ScenarioChoice, FailsOnASecondUobWithSeveralDecompositions) {
  Uob(6, 2);
  Scenario(6, "One", 6);
  Scenario(7, "Other", 6);
  Choose({"Main", "By hand"});
  EXPECT_EQ(AbortOf(), ErrorText(kObjectOpen));
}

TEST_F(ScenarioChoice, EndsACircleOfDecompositions) {
  Scenario(6, "Back to one", 3);
  Add("Activity_in_Scenario", {{"Use_Num", 3}, {"Scenario_Num", 6}, {"Name", "U3"}});
  Choose({"Main"});
  EXPECT_EQ(AbortOf(), ErrorText(kOverflow));
}

TEST(Multi, FindsItsHelpInTheInstalledFolder) {
  ScriptedDesktop desktop;
  desktop.profile[{"MERIVANE_20_S", "install_dir"}] = std::string("/opt/merivane  \0", 16);
  std::string chosen;
  multi form(desktop, chosen);
  form.Load();
  EXPECT_EQ(form.HelpFile, "/opt/merivane/merivane.chm");
}

}  // namespace
}  // namespace merivane::test
