#include "mspdi/plan_writer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "error_of.h"
#include "mspdi/plan_reader.h"
#include "plan_writer_fixture.h"
#include "runtime/rtf_notes.h"
#include "runtime/run_time_error.h"

namespace merivane::test {

using namespace mspdi;

namespace {

using testing::HasSubstr;

Bytes BytesOf(const std::string& text) { return {text.begin(), text.end()}; }

TEST_F(Writer, StoredDatesAndFiguresGoBeforeTheSchedule) {
  Add("MSP_PROJECTS", "PROJ_NAME PROJ_PROP_AUTHOR", {{"Caf\xE9 <new>\x01", "A \"B\" & C"}});
  Add("MSP_TASKS",
      "TASK_UID TASK_ID TASK_NAME TASK_DUR TASK_OUTLINE_LEVEL KV7_PROCOCC_HEX TASK_START_DATE "
      "TASK_COST TASK_PCT_COMP TASK_DEADLINE TASK_BASE_START TASK_PRIORITY",
      {{5, 1, "Summary", 0, 1, 77, Value(), Value(), Value(), Value(), Value(), Value()},
       {6, 2, "First", 4800, 2, Value(), "3/2/2026 8:00:00 AM", 1e15, 50, "4/1/2026", "2/2/2026",
        5000},
       {7, 3, "Second", 0, 2, Value(), Value(), Value(), Value(), Value(), Value(), Value()}});
  Add("MSP_LINKS", "LINK_PRED_UID LINK_SUCC_UID LINK_TYPE LINK_LAG",
      {{6, 7, 1, 4800}, {7, 999, 1, 0}});
  Add("MSP_RESOURCES", "RES_UID RES_ID RES_NAME RES_TYPE",
      {{-65535, Value(), Value(), 0}, {3, 1, "Crew", -1}});
  Add("MSP_ASSIGNMENTS", "ASSN_UID TASK_UID RES_UID ASSN_UNITS ASSN_WORK",
      {{9, 6, 3, "2", 960000}, {10, 6, -65535, "1", 480000}});
  const std::string text = Write();
  ExpectParts(text,
              {"<Name>Caf\xC3\xA9 &lt;new&gt;</Name>", "<Start>2026-03-02T08:00:00</Start>",
               "<Cost>1000000000000000</Cost>", "<PercentComplete>50</PercentComplete>",
               "<Deadline>2026-04-01T00:00:00</Deadline>", "<OutlineNumber>1.2</OutlineNumber>",
               "<Priority>500</Priority>", "<Value>77</Value>", "<LinkLag>4800</LinkLag>",
               "<Work>PT16H0M0S</Work>", "<Milestone>1</Milestone>"});
  EXPECT_THAT(text, testing::Not(HasSubstr("65535")));
  const FilePlan plan = ReadPlanFile(xml);
  EXPECT_EQ(plan.tasks.size(), 3U);
  EXPECT_EQ(plan.assignments.size(), 1U);
}

TEST_F(Writer, CalendarsGoWithTheirExceptions) {
  Add("MSP_PROJECTS",
      "PROJ_INFO_CAL_NAME PROJ_OPT_MINUTES_PER_DAY PROJ_OPT_DEF_START_TIME "
      "PROJ_OPT_DEF_FINISH_TIME PROJ_INFO_START_DATE PROJ_OPT_DAYS_PER_MONTH",
      {{"Night", 420, "1/5/2026 10:30:00 PM", "1/5/2026 6:00:00 AM", "1/5/2026", 22}});
  Add("MSP_CALENDARS", "CAL_UID CAL_BASE_UID CAL_IS_BASE_CAL CAL_NAME",
      {{4, -1, -1, "Night"}, {7, 4, 0, Value()}, {8, 4, 0, "Night"}});
  Add("MSP_CALENDAR_DATA",
      "CAL_UID CD_DAY_OR_EXCEPTION CD_WORKING CD_FROM_DATE CD_TO_DATE CD_FROM_TIME1 CD_TO_TIME1",
      {{4, 1, 1, Value(), Value(), "10:00:00 PM", "12:00:00 AM"},
       {7, 0, 0, "1/6/2026", "1/8/2026", Value(), Value()},
       {7, 0, 1, "1/8/2026", "1/9/2026", "8:00:00 AM", "9:00:00 AM"}});
  Add("MSP_RESOURCES", "RES_UID RES_ID RES_NAME RES_CAL_UID", {{3, 1, "Crew", 7}});
  ExpectParts(
      Write(),
      {"<CalendarUID>4</CalendarUID><DefaultStartTime>22:30:00</DefaultStartTime>"
       "<DefaultFinishTime>06:00:00</DefaultFinishTime><MinutesPerDay>420</MinutesPerDay>",
       "<DaysPerMonth>22</DaysPerMonth>", "<StartDate>2026-01-05T22:30:00</StartDate>",
       "<WeekDay><DayType>1</DayType><DayWorking>1</DayWorking><WorkingTimes><WorkingTime>"
       "<FromTime>22:00:00</FromTime><ToTime>00:00:00</ToTime>",
       "<UID>7</UID><Name>Calendar 7</Name><IsBaseCalendar>0</IsBaseCalendar>"
       "<BaseCalendarUID>4</BaseCalendarUID><WeekDays><WeekDay><DayType>0</DayType>"
       "<DayWorking>0</DayWorking><TimePeriod><FromDate>2026-01-06T00:00:00</FromDate>"
       "<ToDate>2026-01-08T23:59:00</ToDate></TimePeriod></WeekDay></WeekDays><Exceptions>",
       "<Name>Night (2)</Name>", "<Occurrences>3</Occurrences>", "<CalendarUID>7</CalendarUID>"});
  EXPECT_THAT(warnings, testing::ElementsAre(HasSubstr("exceptions that overlap")));
}

TEST_F(Writer, BaselinesAndTimephasedWorkGoToTheirOwners) {
  Sql("create table MSP_TASK_BASELINES (PROJ_ID, TASK_UID, TB_BASE_NUM, TB_BASE_START, "
      "TB_BASE_DUR)");
  Sql("create table MSP_RESOURCE_BASELINES (PROJ_ID, RES_UID, RB_BASE_NUM, RB_BASE_WORK, "
      "RB_BASE_COST)");
  Sql("create table MSP_ASSIGNMENT_BASELINES (PROJ_ID, ASSN_UID, AB_BASE_NUM, AB_BASE_FINISH)");
  Add("MSP_TASKS",
      "TASK_UID TASK_ID TASK_NAME TASK_BASE_DUR TASK_BASE_WORK TASK_RESUME_DATE TASK_REM_DUR "
      "TASK_ACT_START TASK_DUR",
      {{1, 1, "split", 4800, Value(), "1/8/2026 8:00:00 AM", 2400, "1/5/2026 8:00:00 AM", 4800},
       {2, 2, "none", 0, 0, Value(), 0, Value(), 0}});
  Add("MSP_RESOURCES", "RES_UID RES_ID RES_NAME RES_BASE_COST", {{3, 1, "Crew", 500}});
  Add("MSP_ASSIGNMENTS", "ASSN_UID TASK_UID RES_UID ASSN_BASE_START",
      {{9, 1, 3, "1/5/2026 8:00:00 AM"}});
  Add("MSP_TASK_BASELINES", "TASK_UID TB_BASE_NUM TB_BASE_START TB_BASE_DUR",
      {{1, 10, "2/2/2026", 9600}, {1, 11, "2/2/2026", 9600}});
  Add("MSP_RESOURCE_BASELINES", "RES_UID RB_BASE_NUM RB_BASE_WORK", {{3, 2, 60000}});
  Add("MSP_ASSIGNMENT_BASELINES", "ASSN_UID AB_BASE_NUM AB_BASE_FINISH", {{9, 1, "2/3/2026"}});
  Add("MSP_TIMEPHASED_DATA",
      "TD_UID TD_FIELD_ID TD_CATEGORY TD_REF_UID TD_START TD_FINISH TD_UNITS TD_VALUE1 TD_VALUE2 "
      "TD_VALUE3 TD_VALUE4",
      {{1, 2, 3, 9, "1/5/2026 8:00:00 AM", "1/8/2026 12:00:00 PM", 2, 240000, 0, Value(), 240000},
       {2, 99, 3, 9, "1/5/2026", "1/6/2026", 2, 1, 1, 1, 1},
       {3, 2, 0, 9, "1/5/2026", "1/6/2026", 2, 1, 1, 1, 1}});
  const std::string text = Write();
  ExpectParts(text, {"<Finish>2026-01-08T12:00:00</Finish>",
                     "<Baseline><Number>0</Number><Duration>PT8H0M0S</Duration>",
                     "<Baseline><Number>10</Number><Start>2026-02-02T00:00:00</Start>"
                     "<Duration>PT16H0M0S</Duration></Baseline>",
                     "<Baseline><Number>2</Number><Work>PT1H0M0S</Work></Baseline>",
                     "<Baseline><Number>1</Number><Finish>2026-02-03T00:00:00</Finish></Baseline>",
                     "<TimephasedData><Type>2</Type><UID>1</UID><Start>2026-01-05T08:00:00</Start>"
                     "<Finish>2026-01-06T08:00:00</Finish><Unit>2</Unit><Value>PT4H0M0S</Value>"
                     "</TimephasedData><TimephasedData><Type>2</Type><UID>1</UID>"
                     "<Start>2026-01-08T08:00:00</Start><Finish>2026-01-08T12:00:00</Finish>"});
  EXPECT_THAT(text, testing::Not(HasSubstr("<Type>99</Type>")));
  EXPECT_THAT(warnings,
              testing::ElementsAre("1 baseline has a number beyond 10; left out.",
                                   "1 row of work spread over time has no beginning or is of no "
                                   "known kind; left out."));
}

TEST_F(Writer, CustomFieldsGoWithNamesListsAndCodes) {
  Add("MSP_TASKS", "TASK_UID TASK_ID TASK_NAME KV7_PROCOCC_HEX",
      {{1, 1, "one", Value()}, {2, 2, "two", 17}});
  Add("MSP_RESOURCES", "RES_UID RES_ID RES_NAME", {{1, 1, "Crew"}});
  Add("MSP_ASSIGNMENTS", "ASSN_UID TASK_UID RES_UID", {{5, 1, 1}});
  Add("MSP_TEXT_FIELDS", "TEXT_CATEGORY TEXT_REF_UID TEXT_FIELD_ID TEXT_VALUE",
      {{0, 1, 188743731, "own"},
       {0, 2, 188743731, "not this"},
       {0, 2, 188744016, "thirty"},
       {1, 1, 205520905, "of a resource"},
       {3, 5, 255852762, "of an assignment"},
       {0, 1, 188743999 + 1000, "no field"}});
  Add("MSP_NUMBER_FIELDS", "NUM_CATEGORY NUM_REF_UID NUM_FIELD_ID NUM_VALUE",
      {{0, 1, 188743982, 2.5}});
  Add("MSP_DATE_FIELDS", "DATE_CATEGORY DATE_REF_UID DATE_FIELD_ID DATE_VALUE",
      {{0, 1, 188743965, "1/5/2026 8:00:00 AM"}});
  Add("MSP_DURATION_FIELDS", "DUR_CATEGORY DUR_REF_UID DUR_FIELD_ID DUR_VALUE DUR_FMT",
      {{0, 1, 188743784, 600, 5}});
  Add("MSP_FLAG_FIELDS", "FLAG_CATEGORY FLAG_REF_UID FLAG_FIELD_ID FLAG_VALUE",
      {{1, 1, 205521022, -1}});
  Add("MSP_CODE_FIELDS", "CODE_CATEGORY CODE_REF_UID CODE_FIELD_ID CODE_UID",
      {{0, 1, 188744098, 3}});
  Add("MSP_OUTLINE_CODES", "CODE_UID OC_PARENT OC_FIELD_ID OC_NAME OC_DESCRIPTION",
      {{-65536, Value(), Value(), Value(), Value()},
       {2, 0, 188744098, "Site", "where"},
       {3, 2, 188744098, "North", Value()},
       {4, 0, 188744016, "listed", "a value"}});
  Add("MSP_FIELD_ATTRIBUTES", "ATTRIB_FIELD_ID ATTRIB_ID AS_ID",
      {{188743982, 206, 1}, {188743737, 206, 2}, {188743982, 207, 3}});
  Add("MSP_ATTRIBUTE_STRINGS", "AS_ID AS_POSITION AS_VALUE",
      {{3, 2, "+ 1"}, {1, 0, "Risk"}, {2, 0, "Unused"}, {3, 1, "[Cost] "}});
  ExpectParts(
      Write(),
      {"<FieldID>188743737</FieldID><FieldName>Text3</FieldName><Alias>Unused</Alias>",
       "<FieldName>Number6</FieldName><Alias>Risk</Alias><Formula>[Cost] + 1</Formula>",
       "<ValueList><Value><ID>4</ID><Value>listed</Value><Description>a value</Description>",
       "<FieldName>Outline Code2</FieldName><Values><Value><ValueID>2</ValueID>",
       "<ParentValueID>2</ParentValueID><Value>North</Value>",
       "<FieldID>188743731</FieldID><Value>own</Value>",
       "<FieldID>188743731</FieldID><Value>17</Value></ExtendedAttribute><ExtendedAttribute>"
       "<FieldID>188744016</FieldID><Value>thirty</Value>",
       "<FieldName>Finish7</FieldName>", "<Value>2026-01-05T08:00:00</Value>",
       "<FieldName>Text2</FieldName>", "<Value>of a resource</Value>",
       "<FieldName>Text11</FieldName>", "<Value>of an assignment</Value>",
       "<FieldName>Flag10</FieldName>", "<Value>2.5</Value>", "<FieldName>Duration2</FieldName>",
       "<Value>PT1H0M0S</Value><DurationFormat>5</DurationFormat>",
       "<OutlineCode><FieldID>188744098</FieldID><ValueID>3</ValueID>"});
  EXPECT_THAT(warnings, testing::ElementsAre(HasSubstr("1 value of a custom field is")));
}

TEST_F(Writer, LinksOutOfTheProjectRatesAndAddressesGoAlong) {
  Add("MSP_TASKS",
      "TASK_UID TASK_ID TASK_NAME TASK_IS_SUBPROJ TASK_IS_EXTERNAL TASK_START_DATE "
      "TASK_FINISH_DATE TASK_DUR",
      {{1, 1, "inserted", -1, 0, Value(), Value(), 0},
       {2, 2, "elsewhere", 0, -1, "1/7/2026 8:00:00 AM", "1/8/2026 5:00:00 PM", 9600},
       {3, 3, "here", 0, 0, Value(), Value(), 4800}});
  Add("MSP_LINKS",
      "LINK_UID LINK_PRED_UID LINK_SUCC_UID LINK_TYPE LINK_LAG LINK_LAG_FMT LINK_IS_CROSS_PROJ",
      {{1, 2, 3, 1, 0, 7, 0}, {2, 77, 3, 3, 4800, 7, -1}});
  Add("MSP_RESOURCES", "RES_UID RES_ID RES_NAME RES_TYPE RES_STD_RATE_FMT RES_OVT_RATE_FMT",
      {{1, 1, "Crew", -1, 7, 6}, {2, 2, "Cement", 0, 8, 8}});
  Add("MSP_RESOURCE_RATES", "RR_UID RES_UID RR_RATE_TABLE RR_FROM_DATE RR_STD_RATE RR_STD_RATE_FMT",
      {{1, 1, 0, Value(), 25, 2}, {2, 1, 1, "1/1/2026", 3000, 8}});
  Add("MSP_AVAILABILITY", "AVAIL_UID RES_UID AVAIL_FROM AVAIL_UNITS", {{1, 1, "1/1/2026", 0.5}});
  Add("MSP_ASSIGNMENTS", "ASSN_UID TASK_UID RES_UID ASSN_RTF_NOTES",
      {{5, 3, 1, BytesOf("{\\rtf1 ok}")}, {6, 3, 2, BytesOf("{\\rtf1 cut\\'")}});
  Add("MSP_TEXT_FIELDS", "TEXT_CATEGORY TEXT_REF_UID TEXT_FIELD_ID TEXT_VALUE",
      {{0, 1, 188743706, "C:\\sub.mpp"},
       {0, 2, 188743706, "C:\\other.mpp"},
       {0, 3, 188743898, "http://plans.example"},
       {4, 2, 239075346, "C:\\other.mpp\\4"},
       {1, 1, 205520899, "Builders"},
       {1, 1, 205520931, "crew@plans.example"}});
  ExpectParts(
      Write(),
      {"<IsSubproject>1</IsSubproject><SubprojectName>C:\\sub.mpp</SubprojectName>",
       "<ExternalTask>1</ExternalTask><ExternalTaskProject>C:\\other.mpp</ExternalTaskProject>",
       "<Start>2026-01-09T08:00:00</Start>", "<HyperlinkAddress>http://plans.example<",
       "<PredecessorUID>77</PredecessorUID><Type>3</Type><CrossProject>1</CrossProject>"
       "<CrossProjectName>C:\\other.mpp\\4</CrossProjectName><LinkLag>4800</LinkLag>",
       "<Group>Builders</Group>", "<EmailAddress>crew@plans.example</EmailAddress>",
       "<StandardRateFormat>7</StandardRateFormat>", "<StandardRateFormat>8</StandardRateFormat>",
       "<Rate><RatesFrom>1984-01-01T00:00:00</RatesFrom>",
       "<RateTable>1</RateTable><StandardRate>3000</StandardRate></Rate>",
       "<AvailableUnits>0.5</AvailableUnits>", "<Notes>ok</Notes>", "<Notes>cut</Notes>"});
  EXPECT_THAT(warnings, testing::ElementsAre(
                            "1 note breaks off in its rich text; what there is of it is written."));
  std::vector<std::vector<Value>> rates;
  for (int rate = 1; rate <= 27; ++rate) rates.push_back({2 + rate, 2, 0, Value(), rate, 2});
  Add("MSP_RESOURCE_RATES", "RR_UID RES_UID RR_RATE_TABLE RR_FROM_DATE RR_STD_RATE RR_STD_RATE_FMT",
      rates);
  Write();
  EXPECT_THAT(warnings,
              testing::Contains("2 rates are beyond the 25 that a resource may have; left out."));
}

TEST_F(Writer, NotesComeFromTheModelOrFromRichText) {
  Add("Activity_Pool", "Num Glossary", {{1, "Own {text}\r\nof two lines\r\n"}, {2, Value()}});
  Add("MSP_TASKS", "TASK_UID TASK_ID TASK_NAME KV7_PROC_HEX TASK_RTF_NOTES",
      {{1, 1, "own", 1, BytesOf(RtfNote("Own {text}\r\nof two lines\r\n"))},
       {2, 2, "note of the one before", 2, BytesOf(RtfNote("Own {text}\r\nof two lines\r\n"))},
       {3, 3, "no model", Value(), BytesOf(RtfNote("Kept \\ as it is"))},
       {4, 4, "of Project", 1,
        BytesOf("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}{\\*\\generator x;}\\pard caf\\'e9\\par "
                "\\b bold\\b0  \\u8364?\\u26085?\\tab\\{\\}\\par }")},
       {5, 5, "cut", 1, BytesOf("{\\rtf1\\ansi\\pard half of i")}});
  Write();
  EXPECT_THAT(warnings, testing::ElementsAre(
                            "1 note breaks off in its rich text; what there is of it is written."));
  std::vector<std::string> notes;
  for (const FileTask& task : ReadPlanFile(xml).tasks) notes.push_back(task.notes.value_or("none"));
  EXPECT_THAT(notes,
              testing::ElementsAre("Own {text}\r\nof two lines\r\n", "none", "Kept \\ as it is",
                                   "caf\xE9\r\nbold \x80?\t{}", "half of i"));
}

TEST_F(Writer, LettersGoThroughAsTheDatabaseHasThemAndWhatIsCutIsCounted) {
  std::string longName;
  for (int i = 0; i < 255; ++i) longName += "\xD0\x96";
  Sql("insert into MSP_PROJECTS (PROJ_ID, PROJ_PROP_SUBJECT) "
      "values (1, 'a' || char(13, 10) || 'b' || char(13) || 'c' || char(9) || '<&>')");
  Sql("insert into MSP_TASKS (PROJ_ID, TASK_UID, TASK_ID, TASK_NAME, TASK_RTF_NOTES) "
      "values (1, 1, 1, 'Gro\xC3\x9F \xE8\xA3\x85\xE9\x85\x8D \xF0\x9F\x9A\x80', "
      "cast('{\\rtf1\\ansi \\u26085?\\u-10179?\\u-8576? \\''e9}' as blob)), "
      "(1, 2, 2, replace(hex(zeroblob(150)), '0', '\xD0\x96'), null), "
      "(1, 3, 3, 'a' || char(1) || 'b' || char(0xFFFF) || x'C3', null)");
  Sql("insert into MSP_RESOURCES (PROJ_ID, RES_UID, RES_ID, RES_NAME) "
      "values (1, 1, 1, '\xD0\x91\xD0\xB5\xD1\x82\xD0\xBE\xD0\xBD')");
  const std::string text = Write();
  EXPECT_THAT(text, HasSubstr("<Subject>a\nb\nc\t&lt;&amp;&gt;</Subject>"));
  ExpectParts(text, {"<Name>Gro\xC3\x9F \xE8\xA3\x85\xE9\x85\x8D \xF0\x9F\x9A\x80</Name>",
                     "<Notes>\xE6\x97\xA5\xF0\x9F\x9A\x80 \xC3\xA9</Notes>", "<Name>ab?\?</Name>",
                     "<Name>\xD0\x91\xD0\xB5\xD1\x82\xD0\xBE\xD0\xBD</Name>",
                     ("<Name>" + longName + "</Name>").c_str()});
  EXPECT_THAT(warnings, testing::ElementsAre(HasSubstr("2 texts are longer than XML takes")));
}

// Levels 1 and 3 are left where a decomposition is pruned.
TEST_F(Writer, TheOutlineIsClosedAndPairsStandAsInMpx) {
  Add("MSP_TASKS",
      "TASK_UID TASK_ID TASK_NAME TASK_OUTLINE_LEVEL KV7_PROCOCC_SSRELS KV7_PROCOCC_FFRELS",
      {{1, 1, "whole", 1, Value(), Value()},
       {2, 2, "deep", 3, "3SS,4SS", Value()},
       {3, 3, "deep too", 3, Value(), "4FF"},
       {4, 4, "next", 2, Value(), Value()}});
  Add("MSP_LINKS", "LINK_PRED_UID LINK_SUCC_UID LINK_TYPE",
      {{2, 3, 3}, {2, 4, 3}, {3, 4, 0}, {3, 2, 1}, {4, 3, 3}});
  Write();
  std::vector<std::string> read;
  for (const FileTask& task : ReadPlanFile(xml).tasks) {
    read.push_back(std::to_string(task.level) + ":");
    for (const auto& link : task.predecessors) {
      read.back() += " " + std::to_string(link.predecessor) + "/" +
                     std::to_string(static_cast<int>(link.kind));
    }
  }
  EXPECT_THAT(read, testing::ElementsAre("1:", "2: 3/3 4/3 3/1", "2: 4/0 4/3", "2:"));
}

TEST_F(Writer, FailureLeavesTheFileThatStood) {
  Add("MSP_TASKS", "TASK_UID TASK_ID TASK_NAME", {{1, 1, "A"}, {2, 2, "B"}});
  Add("MSP_LINKS", "LINK_PRED_UID LINK_SUCC_UID", {{1, 2}, {2, 1}});
  folder.Write("plan.xml", "old");
  EXPECT_THROW(Write(), RunTimeError);
  EXPECT_EQ(ReadFile(xml), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path("")), {}), 2);
  xml = folder.Path("none/plan.xml");
  EXPECT_THROW(Write(), RunTimeError);
}

