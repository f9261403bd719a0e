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
  EXPECT_EQ(Column("Parent_Num", "Scenario"), "12|0|0|12");
  EXPECT_EQ(Column("Parent", "Scenario"), "Build (old|Build (old|Build (old|Null");
  EXPECT_EQ(Column("Type", "Scenario"), "1 P|2 P|3 (|4 P");
  EXPECT_EQ(Column("Creator", "Scenario"), "Ada|Ada|Ada|Ada");
  EXPECT_THAT(read("  Parent: #("), ElementsAre(Box(kInvalidProcedureCall)));
  EXPECT_THAT(read("  Parent: #1("), ElementsAre(Box(kTypeMismatch)));
}

TEST_F(ReaderScenarios, ScenarioWithoutParentTakesTheTypeOfTheOneBefore) {
  const std::string child =
      With(kScenario, {{"  Creator:", "  Parent:  #1 (Sand)|  Type:  Role View|  Creator:"},
                       {"End  Scenario|", "  x decomp-rightmost:  7|End  Scenario|"}});
  const std::string last = With(kScenario, {{"  Referent List|", "  Referent List|Ship|"}});
  EXPECT_THAT(ReadScenarios(kScenario + "|" + child + "|" + last), IsEmpty());
  EXPECT_EQ(Column("Type", "Scenario"), "Null|Role View|Role View");
  EXPECT_EQ(Column("Parent", "Scenario"), " |Sand| ");
  EXPECT_EQ(Column("Decomp_rightmost", "Scenario"), "Null|7|Null");
  EXPECT_EQ(Column("Referent_List", "Scenario"), " | |Ship\r\n");
}

TEST_F(ReaderScenarios, ListsMayBeEmptyAndNumbersMayNot) {
  EXPECT_THAT(ReadScenarios(With(kScenario, {{"|" + kOccurrence, ""},
                                             {"|" + kJunction, ""},
                                             {kLink, ""},
                                             {"Revision Number  1", "Revision Number  2.5"}})),
              IsEmpty());
  EXPECT_EQ(Column("Revision_Number", "Scenario"), "2.5");
  EXPECT_EQ(CountRows(Model(), "Activity_in_Scenario"), 0u);
  EXPECT_THAT(ReadWith("  ID  1|", "  ID  |"), ElementsAre(Box(kTypeMismatch)));
}

TEST_F(ReaderScenarios, SimulationValuesStandInTwoLinesAndCarryOver) {
  const auto occurrence = [](const std::string& objects) {
    const std::string_view list = "        Object Occurrence List|";
    return With(kOccurrence, {{list, std::string(list) + objects}});
  };
  const std::string swapped =
      With(kObjectOccurrence,
           {{"Cycle-Time:  2.5|Labor-Rule:  SAW#2", "Labor-Rule:  OAR#1|Cycle-Time:  4"}});
  const std::string empty = With(kObjectOccurrence, {{"(Plank)", "()"}, {"SAW#2", ""}});
  EXPECT_THAT(
      ReadWith(kOccurrence, occurrence("") + occurrence(kObjectOccurrence + kBareObjectOccurrence) +
                                occurrence(swapped) + occurrence(empty)),
      IsEmpty());
  EXPECT_EQ(Column("Duration", "Activity_in_Scenario"), "Null|2.5|2.5|2.5");
  EXPECT_EQ(Column("Labor_Rule", "Activity_in_Scenario"), "Null|SAW#2|SAW#2|");
  EXPECT_EQ(Column("Object_Name", "Object_in_Activity_in_Scenario"), "Plank|Brush|Plank|Plank");
  EXPECT_EQ(Column("Labor_Rule", "Object_in_Activity_in_Scenario"), "SAW#2|SAW#2|SAW#2|Null");
  EXPECT_EQ(Rows(Model(), "select Property_List from Object_in_Activity_in_Scenario")[1][0],
            Value("                Glossary\r\nSim_Entity\r\nCycle-Time:  2.5\r\n"
                  "Labor-Rule:  SAW#2\r\n                End  Glossary\r\n"));
}

TEST_F(ReaderScenarios, PlacementIsTakenWhenNumericAndCarriesOver) {
  const std::string occurrence =
      With(kOccurrence,
           {{"Ref:  |", "Ref:  |      USER PLACEMENT COLUMN:  3|      User Placement Row:  4|"}});
  const std::string junction = With(
      kJunction, {{"    Glossary",
                   "    User Placement Column:  left|    User Placement Row:  -5|    Glossary"}});
  ReadScenarios(With(kScenario, {{kOccurrence, occurrence + kOccurrence}, {kJunction, junction}}));
  EXPECT_EQ(Column("Column", "Activity_in_Scenario"), "3|3");
  EXPECT_EQ(Column("Row", "Activity_in_Scenario"), "4|4");
  EXPECT_EQ(Column("Column", "Junctions_in_Scenario"), "3");
  EXPECT_EQ(Column("Row", "Junctions_in_Scenario"), "-5");
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
  EXPECT_THAT(
      ReadWith(kJunction,
               With(kJunction, {{"      Fact List|", "      Fact List|" + facts}}) + kJunction),
      IsEmpty());
  EXPECT_EQ(Column("Fact_Num", "Facts_in_Junction"), "12|0|0|7");
  EXPECT_EQ(Column("Fact_Name", "Facts_in_Junction"), "Pick|Pick|Late|Late");
  EXPECT_EQ(Column("Note_List", "Junctions_in_Scenario"), " | ");
  EXPECT_EQ(Column("Fact_List", "Junctions_in_Scenario"),
            "        12  (Pick)\r\n        x  none\r\n        (Late)\r\n        7  )Odd(\r\n| ");
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
  for (const char* end : {"#11 (Junction, J1)", "#11  Junction J1)", "#11  (Junction J1)",
                          "#11  (Junction, J1", "#11  (Junction,)"}) {
    EXPECT_THAT(ReadWith("#11  (Junction, J1)", end), ElementsAre(Box(kInvalidProcedureCall)))
        << end;
  }
}

}  // namespace
}  // namespace merivane::test
