// One planted fault of each kind, alone and beside a number that is none.
#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <random>
#include <set>

#include "check_fixture.h"
#include "runtime/conversions.h"

namespace merivane::test {

namespace {

struct Fault {
  const char* name;
  std::string passage;
  std::string other;
  std::string element;  // "" where the text as a whole is meant
  std::string line;     // the beginning of its line
  std::string word;     // of the sentence
};

void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

// A fork with a path fact, and a scenario below its first unit.
std::string Sound() {
  Parts parts;
  parts.objects = Object("1", "Saw", "Quantity:  2|Alias:  SAW|") +
                  Object("2", "Oil", "Quantity:  3|Alias:  OIL|");
  parts.facts = Fact("1", "PathAt", "Take L22 until J12|") + Fact("2", "Choose Shop", "So|");
  parts.scenarios =
      Scenario(
          "1", "Shop", "",
          Unit("1", "Cut") + Unit("2", "Sand") + Unit("3", "Cut") +
              UnitOf("4", "Sand",
                     ObjectOccurrence("1", "Saw", "Sim|Cycle-Time:  2|Labor-Rule:  SAW#1|") +
                         ObjectOccurrence("2", "Oil", "Sim|Cycle-Time:  2|Labor-Rule:  OIL#1|")),
          Junction("11", "J11", "Fan Out", "XOR", kPathFact) +
              Junction("12", "J12", "Fan In", "XOR"),
          Link("21", "1", "J11", "21") + Link("22", "J11", "2", "22") +
              Link("23", "J11", "3", "23") + Link("24", "2", "J12", "24") +
              Link("25", "3", "J12", "25") + Link("26", "J12", "4", "26")) +
      "|" +
      Scenario("2", "Yard", "1", Unit("5", "Cut") + Unit("6", "Sand"), "", Link("27", "5", "6"));
  return ModelOf(parts);
}

class CheckFaultTest : public CheckFixture, public ::testing::WithParamInterface<Fault> {
 protected:
  // Whether the fault is among the findings, at its line and its element.
  bool IsTold(const std::string& model) {
    const std::vector<std::string> lines = LinesOf(model);
    std::string others;
    for (const inspect::Finding& finding : Check(model)) {
      const std::string& line = lines.at(finding.line - 1);
      const std::string element = Described(finding.element);
      if (line.starts_with(GetParam().line) && element == GetParam().element &&
          Holds(finding.sentence, GetParam().word)) {
        return true;
      }
      others += line + " / " + element + " / " + finding.sentence + "\n";
    }
    ADD_FAILURE() << others;
    return false;
  }
};

TEST_F(CheckFaultTest, NothingIsFoundInASoundModel) {
  for (const auto& finding : Check(Sound())) {
    EXPECT_EQ(finding.severity, inspect::Severity::kNote) << finding.sentence;
  }
  EXPECT_FALSE(TranslationStumbles(Sound()));
}

TEST_P(CheckFaultTest, IsToldAloneAndBesideNumbersThatAreNone) {
  const std::string model = With(Sound(), {{GetParam().passage, GetParam().other}});
  EXPECT_TRUE(IsTold(model));
  const auto severity = &inspect::Finding::severity;
  EXPECT_TRUE(!TranslationStumbles(model) ||
              std::ranges::count(Check(model), inspect::Severity::kError, severity) > 0);
  EXPECT_TRUE(IsTold(With(model, {{"  Revision Number  1", "  Revision Number  one"}})));
  EXPECT_TRUE(IsTold(With(model, {{"End  Fact Pool|", Fact("x", "Rain") + "End  Fact Pool|"}})));
  EXPECT_TRUE(
      IsTold(With(model, {{"End  Object Pool|", Object("x", "Glue", "") + "End  Object Pool|"}})));
}

const char* const kUnit4 = "unit 4 'Sand'";
const std::string kLink27 = "link 27 'Cut to Sand'";

INSTANTIATE_TEST_SUITE_P(
    Kinds, CheckFaultTest,
    ::testing::Values(
        Fault{"OwnNumber", "  Link  26|", "  Link  x|", "link", "  Link  x", "expected"},
        Fault{"EmptySecondNumber", "  #6|", "  #|", "unit", "    Process  1  #", "expected"},
        Fault{"NumberBeyondThirtyTwoBits", "  #6|", "  #4294967296|", "unit",
              "    Process  1  #4294967296", "beyond"},
        Fault{"FractionAsNumber", "  #6|", "  #6.2|", "unit 6", "    Process  1  #6.2", "read as"},
        Fault{"NegativeReference", "Object-Occurrence  2 ", "Object-Occurrence  -2 ", kUnit4,
              "          Object-Occurrence  -2", "read as"},
        Fault{"MarkOfLink", "#4  (Process-Occurrence,", "#4  (Process-Occurrence", "link 26",
              "    Destination  #4", "mark"},
        Fault{"NameOfEnd", "#6  (Process-Occurrence, Sand)", "#6  (Process-Occurrence, Cut)",
              "link 27 'Cut to Cut'", "  Link  27", "unit 6 'Sand'"},
        Fault{"NameOfJunction", "#12  (Junction, J12)", "#12  (Junction, J11)",
              "link 24 'Sand to J11'", "  Link  24", "junction 12 'J12'"},
        Fault{"TypeOfObject", "  Type:  Shared Resource", "  Type:  Shared resource",
              "object 1 'Saw'", "Object  1", "Did you mean 'Shared Resource'?"},
        Fault{"TypeOfJunction", "    Type:  XOR", "    Type:  XR", "junction 11 'J11'",
              "  Junction  11", "Did you mean 'XOR'?"},
        Fault{"Cardinality", "Cardinality:  Fan Out", "Cardinality:  Fan-Out", "junction 11 'J11'",
              "  Junction  11", "Did you mean 'Fan Out'?"},
        Fault{"CardinalitiesSwapped", "Cardinality:  Fan In", "Cardinality:  Fan Out",
              "junction 12 'J12'", "  Junction  12", "2 ways in and 1 way out"},
        Fault{"NameOfUse", "2  (Oil)", "2  (Oils)", kUnit4, "    Process  1  #4", "2 is 'Oil'"},
        Fault{"TwoCycleTimes", "Cycle-Time:  2|Labor-Rule:  OIL#1",
              "Cycle-Time:  3|Labor-Rule:  OIL#1", kUnit4, "          Object-Occurrence  2", "'3'"},
        Fault{"TermWithoutNumber", "OIL#1", "OIL", kUnit4, "    Process  1  #4", "'OIL'"},
        Fault{"TermOfTwoDigits", "OIL#1", "OIL#12", kUnit4, "    Process  1  #4", "takes 1"},
        Fault{"QuantityWithComma", "Quantity:  3", "Quantity:  2,5", "object 2 'Oil'",
              "Quantity:  2,5", "25.00"},
        Fault{"NoQuantity", "Quantity:  3", "Quantity:  0", "object 2 'Oil'", "Quantity:  0",
              "nothing"},
        Fault{"QuantityOfNoNumber", "Quantity:  3", "Quantity:  three", "object 2 'Oil'",
              "Quantity:  three", "'three'"},
        Fault{"HalfADay", "Cycle-Time:  2|Labor-Rule:  OIL", "Cycle-Time:  0.4|Labor-Rule:  OIL",
              kUnit4, "    Process  1  #4", "0 days"},
        Fault{"BeyondTheCalendar", "Cycle-Time:  2|Labor-Rule:  OIL",
              "Cycle-Time:  500000|Labor-Rule:  OIL", kUnit4, "    Process  1  #4", "calendar"},
        Fault{"ChoiceOfNothing", "Choose Shop", "Choose Shopp", "fact 2 'Choose Shopp'", "Fact  2",
              "Did you mean 'Shop'?"},
        Fault{"PathFactAtAnd", "    Type:  XOR", "    Type:  Async. AND", "junction 11 'J11'",
              "  Junction  11", "does nothing"},
        Fault{"LinkTwice", Link("27", "5", "6"), Link("27", "5", "6") + Link("28", "5", "6"),
              "link 28 'Cut to Sand'", "  Link  28", kLink27},
        Fault{"LinkNumberTwice", Link("26", "J12", "4", "26"), Link("25", "J12", "4", "26"),
              "link 25 'J12 to Sand'", "  Link  25", "link 25 'Cut to J12'"},
        Fault{"ProcessNameTwice", "End  Process Pool|", Process("3", "Cut") + "End  Process Pool|",
              "process 3 'Cut'", "Process  3", "process 1 'Cut'"},
        Fault{"ObjectNameTwice", "  Name:  Oil", "  Name:  Saw", "object 2 'Saw'", "Object  2",
              "object 1 'Saw'"},
        Fault{"ScenarioWithoutName", "  Name:  Yard", "  Name:  ", "scenario 2", "Scenario  2",
              "no name"},
        Fault{"ProcessOutsideThePool", "Process  1  #6", "Process  7  #6", "unit 6 'Sand'",
              "    Process  7", "no process 7"},
        Fault{"ParentThatCannotBeRead", "Process  #1 (Cut)", "Process  1 (Cut)",
              "scenario 2 'Yard'", "  Parent:", "parent"},
        Fault{"ControlCharacter", "  Creator:  Ada", "  Creator:  A\x01", "", "  Creator:  A",
              "control character 01"},
        Fault{"KeywordWithSlip", "  End  Referent List", "  End  Referent Lst", "",
              "  End  Referent Lst", "Did you mean '  End  Referent List'?"},
        Fault{"TabAsIndentation", "  Link List", "\tLink List", "", "\tLink List",
              "Did you mean '  Link List'?"}),
    [](const auto& row) { return row.param.name; });

class ChainTest : public CheckFixture, public ::testing::WithParamInterface<unsigned> {};

// Units in random order: what the text says is what the plan holds.
TEST_P(ChainTest, WithoutFindingsTranslatesIntoWhatItSays) {
  std::mt19937 random(GetParam());
  std::vector<int> order(2 + random() % 6);
  std::iota(order.begin(), order.end(), 1);
  std::shuffle(order.begin(), order.end(), random);
  std::string units;
  std::string links;
  for (const int unit : order) {
    units += Unit(std::to_string(unit), unit % 2 == 1 ? "Cut" : "Sand");
  }
  for (std::size_t i = 1; i < order.size(); ++i) {
    links += Link(std::to_string(50 + i), std::to_string(order[i - 1]), std::to_string(order[i]));
  }
  const std::string model = ModelOf({.scenarios = Scenario("1", "Shop", "", units, "", links)});
  ASSERT_TRUE(Check(model).empty());
  ASSERT_FALSE(TranslationStumbles(model));
  Connection& plan = *program->modelToProject.gMspConn;
  std::map<int, int> unitOf;
  for (const auto& row :
       Rows(plan, "select TASK_UID, KV7_PROCOCC_HEX from MSP_TASKS where TASK_UID > 0")) {
    unitOf[ToInt32(row[0])] = ToInt32(row[1]);
  }
  std::set<std::pair<int, int>> wanted;
  for (std::size_t i = 1; i < order.size(); ++i) wanted.emplace(order[i - 1], order[i]);
  std::set<std::pair<int, int>> planned;
  for (const auto& link :
       Rows(plan, "select LINK_PRED_UID, LINK_SUCC_UID from MSP_LINKS where LINK_UID > 0")) {
    planned.emplace(unitOf[ToInt32(link[0])], unitOf[ToInt32(link[1])]);
  }
  EXPECT_EQ(unitOf.size(), order.size());
  EXPECT_EQ(planned, wanted);
}

INSTANTIATE_TEST_SUITE_P(Seeds, ChainTest, ::testing::Range(1U, 7U));

}  // namespace
}  // namespace merivane::test
