// Summary and pools.
#include "reader_fixture.h"

namespace merivane::test {

namespace {

class ReaderPools : public ReaderTest {};

TEST_F(ReaderPools, SummaryStartsAtTheThirdLineOrTheFourthAndEmptyFieldsStayNull) {
  const std::string company(101, 'c');
  const std::string third =
      With(kModel, {{"||Project", "|Project"}, {"Yard", company}, {"  Boat", " Boat"}});
  Read(third);
  OpenForModel();
  Read(With(third, {{"|Project", "||Project"}}));
  EXPECT_EQ(Columns("MSP_PROJECTS", {"PROJ_ID", "PROJ_NAME", "PROJ_PROP_COMPANY",
                                     "PROJ_CREATION_DATE", "PROJ_PROP_SUBJECT"}),
            "1; Project 1; " + company.substr(1) + "; 1/2/2003; Null");
}

TEST_F(ReaderPools, NameOfAnAppendedProjectGrowsWhileItIsTaken) {
  State().gOverwriteDb = false;
  Read(kModel);
  State().gMspProjId = 2;
  Read(kModel);
  Read(kModel);
  EXPECT_EQ(Columns("MSP_PROJECTS", {"PROJ_NAME"}), "Boat|Boat(2)|Boat(2)(2)");
}

TEST_F(ReaderPools, EmptyFieldsTakeTheValuesOfTheRecordBefore) {
  const std::string first = With(kProcess, {{"Process  1", "Process  12345"},
                                            {"Sand the hull", std::string(251, 'n')},
                                            {"Creator:  ", "Creator:  Eve"},
                                            {"  Glossary|", "  Glossary|Fine.|"},
                                            {"  ID:  1", "  ID:  7"}});
  const std::string second =
      With(kProcess, {{"Sand the hull", ""}, {"ID:  1", "ID:  "}, {"Glossary|", "Glossary||"}});
  Read(With(kModel, {{kProcess, first + second}, {"  Property List|", "  Property List|own|"}}));
  const std::string name(250, 'n');
  EXPECT_EQ(Columns("Activity_Pool",
                    {"Num", "Name", "Creator", "Glossary", "Property_List", "ID", "Ref"}),
            "1234|1; " + name + "|" + name +
                "; Eve|Eve; Fine.\r\n|Fine.\r\n; own\r\n|own\r\n; 7|7; Null|Null");
  EXPECT_EQ(Columns("Fact_Pool", {"Creator"}), "Null") << "facts take over nothing";
}

TEST_F(ReaderPools, QuantityAndAliasStandBehindTheirKeysAndCarryOver) {
  const std::string painter =
      Behind(With(kObject, {{"Type:  Entity", "Type:  "}}), "  Property List|",
             "Quantity: 9| Quantity:  8|Quantity:  2.5|Alias: X|My Alias:  PAINTER-ONE|");
  EXPECT_THAT(Read(With(kModel, {{kObject, kObject + painter + kObject}})), IsEmpty());
  EXPECT_EQ(Columns("Object_Pool", {"Quantity", "Alias", "Celvar_Type"}),
            "Null|2.5|2.5; Null|PAINTER-ON|PAINTER-ON; Entity|Entity|Entity");
}

TEST_F(ReaderPools, TextPoolsStopJustAboveTheLimitAndThePropertyPoolIsAWord) {
  std::string states;
  for (int i = 0; i < 70; ++i) states += std::string(998, 's') + "|";
  EXPECT_THAT(Read(Behind(kModel, "State Pool|", states)), IsEmpty());
  EXPECT_EQ(Columns("Misc", {"State_Pool"}).size(), 65'000u);
  EXPECT_EQ(Columns("Misc", {"Property_Pool", "Note_Pool", "Source_Pool"}),
            "No peoperty pool; Paint is wet.\r\n; ");
}

TEST_F(ReaderPools, StartDateIsTheFirstDateBehindItsValue) {
  Read(Behind(kModel, "Property Pool|",
              "Value|1/1/2001|x NAME:  start date|2/2/2002|Values|VALUE|soon|3/3/2003|4/4/2004|"));
  EXPECT_EQ(Columns("MSP_PROJECTS", {"PROJ_OPT_DEF_START_TIME"}), "3/3/2003");
}

TEST_F(ReaderPools, NameThatBreaksTheRulesEndsTheProgram) {
  const std::string quotes = "Merivane requires that UOB names do not have double quotes.";
  const std::string commas = "Merivane requires that Object names do not have commas.";
  const std::string title = "IDEF3 to Project";
  for (const auto& [passage, name, rule, expectedTitle] :
       {std::array{std::string("Sand the hull"), std::string("A \"hull\""), quotes, title},
        {"Plank", "Red, \"wet\"", commas, title + " 2000"},
        {"Plank", "\"wet\"", quotes, title + " 2000"}}) {
    EXPECT_TRUE(EndsProgram([&] { Read(With(kModel, {{passage, name}})); })) << name;
    const Message box = desktop.boxes.at(0);
    EXPECT_EQ(box.text, rule + "  Please change '" + name + "'.");
    EXPECT_EQ(box.title, expectedTitle);
    EXPECT_EQ(desktop.pointer, kPointerDefault);
  }
}

TEST_F(ReaderPools, FieldThatIsNoNumberEndsTheRead) {
  for (const auto& [passage, other] : {std::pair{"Process  1", "Process  one"},
                                       {"End  Process 1||", "End  Process 1|||"},
                                       {"  ID:  1", "  ID:  A1"},
                                       {"Object  1", "Object  "}}) {
    EXPECT_THAT(Read(With(kModel, {{passage, other}})), ElementsAre(Box(kTypeMismatch))) << other;
  }
  EXPECT_THAT(Read(With(kModel, {{"Process  1", "Process  9E9"}})), ElementsAre(Box(kOverflow)));
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
