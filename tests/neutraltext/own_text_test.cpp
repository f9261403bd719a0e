// Texts in the written form, read through the adapter.
#include "neutraltext/modGlobal.h"
#include "reader_fixture.h"

namespace merivane::test {

namespace {

class OwnTextForm : public ReaderTest {
 protected:
  OwnTextForm() { State().takesOwnText = true; }

  static std::string Expected(const std::string& name) {
    return ReadFile(MERIVANE_SAMPLES "/../tests/neutraltext/expected/" + name);
  }
  // The pools of one example and the scenarios of another.
  static std::string WithScenarios() {
    const std::string text = Expected("plan_of_another_program.txt");
    return text.substr(0, text.find("Scenario List")) + Expected("scenarios_of_a_model.txt");
  }
};

TEST_F(OwnTextForm, IsToldByTheHeadOfTheText) {
  const auto isOwn = [this](const std::string& text) {
    return IsOwnText(folder.Write("text.txt", text));
  };
  const std::string own = Expected("plan_of_another_program.txt");
  EXPECT_TRUE(isOwn(own));
  EXPECT_TRUE(isOwn(With(own, {{"  Creator: ", "  Creator:  "}})));  // of a name after a blank
  EXPECT_FALSE(isOwn(ReadFile(MERIVANE_SAMPLES "/festival.txt")));
  EXPECT_FALSE(isOwn(With(ReadFile(MERIVANE_SAMPLES "/festival.txt"),
                          {{"  Creator:  ", "  Creator: "}, {"Used At:  ", "Used At: "}})));
  EXPECT_FALSE(isOwn(""));
  EXPECT_FALSE(IsOwnText(folder.Path("none.txt")));
}

TEST_F(OwnTextForm, PlanOfAnotherProgramIsRead) {
  EXPECT_THAT(ReadBytes(Expected("plan_of_another_program.txt")), IsEmpty());
  EXPECT_EQ(Columns("Scenario", {"Num", "Parent_Num", "Parent", "ID"}), "1|2; 0|2;  |Build; 1|1");
  EXPECT_EQ(Columns("Activity_in_Scenario", {"Use_Num", "Scenario_Num", "Process_Num", "Name"}),
            "1|2|3; 1|1|2; 1|2|3; Design|Build|Walls");
  EXPECT_EQ(Columns("Links_in_Scenario", {"Origin_Num", "Origin_Type", "Origin_Name",
                                          "Destination_Num", "Destination_Name", "ID"}),
            "1; Process-Occurrence; Design; 2; Build; 1");
  EXPECT_EQ(Columns("Object_Pool", {"Name", "Quantity"}),
            "Mason|Bricks|Crane|Van; 1.5|Null|Null|Null");
}

// With what an importing tool knows and the reader does not: no blanks in front, "Sync. And",
// names that are left out, a label in small letters.
TEST_F(OwnTextForm, JunctionsOfAPlanGetTheirNamesAndNumbersOfTheirOwn) {
  const std::string list = "Junction List\n";
  const std::string junction =
      "Junction 20500\nID J1\nCardinality:  Fan Out\nType:  Sync. And\nDate Created:\n"
      "Last Modified:\nUser Placement Column:  -1\nUser Placement Row:  -1\n"
      "glossary\nEnd  Glossary\nElaboration\n  Object Occurrence List\n"
      "  End  Object Occurrence List\n  Fact List\n  End  Fact List\n"
      "  Constraint List\n  End  Constraint List\nEnd  Elaboration\nNote List\n"
      "End  Note List\nProperty List\nEnd  Property List\nEnd  Junction\n";
  const std::string text = Expected("plan_of_another_program.txt");
  ASSERT_THAT(ReadBytes(With(
                  text, {{list, list + junction}, {"  Destination  #2", "  Destination  #20500"}})),
              IsEmpty());
  EXPECT_EQ(Columns("Junctions_in_Scenario", {"Num", "ID", "Type", "Column", "Glossary"}),
            "20500; J1; Sync. AND; -1; Null");
  EXPECT_EQ(
      Columns("Links_in_Scenario", {"Destination_Num", "Destination_Type", "Destination_Name"}),
      "20500; Junction; J1");
}

// An empty field is meant: the rows of a written model took over what they had to already.
TEST_F(OwnTextForm, NothingIsTakenOverFromTheRecordBefore) {
  ASSERT_THAT(ReadBytes(WithScenarios()), IsEmpty());
  EXPECT_EQ(Columns("Activity_in_Scenario", {"Use_Num", "Column", "Fact_List", "Duration"}),
            "31|32; 3|Null; f\r\n|Null; 2.5|1.0");
  EXPECT_EQ(Columns("Junctions_in_Scenario", {"Num", "Cardinality", "Glossary"}),
            "40|41; Fan Out|Null; g\r\n|Null");
}

// It ends where the text does, as any other.
TEST_F(OwnTextForm, TextCutAtAnyLineIsReadSoFar) {
  const std::string text = WithScenarios();
  for (std::size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n', at + 1)) {
    EXPECT_LE(ReadBytes(text.substr(0, at + 1)).size(), 1U) << at;
  }
}

}  // namespace
}  // namespace merivane::test
