// What the columns may hold, and what becomes of it in the file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tuple>

#include "error_of.h"
#include "mspdi/plan_reader.h"
#include "plan_writer_fixture.h"

namespace merivane::test {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class PlanValues : public Writer {
 protected:
  // What the error of writing, or of reading what was written, says; empty without one.
  std::string Told() {
    std::string told;
    Connection connection(workspace);
    ErrorOf(
        [&] {
          connection.Open(ConnectionText(database), OpenMode::kReadOnly);
          WritePlan(connection, 1, kMonday, xml);
          ReadPlanFile(xml);
        },
        &told);
    return told;
  }

  // One task, one resource, and an assignment between them.
  void AddSmallPlan() {
    Add("MSP_PROJECTS", "PROJ_NAME", {{"Small"}});
    Add("MSP_TASKS", "TASK_UID TASK_ID TASK_NAME TASK_DUR",
        {{1, 1, "First", 4800}, {2, 2, "Second", 9600}});
    Add("MSP_LINKS", "LINK_UID LINK_PRED_UID LINK_SUCC_UID LINK_TYPE", {{1, 1, 2, 1}});
    Add("MSP_RESOURCES", "RES_UID RES_ID RES_NAME", {{1, 1, "Crew"}});
    Add("MSP_ASSIGNMENTS", "ASSN_UID TASK_UID RES_UID ASSN_UNITS", {{1, 1, 1, 1}});
    Add("MSP_CALENDARS", "CAL_UID CAL_BASE_UID CAL_IS_BASE_CAL CAL_NAME",
        {{1, -1, -1, "Standard"}});
    Add("MSP_CALENDAR_DATA", "CAL_UID CD_DAY_OR_EXCEPTION CD_WORKING CD_FROM_TIME1 CD_TO_TIME1",
        {{1, 2, 1, "8:00:00 AM", "4:00:00 PM"}});
  }
};

// A table's declared types don't bind another program.
TEST_F(PlanValues, AnythingInAnyColumnLeavesAFileOrATellingError) {
  AddSmallPlan();
  RawDatabase raw(database);
  raw.Run("pragma synchronous = off");
  for (const std::string table : {"MSP_PROJECTS", "MSP_TASKS", "MSP_LINKS", "MSP_RESOURCES",
                                  "MSP_ASSIGNMENTS", "MSP_CALENDARS", "MSP_CALENDAR_DATA"}) {
    EXPECT_EQ(raw.Run("create table whole as select * from " + table), SQLITE_OK);
    const auto columns = raw.Rows("select name, type from pragma_table_info('" + table + "')");
    const std::string names = raw.Ask(
        "select group_concat('\"' || name || '\"') from pragma_table_info('" + table + "')");
    const auto toldWith = [&](const std::string& changes) {
      EXPECT_EQ(raw.Run("update " + table + " set " + changes), SQLITE_OK) << changes;
      std::string told = Told();
      EXPECT_EQ(raw.Run("delete from " + table + "; insert into " + table + " (" + names +
                        ") select " + names + " from whole"),
                SQLITE_OK);
      return told;
    };
    for (const char* value : {"Null", "'text'", "-1", "x'00FF7B'"}) {
      std::string changes;
      for (const auto& column : columns) {
        const std::string& name = column[0];
        const bool isKey = name.ends_with("UID") || name.ends_with("_ID");
        if (!isKey) changes += (changes.empty() ? "\"" : ", \"") + name + "\" = " + value;
      }
      EXPECT_EQ(toldWith(changes), "") << table << ": " << value;
    }
    for (const auto& column : columns) {
      if (column[0] == "PROJ_ID" || column[1].find("INT") == std::string::npos) continue;
      EXPECT_THAT(toldWith("\"" + column[0] + "\" = 99999999999"),
                  testing::AnyOf("", HasSubstr(table + "." + column[0] + " holds ")));
    }
    EXPECT_EQ(raw.Run("drop table whole"), SQLITE_OK);
  }
  ExpectParts(Write(), {"<Name>First</Name>", "<PredecessorUID>1</PredecessorUID>"});
}

TEST_F(PlanValues, ATaskWithoutAPlaceIsLeftOutAndCounted) {
  AddSmallPlan();
  for (const char* place : {"0", "-1", "'text'"}) {
    Sql(std::string("update MSP_TASKS set TASK_ID = ") + place + " where TASK_UID = 1");
    EXPECT_THAT(Write(), Not(HasSubstr("<Name>First<")));
    EXPECT_THAT(warnings, ElementsAre("1 task has a place in the list that is none; left out."));
  }
  Sql("update MSP_TASKS set TASK_ID = Null where TASK_UID = 1");  // as Project has a deleted one
  Write();
  EXPECT_THAT(warnings, testing::IsEmpty());
  Sql("update MSP_TASKS set TASK_ID = 1, TASK_CAL_UID = -2147483648 where TASK_UID = 1");
  EXPECT_EQ(Told(), "");
}

struct Bound {
  std::string column;
  const char* stored;
  const char* element;
  bool isWritten = true;
};

TEST_F(PlanValues, NumbersBeyondTheSchemaGiveWayToOurs) {
  AddSmallPlan();
  const Bound bounds[] = {
      {"TASK_PRIORITY", "0", "<Priority>0<"},
      {"TASK_PRIORITY", "1000", "<Priority>1000<"},
      {"TASK_PRIORITY", "1001", "<Priority>500<"},
      {"TASK_TYPE", "2", "<Type>2</Type><IsNull>0</IsNull><WBS>1<"},
      {"TASK_TYPE", "3", "<Type>1</Type><IsNull>0</IsNull><WBS>1<"},
      {"TASK_PCT_COMP", "100", "<PercentComplete>100<"},
      {"TASK_PCT_COMP", "101", "<PercentComplete>0<"},
      {"TASK_CONSTRAINT_TYPE", "-1", "<ConstraintType>0<"},
      {"TASK_FIXED_COST_ACCRUAL", "0", "<FixedCostAccrual>", false},
      {"TASK_FIXED_COST_ACCRUAL", "3", "<FixedCostAccrual>3<"},
      {"TASK_ACT_DUR", "-600", "<ActualDuration>", false},
      {"TASK_ACT_DUR", "605", "<ActualDuration>PT1H0M30S<"},
      {"TASK_ACT_WORK", "90500", "<ActualWork>PT1H30M30S<"},
      {"TASK_ACT_COST", "-2.25", "<ActualCost>-2.25<"},
      {"TASK_ACT_COST", "1e16", "<ActualCost>", false},
      {"TASK_DEADLINE", "'soon'", "<Deadline>", false},
      {"TASK_DEADLINE", "'2/29/2027'", "<Deadline>", false},
      {"TASK_DEADLINE", "'12/31/2026 11:59:58 PM'", "<Deadline>2026-12-31T23:59:58<"},
      {"TASK_IS_MILESTONE", "-1", "<Milestone>1<"},
      {"TASK_WBS", "'A.7'", "<WBS>A.7<"},
      {"TASK_DUR_FMT", "5", "<DurationFormat>5<"},
      {"TASK_DUR_FMT", "2", "<DurationFormat>7<"},
      {"TASK_DUR_FMT", "13", "<DurationFormat>7<"},
      {"TASK_DUR_FMT", "53", "<DurationFormat>53<"},
      {"TASK_DUR_FMT", "54", "<DurationFormat>7<"}};
  for (const Bound& bound : bounds) {
    SCOPED_TRACE(bound.column + " = " + bound.stored);
    Sql("update MSP_TASKS set " + bound.column + " = " + bound.stored + " where TASK_UID = 1");
    EXPECT_EQ(Told(), "");
    const std::string text = ReadFile(xml);
    if (bound.isWritten) {
      ExpectParts(text, {bound.element});
    } else {
      EXPECT_THAT(text, Not(HasSubstr(bound.element)));
    }
    Sql("update MSP_TASKS set " + bound.column + " = Null");
  }
}

TEST_F(PlanValues, TheHeadTellsMoneyAndTheHoursOfADay) {
  AddSmallPlan();
  const std::pair<std::string, std::vector<const char*>> cases[] = {
      {"PROJ_OPT_CURRENCY_SYMBOL = '$'", {"<CurrencySymbol>$<", "<CurrencyCode>USD<"}},
      {"PROJ_OPT_CURRENCY_SYMBOL = '\xC2\xA3'", {"<CurrencyCode>GBP<"}},
      {"PROJ_OPT_CURRENCY_SYMBOL = '\xE2\x82\xAC'", {"<CurrencyCode>EUR<"}},
      {"PROJ_OPT_CURRENCY_SYMBOL = 'kr'", {"<CurrencySymbol>kr<", "<CurrencyCode>XXX<"}},
      {"PROJ_OPT_CURRENCY_SYMBOL = Null", {"<CurrencyCode>USD<"}},
      {"PROJ_INFO_START_DATE = '2/2/2026'",
       {"<StartDate>2026-02-02T08:00:00<", "<DefaultStartTime>08:00:00<",
        "<DefaultFinishTime>17:00:00<"}},
      {"PROJ_INFO_START_DATE = '2/2/2026 6:15:00 AM'", {"<StartDate>2026-02-02T06:15:00<"}},
      {"PROJ_INFO_START_DATE = '2/2/2026', PROJ_OPT_DEF_START_TIME = '1/1/2000 7:00:00 AM'",
       {"<StartDate>2026-02-02T07:00:00<", "<DefaultStartTime>07:00:00<"}},
      {"PROJ_OPT_DEF_START_TIME = '1/1/2000'", {"<DefaultStartTime>08:00:00<"}},
      {"PROJ_OPT_DAYS_PER_MONTH = 0", {"<DaysPerMonth>20<"}},
      {"PROJ_OPT_WEEK_START_DAY = 6", {"<WeekStartDay>6<"}},
      {"PROJ_PROP_TITLE = 'Title of its own'", {"<Name>Small</Name><Title>Title of its own<"}},
      {"PROJ_PROP_TITLE = Null", {"<Name>Small</Name><Title>Small<"}}};
  for (const auto& [change, parts] : cases) {
    SCOPED_TRACE(change);
    Sql("update MSP_PROJECTS set " + change);
    EXPECT_EQ(Told(), "");
    ExpectParts(ReadFile(xml), parts);
  }
}

TEST_F(PlanValues, AWeekBeginsOnSundayAndADayHasFiveShiftsAtMost) {
  AddSmallPlan();
  Sql("delete from MSP_CALENDARS");
  Sql("delete from MSP_CALENDAR_DATA");
  ExpectParts(Write(),
              {"<Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar><BaseCalendarUID>-1<",
               "<WeekDays><WeekDay><DayType>1</DayType><DayWorking>0</DayWorking></WeekDay>"
               "<WeekDay><DayType>2</DayType><DayWorking>1</DayWorking><WorkingTimes>"
               "<WorkingTime><FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime></WorkingTime>"
               "<WorkingTime><FromTime>13:00:00</FromTime><ToTime>17:00:00</ToTime>",
               "<DayType>7</DayType><DayWorking>0</DayWorking></WeekDay></WeekDays></Calendar>"});
  Add("MSP_CALENDARS", "CAL_UID CAL_BASE_UID CAL_IS_BASE_CAL CAL_NAME",
      {{4, -1, -1, Value()}, {5, 4, 0, Value()}});
  Add("MSP_CALENDAR_DATA",
      "CAL_UID CD_DAY_OR_EXCEPTION CD_WORKING CD_FROM_TIME1 CD_TO_TIME1 CD_FROM_TIME5 CD_TO_TIME5",
      {{4, 7, 1, "6:00:00 AM", "7:00:00 AM", "8:00:00 PM", "9:30:00 PM"},
       {4, 1, 0, Value(), Value(), Value(), Value()}});
  ExpectParts(Write(), {"<DayType>1</DayType><DayWorking>0</DayWorking></WeekDay><WeekDay>"
                        "<DayType>7</DayType><DayWorking>1</DayWorking><WorkingTimes><WorkingTime>"
                        "<FromTime>06:00:00</FromTime><ToTime>07:00:00</ToTime></WorkingTime>"
                        "<WorkingTime><FromTime>20:00:00</FromTime><ToTime>21:30:00</ToTime>",
                        "<UID>5</UID><Name>Calendar 5</Name><IsBaseCalendar>0</IsBaseCalendar>"
                        "<BaseCalendarUID>4</BaseCalendarUID></Calendar>"});
}

TEST_F(PlanValues, MaterialAndMoneyAreNoHoursOfWork) {
  AddSmallPlan();
  Sql("update MSP_RESOURCES set KV7_OBJ_GLOSSARY = 'Resource kind: Material (t)' || char(13, 10) "
      "|| 'grey'");
  Sql("update MSP_ASSIGNMENTS set ASSN_UNITS = 12, ASSN_WORK = 5760000");
  Add("MSP_RESOURCES", "RES_UID RES_ID RES_NAME KV7_OBJ_GLOSSARY",
      {{2, 2, "Fee", "Resource kind: Cost"}, {3, 3, "Mason", "Resource kind: Cost "}});
  Add("MSP_ASSIGNMENTS", "ASSN_UID TASK_UID RES_UID ASSN_UNITS ASSN_WORK",
      {{2, 2, 3, 2, 960000}, {3, 2, 3, 0.5, Value()}, {4, 9, 3, 1, 1}});
  ExpectParts(Write(), {"<Name>Crew</Name><Type>0</Type><IsNull>0</IsNull>"
                        "<MaterialLabel>t</MaterialLabel>",
                        "<Notes>grey</Notes>", "<Name>Fee</Name><Type>0</Type>",
                        "<IsCostResource>1</IsCostResource>", "<Name>Mason</Name><Type>1</Type>",
                        "<Notes>Resource kind: Cost </Notes>", "<Work>PT12H0M0S</Work>",
                        "<Work>PT16H0M0S</Work>", "<Work>PT8H0M0S</Work>"});
  const FilePlan plan = ReadPlanFile(xml);
  std::vector<std::string> kinds;
  for (const FileResource& resource : plan.resources) {
    kinds.push_back(WithKind({resource.kind, resource.unit, resource.notes.value_or("")}));
  }
  EXPECT_THAT(kinds, ElementsAre("Resource kind: Material (t)\r\ngrey", "Resource kind: Cost",
                                 "Resource kind: Cost "));
  EXPECT_THAT(plan.untaken.Of(Untaken::kMaterialResources), ElementsAre(1));
  EXPECT_THAT(plan.untaken.Of(Untaken::kCostResources), ElementsAre(2));
  EXPECT_EQ(plan.assignments.size(), 3U);
}

// The work tables keep it; the tables of the plan stay beside it as they were.
TEST_F(PlanValues, APlanThatCameBackIsWrittenAsItCame) {
  AddSmallPlan();
  Sql("update MSP_RESOURCES set KV7_OBJ_GLOSSARY = 'Resource kind: Material'");
  Add("ProjectAct", "PID Name Duration Outline notes Predecessor",
      {{1, "Came back", 3, 1, "a note", Value()}, {2, "Behind it", 1, 1, Value(), "1"}});
  Add("ProjectRes", "PID Name Qty", {{7, "Crew", 3}, {8, "Mason", Value()}, {8, "again", 1}});
  Add("ProjectResReqts", "ActivityPID ResourcePID Qty",
      {{1, 7, 2}, {1, 8, "2"}, {2, 8, Value()}, {2, 99, 1}});
  ExpectParts(Write(),
              {"<Name>Came back</Name>", "<Notes>a note</Notes>", "<PredecessorUID>1<",
               "<UID>7</UID><ID>7</ID><Name>Crew</Name><Type>0</Type>",
               "<UID>8</UID><ID>8</ID><Name>Mason</Name><Type>1</Type>", "<MaxUnits>1</MaxUnits>",
               "<TaskUID>1</TaskUID><ResourceUID>7</ResourceUID>", "<Work>PT2H0M0S</Work>",
               "<Work>PT48H0M0S</Work>", "<Units>1</Units><Work>PT8H0M0S</Work>"});
  const FilePlan plan = ReadPlanFile(xml);
  EXPECT_EQ(plan.resources.size(), 2U);
  EXPECT_EQ(plan.assignments.size(), 3U);
}

// First and last number of each run of fields, and those on either side.
TEST_F(PlanValues, FieldsAreCalledByTheirNumbers) {
  AddSmallPlan();
  // The category, the number, and the name where there is such a field.
  const std::tuple<int, std::int64_t, const char*> fields[] = {
      {0, 188743731, "Text1"},    {0, 188743743, "Text5"},     {0, 188743746, "Text6"},
      {0, 188743750, "Text10"},   {0, 188743997, "Text11"},    {0, 188744016, "Text30"},
      {0, 188744017, nullptr},    {0, 188743732, "Start1"},    {0, 188743970, "Start10"},
      {0, 188743733, "Finish1"},  {0, 188743971, "Finish10"},  {0, 188743752, "Flag1"},
      {0, 188743761, "Flag10"},   {0, 188743972, "Flag11"},    {0, 188743981, "Flag20"},
      {0, 188743767, "Number1"},  {0, 188743771, "Number5"},   {0, 188743982, "Number6"},
      {0, 188743996, "Number20"}, {0, 188743783, "Duration1"}, {0, 188743961, "Duration10"},
      {0, 188743786, "Cost1"},    {0, 188743944, "Cost10"},    {0, 188743945, "Date1"},
      {0, 188743954, "Date10"},   {1, 205520904, "Text1"},     {1, 205520903, nullptr},
      {1, 205520928, "Text5"},    {1, 205521140, "Text30"},    {1, 205521022, "Flag10"},
      {1, 205521023, "Flag1"},    {1, 205521100, "Flag20"},    {1, 205521078, "Date10"},
      {3, 255852632, "Text1"},    {3, 255852781, "Text30"},    {3, 255852719, "Date10"},
      {3, 255852631, nullptr}};
  std::size_t unknown = 0;
  std::vector<std::vector<Value>> rows;
  for (const auto& [category, number, name] : fields) {
    rows.push_back({category, 1, number, "v"});
    if (name == nullptr) ++unknown;
  }
  Add("MSP_TEXT_FIELDS", "TEXT_CATEGORY TEXT_REF_UID TEXT_FIELD_ID TEXT_VALUE", rows);
  const std::string text = Write();
  for (const auto& [category, number, name] : fields) {
    const std::string id = "<FieldID>" + std::to_string(number) + "</FieldID>";
    if (name == nullptr) {
      EXPECT_THAT(text, Not(HasSubstr(id)));
    } else {
      ExpectParts(text, {(id + "<FieldName>" + name + "</FieldName>").c_str(),
                         (id + "<Value>v</Value>").c_str()});
    }
  }
  EXPECT_THAT(warnings, ElementsAre(std::to_string(unknown) +
                                    " values of custom fields are of a number that no field has; "
                                    "left out."));
}

}  // namespace
}  // namespace merivane::test
