#include "model_fixture.h"
#include "runtime/code_page.h"

namespace merivane::test {

namespace {

class WrittenPlan : public ModelFixture {
 protected:
  WrittenPlan() { Scenario(1, "Main"); }

  void Object(int num, const char* name, const char* type, Fields fields = {}) {
    fields.insert(fields.begin(), {{"Num", num}, {"Name", name}, {"Celvar_Type", type}});
    Add("Object_Pool", fields);
  }
  void Requirement(int use, int object, const char* name) {
    Add("Object_in_Activity_in_Scenario",
        {{"Activity_Num", use}, {"Object_Occ_Num", object}, {"Object_Name", name}});
  }
};

TEST_F(WrittenPlan, IsWrittenToFileAndTablesSideBySide) {
  Object(7, "Crane", "Shared Resource", {{"Quantity", 2}, {"Alias", "CR"}});
  Object(8, "Drawing", "Information", {{"Alias", "DR"}});
  Object(9, "Truck", "Transport", {{"Glossary", "Red\r\n"}, {"Alias", "TR"}, {"Creator", "Ann"}});
  Uob(11, 1, {{"Process_Num", 5}, {"Duration", "2.5"}, {"Labor_Rule", "CR 3"}, {"Row", "4"}},
      "First\r\nthen\r\n");
  Uob(12);
  Links({{11, 12}});
  Requirement(11, 7, "Crane");
  Requirement(11, 8, "Drawing");
  Requirement(11, 9, "truck");
  ModelToProject& state = program->modelToProject;
  state.gTextFile = program->files.FreeFile();
  program->files.OpenForInput(state.gTextFile, folder.Write("model.txt", "left open"));
  Translate(mpxPath);
  EXPECT_FALSE(program->files.IsOpen(state.gTextFile));
  EXPECT_TRUE(program->files.IsOpen(state.mpxFileNo));
  const std::string file = ReadFile(mpxPath);
  const std::string calendar = "55,Standard,2,2,2,2,2,2,2\r\n";
  EXPECT_EQ(file.substr(file.find("50,")),
            "50,1,1,Crane,Crane,2,10/h,15/h" + std::string(12, ',') + "\r\n" + calendar +
                "50,2,2,Truck,Truck,1,10/h,15/h" + std::string(12, ',') + "\r\n" +
                "51,\"Red\x7f\"\r\n" + calendar + Records("60")[0] + "\r\n" + Records("61")[0] +
                "\r\n70,1,1,U11,2.50d,Yes,1,," + std::string(33, ',') + ",11\r\n" +
                "71,\"First\x7fthen\x7f\"\r\n75,1,3,60.00h\r\n75,2,1,20.00h\r\n" +
                "70,2,2,U12,1d,Yes,1,,\"1\"" + std::string(33, ',') + ",12\r\n");
  EXPECT_EQ(DumpTable(Model(), "MSP_TASKS", "where TASK_UID = 1"),
            "PROJ_ID=1 TASK_UID=1 TASK_ID=1 TASK_NAME='U11' TASK_DUR=9600 TASK_DUR_FMT=7 "
            "TASK_OUTLINE_LEVEL=1 TASK_OUTLINE_NUM='1' TASK_HAS_NOTES=-1 "
            "TASK_RTF_NOTES=bytes(137) EXT_EDIT_REF_DATA='1' KV7_PROCOCC_HEX=11 KV7_PROC_HEX=5 "
            "KV7_SCENARIO_HEX=1 KV7_PROCOCC_DURATION='2.5' KV7_PROCOCC_LABOR_RULE='CR 3' "
            "KV7_PROCOCC_SEND_TO_PROJECT=1 KV7_PROCOCC_PROCESSED=0 KV7_PROCOCC_OUTLINE=1 "
            "KV7_PROCOCC_P_ORDER='00011' KV7_PROCOCC_ROW='4' KV7_PROCOCC_PID=1 "
            "KV7_SCNEARIO_HEX=1\n");
  EXPECT_EQ(ColumnOf(Model(), "ASSN_WORK", "MSP_ASSIGNMENTS"), (Values{3600000.0, 1200000.0}));
}

TEST_F(WrittenPlan, TakesDurationAndUnitsFromTheTextsOfALeaf) {
  struct Case {
    Value duration;
    const char* field;
    int days;
    Value rule;
    const char* units;
  };
  const Case cases[] = {{Value(), "1d", 1, "AB 2", "2"},  {"", "1d", 1, "AB2", "1"},
                        {"two", "1d", 1, "AB:12", "1"},   {"2.5", "2.50d", 2, "XY 3, AB 4", "4"},
                        {"3.5", "3.50d", 4, "ab 2", "1"}, {"0.4", "0.40d", 0, "AB", "1"}};
  Object(7, "Crane", "Dedicated Resource", {{"Alias", "AB"}});
  Object(8, "No alias", "Dedicated Resource");
  int use = 0;
  for (const Case& c : cases) {
    Uob(++use, 1, {{"Duration", c.duration}, {"Labor_Rule", c.rule}});
    Requirement(use, 7, "Crane");
    Requirement(use, 8, "No alias");
  }
  Scenario(2, "Decomposition", use);
  Translate(mpxPath);
  const Values units = ColumnOf(Model(), "ASSN_UNITS", "MSP_ASSIGNMENTS");
  ASSERT_EQ(units.size(), std::size(cases) - 1) << "the last one has a decomposition";
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(Tasks("TASK_DUR")[i], Value(cases[i].days * 4800)) << cases[i].field;
    EXPECT_EQ(Records("70,")[i].find(std::string(",") + cases[i].field + ",Yes,1,"), 9U);
  }
  for (std::size_t i = 0; i < units.size(); ++i) {
    EXPECT_EQ(units[i], Value(cases[i].units)) << Joined(cases[i].rule);
  }
}

TEST_F(WrittenPlan, CarriesTheLastGlossaryIntoTheNotesBehindIt) {
  Uob(1);
  Uob(2, 1, {}, "Two\xe9\r\n");
  Uob(3);
  Translate(mpxPath);
  const auto note = [](const std::string& glossary) {
    const std::string rtf =
        "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fswiss\\fprq2\\fcharset0 "
        "Arial;}} \\viewkind4\\uc1\\pard\\f0\\fs20 " +
        glossary + "\\par\\par}";
    return Value(Bytes(rtf.begin(), rtf.end()));
  };
  EXPECT_EQ(Tasks("TASK_RTF_NOTES"), (Values{note(""), note("Two\xe9\r\n"), note("Two\xe9\r\n")}));
  EXPECT_EQ(Records("71"), Texts{"71,\"Two\xe9\x7f\""});
}

TEST_F(WrittenPlan, HasADateInTheFileOnlyWhereTheModelHasNoStart) {
  desktop.today = {2004, 2, 9, 3600};
  mpxPath = folder.Path("Pl\xc3\xa4ne.mpx");
  Translate(mpxPath);
  EXPECT_EQ(Records("30"), Texts{"30," + FromUtf8(mpxPath) + ", Vorn,,,2/9/2004"});
  Recordset project;
  project.OpenDynamic("select * from MSP_PROJECTS", &Model());
  project.SetField("KV7_PROJ_START_DATE", "2/3/2003");
  desktop.oemCodePageFailure = RunTimeError(kInvalidProcedureCall);
  project.Update();
  Translate(mpxPath);
  EXPECT_EQ(Records("30"), Texts{});
  EXPECT_EQ(program->codePage, 437);
}

TEST_F(WrittenPlan, EndsWithTheRowsSoFarWhereATaskFails) {
  Uob(1);
  Uob(2, 1, {{"Name", "Unknown process"}});
  EXPECT_EQ(AbortOf(mpxPath), ErrorText(kNoCurrentRecord));
  EXPECT_EQ(Plan(), "U1");
}

TEST_F(WrittenPlan, HoldsTheTaskWhoseNoteIsTooLong) {
  Uob(1);
  Uob(2, 1, {}, std::string(20000, 'x'));
  Uob(3);
  const std::string told = AbortOf(mpxPath);
  EXPECT_NE(told.find("bytes, and its size is 20000"), std::string::npos) << told;
  EXPECT_EQ(CountRows(Model(), "MSP_TASKS", "where TASK_UID > 0"), 2U);
  EXPECT_EQ(Tasks("TASK_RTF_NOTES").back(), Value());
  EXPECT_EQ(Tasks("TASK_OUTLINE_NUM"), Values(2)) << "which come behind all tasks";
}

}  // namespace
}  // namespace merivane::test
