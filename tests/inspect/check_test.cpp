#include "inspect/check.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "check_fixture.h"

namespace merivane::test {

using namespace inspect;

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::HasSubstr;
using ::testing::Not;

struct Row {
  const char* name;
  std::string model;
  std::vector<std::string> findings;  // the line's text, severity, element, sentence
  bool endsTranslation = false;       // the real one shows a box, or ends the program
};

void PrintTo(const Row& row, std::ostream* out) { *out << row.name; }

std::string WordOf(inspect::Severity severity) {
  constexpr const char* kWords[] = {"error", "warning", "note"};
  return kWords[static_cast<int>(severity)];
}

std::string Blank(const std::string& passage, const std::string& other) {
  return With(ModelOf({}), {{passage, other}});
}

class CheckTest : public CheckFixture, public ::testing::WithParamInterface<Row> {
 protected:
  std::vector<std::string> Findings(const std::string& model) {
    std::vector<std::string> texts;
    const std::vector<std::string> lines = LinesOf(model);
    for (const auto& finding : Check(model)) {
      EXPECT_FALSE(finding.advice.empty());
      const std::string element = Described(finding.element);
      texts.push_back(lines.at(finding.line - 1) + ": " + WordOf(finding.severity) + ": " +
                      element + (element.empty() ? "" : ": ") + finding.sentence);
    }
    return texts;
  }
};

TEST_F(CheckTest, AnEmptyFileIsToldAtItsFirstLine) {
  const auto findings = inspect::CheckModel(folder.Write("empty.txt", ""), TemplateDatabase());
  ASSERT_EQ(findings.size(), 1U);
  EXPECT_EQ(findings[0].line, 1U);
  EXPECT_EQ(findings[0].sentence, "The text is empty.");
}

TEST_F(CheckTest, AFileOfAnotherKindIsCalledByIt) {
  using namespace std::string_literals;
  const std::pair<std::string, const char*> kFiles[] = {
      {"\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1\0\0\n"s, "save it there as XML"},
      {"MPX,Microsoft Project for Windows,4.0,ANSI\r\n", "an MPX file"},
      {"\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<Project/>\n", "an XML file"},
      {ReadFile(TemplateDatabase()), "a database"},
      {"\0\1\0\0Standard Jet DB\0\n"s, "an Access database"}};
  for (const auto& [content, word] : kFiles) {
    const auto findings =
        inspect::CheckModel(folder.Write("other.txt", content), TemplateDatabase());
    ASSERT_EQ(findings.size(), 1U) << word;
    EXPECT_THAT(findings[0].advice, HasSubstr(word));
  }
}

std::vector<std::string> SentencesOf(const std::vector<inspect::Finding>& findings) {
  std::vector<std::string> sentences(findings.size());
  std::ranges::transform(findings, sentences.begin(), &inspect::Finding::sentence);
  return sentences;
}

// The plan of such a model isn't written, only counted.
TEST_F(CheckTest, APlanWithTooManyLinksIsToldBeforeItIsMade) {
  std::string links;
  for (int link = 0; link < 32768; ++link) links += Link("5", "1", "2");
  Parts parts;
  parts.scenarios = Scenario("1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand"), "", links);
  const std::string tooMany =
      "The plan would have more than 32,767 links, which ends the translation.";
  EXPECT_THAT(SentencesOf(Check(ModelOf(parts))), Contains(tooMany));
  parts.scenarios.erase(parts.scenarios.find("  Link  5|"), Link("5", "1", "2").size());
  EXPECT_THAT(SentencesOf(Check(ModelOf(parts))), Not(Contains(tooMany)));
}

