// What the writers wrote, read again.
#include <gmock/gmock.h>

#include <algorithm>

#include "round_fixture.h"

namespace merivane::test {

namespace {

// What the writers take from a database, and what the reader makes of the text, as statements.
struct Part {
  const char* what;
  std::string written;
  std::string read;
};

struct Columns {
  std::string written;
  std::string read;
};

std::string Select(const std::string& columns, const std::string& from) {
  return "select " + columns + " from " + from;
}

const std::string kHead = "Num, Name, Creator, Date_Created, Last_Modified, Glossary";
const std::string kPoolLists = "Note_List, Source_List";
const std::string kLists = "Object_Occ_List, Fact_List, Constraint_List";

const std::string kOfResources =
    "Celvar_Type in ('Shared Resource', 'Dedicated Resource', 'Transport')";

// `tasks`: those whose units the writers write; `ofUnits`: what else is compared of a unit.
std::vector<Part> PartsOf(const std::string& tasks, const Columns& ofUnits,
                          const std::string& ofLinks, const std::string& ofJunctions) {
  const std::string sent = " from MSP_TASKS where " + tasks + ")";
  const std::string inScenarios = " where Scenario_Num in (select KV7_SCENARIO_HEX" + sent;
  const std::string inUnits = " where Activity_Num in (select KV7_PROCOCC_HEX" + sent;
  const std::string ends =
      "(select Num from Junctions_in_Scenario union select KV7_PROCOCC_HEX" + sent;
  const std::string scenario =
      "Num, Name, Parent_Num, ifnull(nullif(ID, 0), 1), ifnull(Revision_Number, 1.0),"
      " ifnull(Review_Status, 'Working'), Date_Created, Last_Modified, Purpose, Viewpoint, Context,"
      " Description, Referent_List, " +
      kPoolLists + ", " + kLists;
  const std::string junction =
      "Num, Scenario_Num, Cardinality, Type, Date_Created, Last_Modified,"
      " [Column], [Row], Glossary, Note_List, Property_List, " +
      kLists + ofJunctions;
  const std::string link =
      "Num, Scenario_Num, Origin_Num, Destination_Num, ifnull(ID, 1), ifnull(Type, 'Precedence'),"
      " Glossary, Property_List, " +
      kLists + ofLinks;
  const auto same = [](const char* table, const std::string& columns, const std::string& rows) {
    return Part{table, Select(columns, table + rows), Select(columns, table)};
  };
  return {
      {"processes",
       "select distinct Num, TASK_NAME, Creator, Date_Created, Last_Modified, Glossary, " +
           kPoolLists + ", " + kLists +
           " from Activity_Pool join MSP_TASKS on KV7_PROC_HEX = Num where TASK_UID > 0",
       Select(kHead + ", " + kPoolLists + ", " + kLists, "Activity_Pool")},
      {"resources",
       "select KV7_OBJ_HEX, RES_NAME, KV7_OBJ_CREATOR, KV7_OBJ_GLOSSARY, KV7_OBJ_NOTE_LIST,"
       " KV7_OBJ_SOURCE_LIST, KV7_OBJ_DUNMAR_TYPE, KV7_OBJ_CELVAR_TYPE, RES_MAX_UNITS"
       " from MSP_RESOURCES where RES_UID > 0",
       "select Num, Name, Creator, Glossary, Note_List, Source_List, Dunmar_Type, Celvar_Type,"
       " Quantity from Object_Pool where " +
           kOfResources},
      {"other objects",  // of a model without resources none is written
       Select(kHead + ", Dunmar_Type, Celvar_Type",
              "Object_Pool where Send_to_Project = 0 and (select count(*) from MSP_RESOURCES"
              " where RES_UID > 0)"),
       Select(kHead + ", Dunmar_Type, Celvar_Type", "Object_Pool where not " + kOfResources)},
      same("Fact_Pool", kHead + ", Property_List, " + kPoolLists, ""),
      {"pools", Select("ifnull(max(Property_Pool), 'No peoperty pool')", "Misc"),
       Select("Property_Pool", "Misc")},
      same("Scenario", scenario, " where Num in (select KV7_SCENARIO_HEX" + sent),
      {"units",
       "select KV7_PROCOCC_HEX, KV7_SCENARIO_HEX, TASK_NAME, KV7_PROCOCC_REF, KV7_PROCOCC_COLUMN,"
       " KV7_PROCOCC_ROW, KV7_PROCOCC_FACT_LIST, KV7_PROCOCC_CONSTRAINT_LIST" +
           ofUnits.written + " from MSP_TASKS where " + tasks,
       "select Use_Num, Scenario_Num, Name, Ref, [Column], [Row], Fact_List, Constraint_List" +
           ofUnits.read + " from Activity_in_Scenario"},
      same("Object_in_Activity_in_Scenario", "Activity_Num, Scenario_Num, Object_Occ_Num", inUnits),
      same("Junctions_in_Scenario", junction, inScenarios),
      same("Facts_in_Junction", "Junction_Num, Junction_ID, Fact_Num, Fact_Name, Scenario_Num",
           inScenarios + " and Junction_Num in (select Num from Junctions_in_Scenario)"),
      same("Links_in_Scenario", link,
           inScenarios + " and Origin_Num in " + ends + " and Destination_Num in " + ends),
      same("MSP_PROJECTS",
           "PROJ_ID, ifnull(PROJ_NAME, 'Project 1'), PROJ_PROP_AUTHOR, PROJ_PROP_COMPANY,"
           " PROJ_PROP_SUBJECT, PROJ_CREATION_DATE, PROJ_LAST_SAVED, KV7_PROJ_PROPERTY_LIST",
           "")};
}

// By a plan's outline the writers get down to its second level.
const std::string kOutlined = "TASK_UID > 0 and TASK_OUTLINE_LEVEL < 3";
const Columns kProcessNumber = {", KV7_PROC_HEX", ", Process_Num"};
const std::vector<Part> kOfTranslated =
    PartsOf(kOutlined, kProcessNumber,
            ", Origin_Type, Origin_Name, Destination_Type, Destination_Name", ", ID");
const std::vector<Part> kOfMerged = PartsOf(kOutlined, kProcessNumber, "", "");
const std::vector<Part> kOfRebuilt = PartsOf("TASK_UID > 0", {}, "", "");

// A text says the same with and without a line end behind it, and nothing by a blank.
std::string Shortest(std::string text) {
  if (text.ends_with("\r\n")) text.resize(text.size() - 2);
  return text.empty() || text == " " ? "Null" : text;
}

class OwnText : public RoundFixture {
 protected:
  OwnText() { takesOwnText = true; }