#ifndef _WIN32
TEST_F(Writer, FailureIsToldAsWhatItIs) {
  for (const bool isLong : {false, true}) {
    // Nothing of this process lies where its memory begins.
    for (const auto& [place, told] : {std::pair(folder.Path("none/plan.xml"), kPathNotFound),
                                      {"/dev/full", kDiskFull},
                                      {"/proc/self/mem", kDeviceIoError}}) {
      xml = place;
      std::string description;
      EXPECT_EQ(ErrorOf([&] { Write(); }, &description), told) << isLong;
      EXPECT_EQ(description, ErrorText(told) + ": '" + place + "'");
    }
    for (int task = 1; task < 200; ++task) {
      Add("MSP_TASKS", "TASK_UID TASK_ID TASK_NAME", {{task, task, std::string(250, 'x')}});
    }
  }
}
#endif

TEST_F(Writer, DatabaseAndXmlOfProjectHoldTheSamePlan) {
  const std::string plans = MERIVANE_PLANS;
  const std::string stored = plans + "/task-links-project2000-mpd9.mpd";
  if (!std::filesystem::exists(stored)) GTEST_SKIP() << stored << " is not there";
  Write(stored);
  const FilePlan exported = ReadPlanFile(xml);
  const FilePlan other = ReadPlanFile(plans + "/task-links-project2003-mspdi.xml");
  ASSERT_EQ(exported.tasks.size(), other.tasks.size());
  for (std::size_t i = 0; i < other.tasks.size(); ++i) {
    const auto shown = [](const FileTask& task) {
      std::string text = task.name + " " + std::to_string(task.level) + " " +
                         std::to_string(task.days.value_or(-1));
      for (const FileLink& link : task.predecessors) {
        text += " " + std::to_string(link.predecessor) +
                std::to_string(static_cast<int>(link.kind)) + LagText(link.lag, 480);
      }
      return text;
    };
    EXPECT_EQ(shown(exported.tasks[i]), shown(other.tasks[i]));
  }
}

}  // namespace
}  // namespace merivane::test
