#include "inspect/differences.h"

#include <gmock/gmock.h>

#include "check_fixture.h"

namespace merivane::test {

using namespace inspect;

namespace {

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;

struct Row {
  const char* name;
  Edits edits;  // of the second file
  std::vector<std::string> differences;
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

class FileDifferences : public CheckFixture, public ::testing::WithParamInterface<Row> {
 protected:
  static std::string Changed(const std::string& text) { return Edited(text, GetParam().edits); }
  static Differences Compare(const ComparedFile& first, const ComparedFile& second) {
    return CompareFiles(first, second, TemplateDatabase());
  }
  std::string WriteAs(const std::string& name, const std::string& model) {
    return folder.Write(name, ReadFile(Write(model)));
  }
};

using ModelDifferences = FileDifferences;

TEST_P(ModelDifferences, AreTold) {
  const std::string before =
      (ModelOf({.facts = Fact("1", "Dry"),
                .scenarios = Scenario("1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand"),
                                      Junction("7", "J7", "Fan Out", "XOR"), Link("5", "1", "2")) +
                             "|" + Scenario("2", "Paint shop", "1", Unit("3", "Cut"))}));
  const auto told = Compare({WriteAs("a.txt", before)}, {WriteAs("b.txt", Changed(before))});
  EXPECT_TRUE(told.ofModels);
  EXPECT_THAT(Shown(told.changes), ElementsAreArray(GetParam().differences));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ModelDifferences,
    ::testing::Values(
        Row{"Nothing", {}, {}},
        Row{"ARenamedScenario",
            {{"Name:  Paint shop", "Name:  Varnish"}},
            {"changed: scenario 2 'Varnish': It was called 'Paint shop'."}},
        Row{"AnotherParent",
            {{"Process  #1 (Cut)", "Process  #2 (Sand)"}},
            {"changed: scenario 2 'Paint shop': It decomposes unit 2 'Sand' instead of unit 1 "
             "'Cut'."}},
        Row{"FieldsOfAnObject",
            {{"Quantity:  2", "Quantity:  5"}, {"Alias:  SAW", "Alias:  S"}},
            {"changed: object 1 'Saw': There are 5 of it instead of 2.",
             "changed: object 1 'Saw': Its alias is 'S' instead of 'SAW'.",
             "changed: object 1 'Saw': It has another list of properties."}},
        Row{"ARenumberedFactIsTheSame", {{"Fact  1", "Fact  9"}}, {}},
        Row{"AJunctionOfAnotherType",
            {{"Type:  XOR", "Type:  OR"}},
            {"changed: junction 7 'J7': Its type is 'OR' instead of 'XOR'."}},
        Row{"ALinkTheOtherWayRound",
            {{"Origin  #1  (Process-Occurrence, Cut)", "Origin  #2  (Process-Occurrence, Sand)"},
             {"Destination  #2  (Process-Occurrence, Sand)",
              "Destination  #1  (Process-Occurrence, Cut)"}},
            {"added: link: It leads from unit 2 'Sand' to unit 1 'Cut'.",
             "removed: link: It leads from unit 1 'Cut' to unit 2 'Sand'."}},
        Row{"AnotherCycleTimeAndLaborRule",
            {{"Cycle-Time:  2", "Cycle-Time:  3"}, {"Labor-Rule:  SAW#1", "Labor-Rule:  SAW#2"}},
            {"changed: unit 1 'Cut': It takes 3 days instead of 2.",
             "changed: object of a unit: Of object 1 'Saw' for unit 1 'Cut'. Its labor rule is "
             "'SAW#2' instead of 'SAW#1'."}}),
    [](const auto& info) { return info.param.name; });

using PlanDifferences = FileDifferences;

TEST_P(PlanDifferences, AreToldBetweenEveryPairOfKinds) {
  const std::string mpx = MakePlan();
  const std::string changed = folder.Write("changed.mpx", Changed(ReadFile(mpx)));
  const ComparedFile sources[] = {{mpx}, {databasePath, 1}, {MERIVANE_SAMPLES "/onboarding.txt"}};
  for (const ComparedFile& source : sources) {
    const auto told = Compare(source, {changed});
    EXPECT_FALSE(told.ofModels);
    EXPECT_THAT(Shown(told.changes), ElementsAreArray(GetParam().differences)) << source.path;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PlanDifferences,
    ::testing::Values(
        Row{"Nothing", {}, {}},
        Row{"NameAndDuration",
            {{"Set up the desk,1.50d", "Furnish,2.00d"}},
            {"changed: 2: task 'Furnish': It was called 'Set up the desk'.",
             "changed: 2: task 'Furnish': It takes 2.00 days instead of 1.50."}},
        Row{"ATaskWithoutItsNumberIsFoundByItsName",
            {{"70,2,2,Set up the desk,1.50d", "70,2,2,Set up the desk,2.50d"},
             {",,,2\r\n", ",,,\r\n"}},
            {"changed: 2: task 'Set up the desk': It takes 2.50 days instead of 1.50."}},
        Row{"APredecessorWithALag",
            {{",\"4\"", ",\"4FS+2d\""}},
            {"added: 5: link: It leads from task 'Welcome and walk around' to task 'Work on the "
             "first task with the mentor'. (FS+2d)",
             "removed: 5: link: It leads from task 'Welcome and walk around' to task 'Work on the "
             "first task with the mentor'. (FS)"}}),
    [](const auto& info) { return info.param.name; });

struct Bad {
  const char* file;
  const char* text;
  const char* word;
};

TEST_F(CheckFixture, FileThatCantBeComparedIsNamedWithItsReason) {
  const std::string good = MERIVANE_SAMPLES "/onboarding.txt";
  const Bad rows[] = {
      {"broken.txt", "Dunmar Neutral Text; Version:2.20;\r\nProject Summary\r\n", "can't be read"},
      {"other.mpx", "no plan\r\n", "can't be read"},
      {"cut.xml", "<Project><Tasks>", "can't be read"},
      {"none.mdb", "no database", "none.mdb"},
  };
  for (const Bad& row : rows) {
    const std::string file = folder.Write(row.file, row.text);
    for (const bool isFirst : {true, false}) {
      const ComparedFile bad{file, 1};
      std::string told;
      try {
        CompareFiles(isFirst ? bad : ComparedFile{good}, isFirst ? ComparedFile{good} : bad,
                     TemplateDatabase());
      } catch (const RunTimeError& error) {
        told = error.Description();
      }
      EXPECT_THAT(told, HasSubstr(row.file));
      EXPECT_THAT(told, HasSubstr(row.word)) << row.file;
    }
  }
}

TEST_F(CheckFixture, TextThatAsksForAScenarioGivesNoPlan) {
  const std::string mpx = MakePlan();
  EXPECT_THROW(CompareFiles({MERIVANE_SAMPLES "/bakery.txt"}, {mpx}, TemplateDatabase()),
               RunTimeError);
}

}  // namespace
}  // namespace merivane::test