// The list goes over to the elements behind it, which aren't to blame.
TEST_F(CheckTest, ARowThatNoDatabaseHoldsIsToldOnceAtItsElement) {
  const auto withList = [](std::size_t size, char letter = 'x') {
    const std::string kBegin = "    Fact List|";
    std::string lines;
    while (lines.size() < size) lines += std::string(999, letter) + "|";
    std::string model = ModelOf({});
    return model.insert(model.find(kBegin, model.find("Process  2")) + kBegin.size(), lines);
  };
  const auto blamed = [this](const std::string& model) {
    std::string elements;
    for (const auto& finding : Check(model)) {
      if (Holds(finding.sentence, "16 MB")) elements += Described(finding.element);
    }
    return elements;
  };
  constexpr std::size_t kLongest = 16 << 20;
  EXPECT_EQ(blamed(withList(kLongest / 2)), "");
  EXPECT_EQ(blamed(withList(kLongest / 2, '\xE4')), "process 2 'Sand'");  // two bytes there
  EXPECT_EQ(blamed(withList(kLongest)), "process 2 'Sand'");
  EXPECT_TRUE(TranslationStumbles(withList(kLongest)));
}

// Only the paths of it are tried.
TEST_F(CheckTest, ALargeModelIsAskedForItsPathsAndScenarios) {
  std::string units = Unit("1", "Cut");
  std::string links;
  for (int unit = 2; unit <= 4100; ++unit) {
    units += Unit(std::to_string(unit), unit % 2 == 0 ? "Sand" : "Cut");
    links += Link(std::to_string(unit), "1", std::to_string(unit));
  }
  Parts parts;
  parts.scenarios =
      Scenario("1", "Shop", "", units, Junction("4999", "J1", "Fan Out", "XOR"), links) + "|" +
      Scenario("2", "Yard", "", Unit("4998", "Cut"));
  EXPECT_THAT(
      SentencesOf(Check(ModelOf(parts))),
      ElementsAre("One of the scenarios 'Shop', 'Yard' has to be chosen, and no fact chooses the "
                  "last one.",
                  "It dangles: it has no ways in and no ways out.",
                  "It has no path fact, so that all its paths go to the plan."));
}

TEST_P(CheckTest, TellsWhatAndWhere) {
  EXPECT_THAT(Findings(GetParam().model), ElementsAreArray(GetParam().findings));
  EXPECT_EQ(TranslationStumbles(GetParam().model), GetParam().endsTranslation);
}

Row OfText(const char* name, const std::string& passage, const std::string& other,
           std::vector<std::string> findings, bool ends = false) {
  return {name, Blank(passage, other), std::move(findings), ends};
}

Row OfScenarios(const char* name, const std::string& scenarios, std::vector<std::string> findings,
                bool ends = false) {
  return {name, ModelOf({.scenarios = scenarios}), std::move(findings), ends};
}

std::string NotChecked(int line) {
  return ": note: Not checked: paths, choices between scenarios and what the plan has no room for, "
         "because of the error in line " +
         std::to_string(line) + ".";
}

std::string NameNotInPool(const std::string& unit) {
  return "    Process  " + unit +
         ": Its object 1 'Saw' bears no name of the object pool, where 1 is 'Saw, small'; the plan "
         "goes by the name, and doesn't have it.";
}