  std::vector<std::string> Told(const std::string& sql) {
    std::vector<std::string> lines;
    for (const auto& row : RawDatabase(databasePath).Rows(sql)) {
      std::string& line = lines.emplace_back();
      for (const std::string& value : row) line += Shortest(value) + "; ";
    }
    std::sort(lines.begin(), lines.end());
    return lines;
  }

  // Reads the text into a database of its own and holds its rows against those that it came from.
  void ExpectReadBack(const std::string& text, const std::vector<Part>& parts) {
    std::vector<std::vector<std::string>> written;
    written.reserve(parts.size());
    for (const Part& part : parts) written.push_back(Told(part.written));
    Begin();
    ReadNeutralText(State(), text);
    State().gMspConn.reset();
    EXPECT_THAT(desktop.MessageTexts(), testing::IsEmpty());
    desktop.boxes.clear();
    for (std::size_t i = 0; i < parts.size(); ++i) {
      EXPECT_EQ(Told(parts[i].read), written[i]) << parts[i].what;
    }
  }

  // Of a merge and of a rebuilt model, how many went through: a plan may ask for what stops one.
  int ReadBackBroughtBack(const std::string& model) {
    Translate(model);
    const std::string plan = WritePlan();
    const auto merged = BringBack(With(plan, {{"<Name>Process 1<", "<Name>Anew<"}}), -1);
    if (merged) ExpectReadBack(*merged, kOfMerged);
    Begin();
    State().gMspConn.reset();
    const auto rebuilt = BringBack(plan, 0);
    if (rebuilt) ExpectReadBack(*rebuilt, kOfRebuilt);
    return (merged ? 1 : 0) + (rebuilt ? 1 : 0);
  }
};

using OwnTextOfRandomModels = OfRandomModels<OwnText>;

INSTANTIATE_TEST_SUITE_P(Seeds, OwnTextOfRandomModels, testing::Range(0u, 6u));

TEST_P(OwnTextOfRandomModels, RowsOfATranslatedModelComeBack) {
  ForSeeds(50, [this](const std::string& model) {
    Translate(model);
    ExpectReadBack(WriteText(), kOfTranslated);
  });
}

TEST_P(OwnTextOfRandomModels, RowsOfAMergedAndOfARebuiltModelComeBack) {
  int nBroughtBack = 0;
  ForSeeds(ModelsOfAGroup(5),
           [&](const std::string& model) { nBroughtBack += ReadBackBroughtBack(model); });
  EXPECT_GE(nBroughtBack, 5);
}

TEST_F(OwnText, RowsOfTheSamplesComeBack) {
  for (const char* sample : {"bakery", "clinic", "festival", "onboarding"}) {
    SCOPED_TRACE(sample);
    const std::string model = std::string(MERIVANE_SAMPLES "/") + sample + ".txt";
    Translate(model);
    ExpectReadBack(WriteText(), kOfTranslated);
    EXPECT_GE(ReadBackBroughtBack(model), 1);
  }
}

}  // namespace
}  // namespace merivane::test
