// Scenarios, occurrences, junctions and links.
#include "reader_fixture.h"

namespace merivane::test {

namespace {

class ReaderScenarios : public ReaderTest {
 protected:
  // One scenario in which a part is changed.
  std::vector<std::string> ReadWith(std::string_view part, std::string_view other) {
    return ReadScenarios(With(kScenario, {{part, other}}));
  }
};

TEST_F(ReaderScenarios, ParentLineGivesNumberNameAndType) {
  const auto read = [&](const std::string& parent) {
    return ReadWith("  Creator:", parent + "|  Type:  " + parent.substr(0, 3) + "|  Creator:");
  };
  for (const char* parent : {"1 Parent:  #12 (Build (old))", "2 Parent:  #12", "3 (Parent:) #12",
                             "4 Parent:  #12  (Build"}) {
    EXPECT_THAT(read(parent), IsEmpty()) << parent;
  }
  EXPECT_EQ(Columns("Scenario", {"Parent_Num", "Parent", "Type", "Creator"}),
            "12|0|0|12; Build (old|Build (old|Build (old|Null; 1 P|2 P|3 (|4 P; Ada|Ada|Ada|Ada");
  EXPECT_THAT(read("  Parent: #("), ElementsAre(Box(kInvalidProcedureCall)));
  EXPECT_THAT(read("  Parent: #1("), ElementsAre(Box(kTypeMismatch)));
}

TEST_F(ReaderScenarios, ScenarioWithoutParentTakesTheTypeOfTheOneBefore) {
  const std::string child =
      With(kScenario, {{"  Creator:", "  Parent:  #1 (Sand)|  Type:  Role View|  Creator:"},
                       {"End  Scenario|", "  x decomp-rightmost:  7|End  Scenario|"}});
  const std::string last = Behind(kScenario, "  Referent List|", "Ship|");
  EXPECT_THAT(ReadScenarios(kScenario + "|" + child + "|" + last), IsEmpty());
  EXPECT_EQ(Columns("Scenario", {"Type", "Parent", "Decomp_rightmost", "Referent_List"}),
            "Null|Role View|Role View;  |Sand| ; Null|7|Null;  | |Ship\r\n");
}

TEST_F(ReaderScenarios, ListsMayBeEmptyAndNumbersMayNot) {
  EXPECT_THAT(ReadScenarios(With(kScenario, {{"|" + kOccurrence, ""},
                                             {"|" + kJunction, ""},
                                             {kLink, ""},
                                             {"Revision Number  1", "Revision Number  2.5"}})),
              IsEmpty());
  EXPECT_EQ(Columns("Scenario", {"Revision_Number"}), "2.5");
  EXPECT_EQ(CountRows(Model(), "Activity_in_Scenario"), 0u);
  EXPECT_THAT(ReadWith("  ID  1|", "  ID  |"), ElementsAre(Box(kTypeMismatch)));
}

TEST_F(ReaderScenarios, SimulationValuesStandInTwoLinesAndCarryOver) {
  const auto occurrence = [](const std::string& objects) {
    return Behind(kOccurrence, "        Object Occurrence List|", objects);
  };
  const std::string swapped =
      With(kObjectOccurrence,
           {{"Cycle-Time:  2.5|Labor-Rule:  SAW#2", "Labor-Rule:  OAR#1|Cycle-Time:  4"}});
  const std::string empty = With(kObjectOccurrence, {{"(Plank)", "()"}, {"SAW#2", ""}});
  EXPECT_THAT(
      ReadWith(kOccurrence, occurrence("") + occurrence(kObjectOccurrence + kBareObjectOccurrence) +
                                occurrence(swapped) + occurrence(empty)),
      IsEmpty());
  EXPECT_EQ(Columns("Activity_in_Scenario", {"Duration", "Labor_Rule"}),
            "Null|2.5|2.5|2.5; Null|SAW#2|SAW#2|");
  EXPECT_EQ(Columns("Object_in_Activity_in_Scenario", {"Object_Name", "Labor_Rule"}),
            "Plank|Brush|Plank|Plank; SAW#2|SAW#2|SAW#2|Null");
  EXPECT_EQ(Rows(Model(), "select Property_List from Object_in_Activity_in_Scenario")[1][0],
            Value("                Glossary\r\nSim_Entity\r\nCycle-Time:  2.5\r\n"
                  "Labor-Rule:  SAW#2\r\n                End  Glossary\r\n"));
}

TEST_F(ReaderScenarios, PlacementIsTakenWhenNumericAndCarriesOver) {
  const std::string occurrence =
      Behind(kOccurrence, "Ref:  |", "  USER PLACEMENT COLUMN:  3|      User Placement Row:  4|");
  const std::string junction = Behind(
      kJunction, "Modified:  |", "    User Placement Column:  left|    User Placement Row:  -5|");
  ReadScenarios(With(kScenario, {{kOccurrence, occurrence + kOccurrence}, {kJunction, junction}}));
  EXPECT_EQ(Columns("Activity_in_Scenario", {"Column", "Row"}), "3|3; 4|4");
  EXPECT_EQ(Columns("Junctions_in_Scenario", {"Column", "Row"}), "3; -5");
}

TEST_F(ReaderScenarios, OccurrenceWithoutItsOwnNumberIsPassedOver) {
  EXPECT_THAT(ReadWith("1  #1", "1  "), IsEmpty());
  EXPECT_EQ(CountRows(Model(), "Activity_in_Scenario"), 0u);
  EXPECT_EQ(CountRows(Model(), "Links_in_Scenario"), 1u);
  EXPECT_THAT(ReadWith("1  #1", "1 #1"), ElementsAre(Box(kInvalidProcedureCall)));
  EXPECT_THAT(ReadWith("1  #1", "1  #32768"), ElementsAre(Box(kOverflow)));
}

TEST_F(ReaderScenarios, JunctionFactsAreRowsOfTheirOwn) {
  const std::string facts = "        12  (Pick)|        x  none|        (Late)|        7  )Odd(|";
  EXPECT_THAT(ReadWith(kJunction, Behind(kJunction, "      Fact List|", facts) + kJunction),
              IsEmpty());
  EXPECT_EQ(Columns("Facts_in_Junction", {"Fact_Num", "Fact_Name"}),
            "12|0|0|7; Pick|Pick|Late|Late");
  EXPECT_EQ(Columns("Junctions_in_Scenario", {"Note_List", "Fact_List"}),
            " | ;         12  (Pick)\r\n        x  none\r\n        (Late)\r\n"
            "        7  )Odd(\r\n| ");
}

TEST_F(ReaderScenarios, LinkEndsAreTakenApart) {
  const std::string bare = With(kLink, {{"  Link  21", "  Link  22"},
                                        {"ID  1", "ID  "},
                                        {"Type:  Precedence", ""},
                                        {"|  Property List|  End  Property List|", ""}});
  EXPECT_THAT(ReadWith(kLink, With(kLink, {{"ID  1", "ID  5"}}) + bare), IsEmpty());
  EXPECT_EQ(DumpTable(Model(), "Links_in_Scenario", "where Num = 22"),
            "Num=22 Msp_ProjID=1 Scenario_Num=1 Origin_Num=1 Destination_Num=11 "
            "Origin_Type='Process-Occurrence' Destination_Type='Junction' "
            "Origin_Name='Sand the hull' Destination_Name='J1' ID=5 Type='Precedence' "
            "Fact_List=' ' Constraint_List=' ' Property_List=' ' Processed=0\n");
  const std::string end = "#11  (Junction, J1)";
  for (const char* other : {"#11 (Junction, J1)", "#11  Junction J1)", "#11  (Junction J1)",
                            "#11  (Junction, J1", "#11  (Junction,)"}) {
    EXPECT_THAT(ReadWith(end, other), ElementsAre(Box(kInvalidProcedureCall))) << other;
  }
}

}  // namespace
}  // namespace merivane::test