INSTANTIATE_TEST_SUITE_P(
    Reader, CheckTest,
    ::testing::Values(
        Row{"Clean", ModelOf({}), {}},
        Row{"OtherFile",
            "Bread|\x81|Butter",
            {"Bread: error: The first line doesn't hold 'Dunmar Neutral Text', so this is no "
             "model."},
            true},
        Row{"NoScenario",
            ModelOf({.objects = "", .scenarios = ""}),
            {"Dunmar Neutral Text; Version:2.20;  : warning: The text has no scenario, so that the "
             "plan has no task."}},
        Row{"ScenarioWithoutUnits",
            ModelOf({.objects = "", .scenarios = Scenario("1", "Shop", "", "")}),
            {"Scenario  1: warning: scenario 1 'Shop': It has no unit, so that nothing of it "
             "reaches the plan."}},
        OfText("KeywordMissing", "  End  Note List|", "",
               {"  Source List: error: The line '  End  Note List' is missing in front of this "
                "one; all up to line 45 is taken for text.",
                "Object  1: note: object 1 'Saw': It gives no note list of its own; what "
                "process 1 'Cut' (line 14) gives is taken over.",
                "    Process  1  #2: error: unit 2 'Sand': No process of the pool has its name, "
                "which ends the translation."},
               true),
        OfText("SectionMissing", "|Fact Pool|", "|",
               {"End  State Pool: error: object 1 'Saw': The line 'Fact Pool' is missing: it is "
                "expected here or further down, and the text ends without it."},
               true),
        OfText("EndOfPoolMissing", "End  Process Pool|", "",
               {"Object Pool: error: process: A process or the line 'End  Process Pool' is "
                "expected here, and this line has no number."},
               true),
        OfText("TextForNumber", "Process  1|", "Process  one|",
               {"Process  one: error: process: A number is expected here, and 'one' is "
                "none."},
               true),
        OfText(
            "FiveDigits", "Object  1|", "Object  12345|",
            {"Object  12345: error: object 12345: The number 12345 has more than four "
             "digits; it is read as 1234.",
             "    Process  1  #1: warning: unit 1 'Cut': Its object 1 'Saw' is not in the object "
             "pool, so that the plan doesn't have it.",
             "    Process  1  #2: warning: unit 2 'Sand': Its object 1 'Saw' is not in the "
             "object pool, so that the plan doesn't have it."}),
        OfText("SixteenBits", "#2|      Name", "#32768|      Name",
               {"    Process  1  #32768: error: unit 32768: The number '32768' is beyond "
                "32,767.",
                NotChecked(156)},
               true),
        OfText(
            "ThirtyTwoBits", "Origin  #1 ", "Origin  #2147483648 ",
            {"    Origin  #2147483648  (Process-Occurrence, Cut): error: link 5 'Cut to Sand': The "
             "number '2147483648' of the link's origin is no whole number.",
             NotChecked(184)},
            true),
        Row{"RefusedNames",
            With(Blank("  Name:  Saw", "  Name:  Saw, small"),
                 {{"  Name:  Cut", "  Name:  \"Cut\""}}),
            {"  Name:  \"Cut\": error: process 1 '\"Cut\"': Merivane requires that UOB names do "
             "not have double quotes.",
             "  Name:  Saw, small: error: object 1 'Saw, small': Merivane requires that Object "
             "names do not have commas.",
             NameNotInPool("1  #1: warning: unit 1 'Cut'"),
             NameNotInPool("1  #2: warning: unit 2 'Sand'")},
            true},
        OfText("NameTooLong", "  Creator:  |  ID  1",
               "  Creator:  " + std::string(101, 'x') + "|  ID  1",
               {"  Creator:  " + std::string(101, 'x') +
                ": error: scenario 1 'Shop': The text behind 'Creator:' has 101 characters; only "
                "the first 100 are read."}),
        OfText("MarkMissing", "(Process-Occurrence, Cut)", "(Process-Occurrence Cut)",
               {"    Origin  #1  (Process-Occurrence Cut): error: link 5: This line lacks a mark: "
                "it must end in the form #NUMBER  (TYPE, NAME).",
                NotChecked(184)},
               true)),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Elements, CheckTest,
    ::testing::Values(
        OfScenarios(
            "EndOutsideScenario",
            Scenario("1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand"), "",
                     Link("5", "1", "2") + Link("6", "1", "9")),
            {"  Link  6: error: link 6 'Cut to Cut': Its destination 9 is neither a unit nor "
             "a junction of the scenario."}),
        OfScenarios(
            "EndOfOtherKind",
            Scenario("1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand"), "",
                     With(Link("5", "1", "2"), {{"Process-Occurrence", "Junction"}})),
            {"  Link  5: error: link 5 'Cut to Sand': Its origin 1 is called 'Junction', and is "
             "a 'Process-Occurrence'."}),
        Row{"OneNumberTwice",
            With(ModelOf({.processes = Process("1", "Cut") + Process("1", "Sand")}),
                 {{"#2|", "#1|"}}),
            {"Process  1: error: process 1 'Sand': It has the number of process 1 'Cut' (line "
             "14).",
             "    Process  1  #1: error: unit 1 'Sand': It has the number of unit 1 'Cut' (line "
             "135).",
             "    Process  1  #1: warning: unit 1 'Sand': Nothing leads to it, and its scenario "
             "begins with unit 1 'Cut' (line 135) already.",
             "  Link  5: error: link 5 'Cut to Sand': Its destination 2 is neither a unit nor a "
             "junction of the scenario."}},
        Row{"OneJunctionIdTwice",
            With(ModelOf({.scenarios = Fork("Async. AND")}), {{"ID  J12", "ID  J11"}}),
            {"  Junction  12: error: junction 12 'J11': It has the ID of junction 11 'J11' (line "
             "222), so that the links of the two are mixed up in the plan."}},
        OfScenarios("CircleOfDecompositions",
                    Scenario("1", "Shop", "", Unit("1", "Cut")) + "|" +
                        Scenario("2", "Left", "3", Unit("2", "Sand")) + "|" +
                        Scenario("3", "Right", "2", Unit("3", "Sand")),
                    {"Scenario  2: error: scenario 2 'Left': It is part of a circle of "
                     "decompositions: scenario 2 'Left', scenario 3 'Right'."}),
        Row{"CircleOfJunctions",
            ModelOf({.scenarios = Fork("Async. AND", "",
                                       Link("27", "J11", "J12") + Link("28", "J12", "J11"))}),
            {"    Process  1  #2: warning: unit 2 'Sand': It is part of a circle of links, so that "
             "its tasks wait for each other: junction 11 'J11', unit 2 'Sand', junction 12 'J12'.",
             "  Junction  11: error: junction 11 'J11': It is part of a circle of junctions, which "
             "ends the translation: junction 11 'J11', junction 12 'J12'."},
            true},
        OfScenarios("CircleOfUnits",
                    Scenario("1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand"), "",
                             Link("5", "1", "2") + Link("6", "2", "1")),
                    {"    Process  1  #1: warning: unit 1 'Cut': It is part of a circle of links, "
                     "so that its tasks wait for each other: unit 1 'Cut', unit 2 'Sand'."}),
        Row{"LinkWithoutId",
            With(ModelOf({.scenarios = Fork("Async. AND")}),
                 {{"ID  1|    Type:  Precedence", "ID  |    Type:  Precedence"}}),
            {"  Link  21: error: link 21 'Cut to J11': It gives no ID of its own, and the 'J12' "
             "that "
             "it takes over is no number.",
             NotChecked(268)},
            true},
        Row{"ScenarioThatAFactLeavesOut",
            ModelOf({.facts = Fact("1", "Choose Yard"),
                     .scenarios = Scenario("1", "Shop", "", Unit("1", "Cut")) + "|" +
                                  Scenario("2", "Yard", "", Unit("2", "Sand"))}),
            {"Scenario  1: warning: scenario 1 'Shop': Nothing of it reaches the plan, since "
             "another scenario is chosen."}},
        Row{"PathFactWithoutPath",
            ModelOf({.facts = Fact("1", "PathAt", "Roof|"), .scenarios = Fork("XOR", kPathFact)}),
            {"  Junction  11: warning: junction 11 'J11': The glossary of its path fact names no "
             "link and junction, so that all its paths go to the plan."}},
        Row{"PathFactCutShort",
            ModelOf({.facts = Fact("1", "PathAt", "Take L2 until |"),
                     .scenarios = Fork("XOR", kPathFact)}),
            {"  Junction  11: error: junction 11 'J11': The glossary of its path fact can't be "
             "read, which ends the translation."},
            true},
        Row{"CircleBehindPrunedPath",
            ModelOf({.facts = Path("2", "99"),
                     .scenarios = Fork("XOR", kPathFact,
                                       Link("27", "3", "4") + Link("28", "4", "3"))}),
            {"    Process  1  #3: warning: unit 3 'Cut': It is part of a circle of links, so that "
             "its tasks wait for each other: junction 12 'J12', unit 4 'Sand', unit 3 'Cut'.",
             "  Junction  11: warning: junction 11 'J11': Its path fact names the junction 'J99', "
             "which its scenario doesn't have, so that all behind the other paths is left out.",
             "  Junction  11: error: junction 11 'J11': The links behind the paths that are left "
             "out run in a circle, which ends the translation."},
            true},
        OfScenarios("SeveralTopScenarios",
                    Scenario("1", "Shop", "", Unit("1", "Cut")) + "|" +
                        Scenario("2", "Yard", "", Unit("2", "Sand")),
                    {"Scenario  1: error: scenario 1 'Shop': One of the scenarios 'Shop', 'Yard' "
                     "has to be chosen, and no fact chooses the last one."}),
        OfScenarios("SecondGroupOfDecompositions",
                    Scenario("1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand"), "",
                             Link("9", "1", "2")) +
                        "|" + Scenario("2", "A", "1", Unit("3", "Cut")) + "|" +
                        Scenario("3", "B", "1", Unit("4", "Cut")) + "|" +
                        Scenario("4", "C", "2", Unit("5", "Cut")) + "|" +
                        Scenario("5", "D", "2", Unit("6", "Cut")),
                    {"Scenario  2: error: scenario 2 'A': One of the scenarios 'A', 'B' has to be "
                     "chosen, and no fact chooses the last one.",
                     "Scenario  4: error: scenario 4 'C': It is one of several decompositions of a "
                     "unit, as scenario 2 'A' (line 205) is; a second choice of this kind ends "
                     "the translation."},
                    true),
        Row{"PartnerNotSent",
            With(ModelOf({.facts = Path("2", "12"), .scenarios = Fork("XOR", kPathFact)}),
                 {{"Fan In|    Type:  XOR", "Fan In|    Type:  Sync. AND"}}),
            {"  Junction  12: error: junction 12 'J12': unit 3 'Cut' (line 193) isn't sent to the "
             "plan, but is to start or finish with others of this junction, which ends the "
             "translation."},
            true},
        Row{"NoteTooLong",
            ModelOf({.processes = Process("1", "Cut", std::string(20000, 'x') + "|") +
                                  Process("2", "Sand", "Short|")}),
            {"Process  1: error: process 1 'Cut': Its glossary has 20002 characters, more than "
             "the note of a task takes, which ends the translation.",
             "Object  1: note: object 1 'Saw': It gives no glossary of its own; what process 2 "
             "'Sand' (line 39) gives is taken over."},
            true},
        OfText(
            "Apostrophe", "      Name:  Sand", "      Name:  Ada's plank",
            {"    Process  1  #2: error: unit 2 'Ada's plank': Its name holds an apostrophe, "
             "which ends the translation.",
             "    Process  1  #2: error: unit 2 'Ada's plank': No process of the pool has its "
             "name, which ends the translation.",
             "  Link  5: warning: link 5 'Cut to Sand': Its destination is called 'Sand', but its "
             "number is that of unit 2 'Ada's plank' (line 156); the plan goes by the number."},
            true),
        OfText(
            "CycleTimeBeyondTheCalendar", "Cycle-Time:  2", "Cycle-Time:  999999",
            {"    Process  1  #1: error: unit 1 'Cut': Its cycle time of 999999 days is beyond the "
             "calendar, which ends the translation."},
            true),
        Row{"ValuesCarriedOver",
            ModelOf({.objects = Object("1", "Saw", "Quantity:  2|Alias:  SAW|") +
                                Object("2", "Oil", "")}),
            {"Object  2: note: object 2 'Oil': It gives no quantity, no alias, no property list "
             "of its own; what object 1 'Saw' (line 64) gives is taken over.",
             "Object  2: warning: object 2 'Oil': No unit uses this object."}},
        OfScenarios("CycleTimeCarriedOver",
                    Scenario("1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand", ""), "",
                             Link("5", "1", "2")),
                    {"    Process  1  #2: note: unit 2 'Sand': It gives no cycle time, no labor "
                     "rule of its own; what unit 1 'Cut' (line 135) gives is taken over."}),
        Row{"FanOutsWithoutFact",
            ModelOf({.scenarios = Fork("XOR")}),
            {"  Junction  11: warning: junction 11 'J11': It has no path fact, so that all its "
             "paths go to the plan."}},
        Row{"PathFactNamesNothing",
            ModelOf({.facts = Path("7", "99"), .scenarios = Fork("XOR", kPathFact)}),
            {"  Junction  11: warning: junction 11 'J11': Its path fact names the link '7', which "
             "doesn't lead out of it, so that no path is kept.",
             "  Junction  11: warning: junction 11 'J11': Its path fact names the junction 'J99', "
             "which its scenario doesn't have, so that all behind the other paths is left out."}},
        OfScenarios("JunctionsThatJoinNothing",
                    Scenario("1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand"),
                             Junction("11", "J11", "Fan Out", "Async. AND") +
                                 Junction("12", "J12", "Fan In", "Async. AND"),
                             Link("5", "1", "J11") + Link("6", "J11", "2") + Link("7", "2", "J12")),
                    {"  Junction  11: warning: junction 11 'J11': It has one way in and one way "
                     "out, so that it joins nothing.",
                     "  Junction  12: warning: junction 12 'J12': It dangles: it has 1 way in and "
                     "no ways out."}),
        OfScenarios("NothingLeadsToUnit",
                    Scenario("1", "Shop", "", Unit("1", "Cut") + Unit("2", "Sand")),
                    {"    Process  1  #2: warning: unit 2 'Sand': Nothing leads to it, and its "
                     "scenario begins with unit 1 'Cut' (line 135) already."}),
        OfText(
            "ObjectOutsideThePool", "1  (Saw)", "7  (Axe)",
            {"    Process  1  #1: warning: unit 1 'Cut': Its object 7 'Axe' is not in the object "
             "pool, so that the plan doesn't have it."}),
        Row{"CycleTimesThatAreReadOtherwise",
            With(Blank("Cycle-Time:  2", "Cycle-Time:  1,5"),
                 {{"Cycle-Time:  2", "Cycle-Time:  -2"}}),
            {"    Process  1  #1: warning: unit 1 'Cut': Commas don't count in its cycle time "
             "'1,5'; the plan takes 15.00 days.",
             "    Process  1  #2: warning: unit 2 'Sand': Its cycle time '-2' is negative, so that "
             "its task ends before it starts."}},
        Row{"CycleTimes",
            With(Blank("Cycle-Time:  2", "Cycle-Time:  Norm(3,1)"),
                 {{"Cycle-Time:  2", "Cycle-Time:  "}}),
            {"    Process  1  #1: warning: unit 1 'Cut': Its cycle time 'Norm(3,1)' is no number; "
             "the plan takes one day.",
             "    Process  1  #2: warning: unit 2 'Sand': It has no cycle time; the plan takes one "
             "day."}},
        OfText("UnknownAlias", "Labor-Rule:  SAW#1", "Labor-Rule:  SAW#1 AND BOY#2",
               {"    Process  1  #1: warning: unit 1 'Cut': Its labor rule names 'BOY', which is "
                "the alias of no object."}),
        OfScenarios("ScenarioOfNoUnit",
                    Scenario("1", "Shop", "", Unit("1", "Cut")) + "|" +
                        Scenario("2", "Yard", "7", Unit("2", "Sand")),
                    {"Scenario  2: warning: scenario 2 'Yard': There is no unit 7 that it could "
                     "decompose, so that its units end up behind the others of the plan, outside "
                     "its outline."}),
        OfText("CharactersBeyondTheCodePage", "  Creator:  Ada|", "  Creator:  A\x81\x64\xE9|",
               {"  Creator:  A\x81\x64\xE9: warning: The line holds the code 81 (hexadecimal), "
                "which the code page Windows-1252 has no character for."}),
        OfText("SavedInUtf8", "  Creator:  Ada|", "  Creator:  \xC3\x81\x64|",
               {"  Creator:  \xC3\x81\x64: warning: The line is written in UTF-8, so that each "
                "letter beyond ASCII is read as two or more characters."})),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace merivane::test
