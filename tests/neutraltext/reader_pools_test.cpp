// Summary and pools.
#include "reader_fixture.h"

namespace merivane::test {
namespace {

class ReaderPools : public ReaderTest {};

TEST_F(ReaderPools, SummaryFieldsAreCutAndEmptyOnesStayNull) {
  const std::string company(101, 'c');
  Read(With(kModel, {{"Yard", company}, {"  Boat", " Boat"}}));
  EXPECT_EQ(DumpTable(Model(), "MSP_PROJECTS").find("PROJ_ID=1 PROJ_NAME='Project 1' "), 0u);
  EXPECT_EQ(Column("PROJ_PROP_COMPANY", "MSP_PROJECTS"), company.substr(1));
  EXPECT_EQ(Column("PROJ_CREATION_DATE", "MSP_PROJECTS"), "1/2/2003");
  EXPECT_EQ(Column("PROJ_PROP_SUBJECT", "MSP_PROJECTS"), "Null");
}

TEST_F(ReaderPools, CreatorStandsOnTheThirdLineOrOnTheFourth) {
  for (const char* second : {"|Project Summary|", "||Project Summary|"}) {
    EXPECT_THAT(Read(With(kModel, {{"||Project Summary|", second}})), IsEmpty());
  }
  EXPECT_EQ(Column("PROJ_PROP_AUTHOR", "MSP_PROJECTS"), "Ada|Ada");
}

TEST_F(ReaderPools, NameOfAnAppendedProjectGrowsWhileItIsTaken) {
  State().gOverwriteDb = false;
  Read(kModel);
  State().gMspProjId = 2;
  Read(kModel);
  Read(kModel);
  EXPECT_EQ(Column("PROJ_NAME", "MSP_PROJECTS"), "Boat|Boat(2)|Boat(2)(2)");
}

TEST_F(ReaderPools, EmptyFieldsTakeTheValuesOfTheRecordBefore) {
  const std::string name(251, 'n');
  const std::string first = With(kProcess, {{"Process  1", "Process  12345"},
                                            {"Sand the hull", name},
                                            {"Creator:  ", "Creator:  Eve"},
                                            {"  Glossary|", "  Glossary|Fine.|"},
                                            {"  ID:  1", "  ID:  7"}});
  const std::string second = With(
      kProcess, {{"Sand the hull", ""}, {"  ID:  1", "  ID:  "}, {"  Glossary|", "  Glossary||"}});
  Read(With(kModel, {{kProcess, first + second},
                     {"  Property List|", "  Property List|from the project|"}}));
  EXPECT_EQ(Column("Num", "Activity_Pool"), "1234|1");
  EXPECT_EQ(Column("Name", "Activity_Pool"), name.substr(1) + "|" + name.substr(1));
  EXPECT_EQ(Column("Creator", "Activity_Pool"), "Eve|Eve");
  EXPECT_EQ(Column("Glossary", "Activity_Pool"), "Fine.\r\n|Fine.\r\n");
  EXPECT_EQ(Column("Property_List", "Activity_Pool"), "from the project\r\n|from the project\r\n");
  EXPECT_EQ(Column("ID", "Activity_Pool"), "7|7");
  EXPECT_EQ(Column("Ref", "Activity_Pool"), "Null|Null");
  EXPECT_EQ(Column("Creator", "Fact_Pool"), "Null") << "facts take over nothing";
}

TEST_F(ReaderPools, QuantityAndAliasStandBehindTheirKeysAndCarryOver) {
  const std::string_view list = "  Property List|";
  const std::string painter =
      With(kObject, {{list,
                      "  Property List|Quantity: 9| Quantity:  8|Quantity:  2.5|Alias: X|"
                      "My Alias:  PAINTER-ONE|"},
                     {"Type:  Entity", "Type:  "}});
  EXPECT_THAT(Read(With(kModel, {{kObject, kObject + painter + kObject}})), IsEmpty());
  EXPECT_EQ(Column("Quantity", "Object_Pool"), "Null|2.5|2.5");
  EXPECT_EQ(Column("Alias", "Object_Pool"), "Null|PAINTER-ON|PAINTER-ON");
  EXPECT_EQ(Column("Celvar_Type", "Object_Pool"), "Entity|Entity|Entity");
}

TEST_F(ReaderPools, TextPoolsStopJustAboveTheLimitAndThePropertyPoolIsAWord) {
  std::string states = "State Pool|";
  for (int i = 0; i < 70; ++i) states += std::string(998, 's') + "|";
  EXPECT_THAT(Read(With(kModel, {{"State Pool|", states}})), IsEmpty());
  EXPECT_EQ(Column("State_Pool", "Misc").size(), 65'000u);
  EXPECT_EQ(Column("Property_Pool", "Misc"), "No peoperty pool");
  EXPECT_EQ(Column("Note_Pool", "Misc"), "Paint is wet.\r\n");
  EXPECT_EQ(Column("Source_Pool", "Misc"), "");
}

TEST_F(ReaderPools, StartDateIsTheFirstDateBehindItsValue) {
  Read(With(kModel, {{"Property Pool|",
                      "Property Pool|Value|1/1/2001|x NAME:  start date|2/2/2002|Values|VALUE|soon|"
                      "3/3/2003|4/4/2004|"}}));
  EXPECT_EQ(Column("PROJ_OPT_DEF_START_TIME", "MSP_PROJECTS"), "3/3/2003");
}

TEST_F(ReaderPools, NameThatBreaksTheRulesEndsTheProgram) {
  const std::string quotes = "Merivane requires that UOB names do not have double quotes.";
  const std::string commas = "Merivane requires that Object names do not have commas.";
  const std::string project = "IDEF3 to Project";
  const struct {
    const char* passage;
    const char* name;
    std::string box;
    std::string title;
  } cases[] = {
      {"Sand the hull", "A \"hull\"", quotes + "  Please change 'A \"hull\"'.", project},
      {"Plank", "Red, \"wet\"", commas + "  Please change 'Red, \"wet\"'.", project + " 2000"},
      {"Plank", "\"wet\"", quotes + "  Please change '\"wet\"'.", project + " 2000"},
  };
  for (const auto& [passage, name, box, title] : cases) {
    desktop.pointer = kPointerHourglass;
    EXPECT_TRUE(EndsProgram([&] { Read(With(kModel, {{passage, name}})); })) << name;
    const Message shown = std::get<ScriptedDesktop::ShownMessage>(desktop.shown.at(0)).message;
    EXPECT_EQ(shown.text, box);
    EXPECT_EQ(shown.title, title);
    EXPECT_EQ(shown.icon, MessageIcon::kCritical);
    EXPECT_EQ(desktop.pointer, kPointerDefault);
  }
}

TEST_F(ReaderPools, FieldThatIsNoNumberEndsTheRead) {
  const struct {
    const char* passage;
    const char* other;
    int error;
  } cases[] = {
      {"Process  1", "Process  one", kTypeMismatch},
      {"Process  1", "Process  9E9", kOverflow},
      {"End  Process 1||", "End  Process 1|||", kTypeMismatch},
      {"  ID:  1", "  ID:  A1", kTypeMismatch},
      {"Object  1", "Object  ", kTypeMismatch},
  };
  for (const auto& [passage, other, error] : cases) {
    EXPECT_THAT(Read(With(kModel, {{passage, other}})), ElementsAre(Box(error))) << other;
  }
  EXPECT_EQ(CountRows(Model(), "Object_Pool"), 0u);
}

TEST_F(ReaderPools, UnsettledProjectGetsNoPoolRows) {
  State().gMspProjId = 0;
  EXPECT_THAT(Read(With(kModel, {{kScenario, ""}})), IsEmpty());
  EXPECT_EQ(CountRows(Model(), "Activity_Pool") + CountRows(Model(), "Misc"), 0u);
  EXPECT_EQ(CountRows(Model(), "MSP_PROJECTS"), 1u);
}

}  // namespace
}  // namespace merivane::test
