#include "mpx/mpx_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

namespace merivane::test {

using namespace mpx;

namespace {

TEST(MpxRecords, EachFieldHasItsNumberAndItsPlace) {
  const auto commas = [](std::string_view line) { return std::ranges::count(line, ','); };
  for (const auto line : {kMpxResourceFields, kMpxResourceFieldNumbers})
    EXPECT_EQ(commas(line), 19);
  EXPECT_EQ(commas(MpxResource(1, "Crane", Value())), 19);
  for (const auto line : {kMpxTaskFields, kMpxTaskFieldNumbers}) EXPECT_EQ(commas(line), 42);
}

TEST(MpxRecords, QuoteNamesWithCommaAndPredecessors) {
  const std::string empty(33, ',');
  EXPECT_EQ(MpxTaskRecord({4, "Dig, fill", "0.40d", 2, "3,5", 17}, 437),
            "70,4,4,\"Dig, fill\",0.40d,Yes,2,,\"3,5\"" + empty + ",17");
  EXPECT_EQ(MpxTaskRecord({4, "Dig", "1d", 1, "", 17}, 932), "70,4,4,Dig,1d,,1,," + empty + ",17");
}

TEST(MpxRecords, NotesBreakLinesWithOneCharacterAndDropTheLast) {
  const std::pair<std::string, std::string> cases[] = {{"", "\""},
                                                       {"One\r\nTwo\r\n", "\"One\x7fTwo\x7f"},
                                                       {"One\nTwo.", "\"One\nTwo"},
                                                       {"One\rTwo.", "\"One\x7fwo"}};
  for (const auto& [glossary, note] : cases) EXPECT_EQ(MpxNoteText(glossary), note) << glossary;
}

TEST(MpxFields, RecordNumberIsTheNumberAheadOfTheFirstComma) {
  const std::pair<std::string, int> cases[] = {{"70,1", 70}, {" 71 ,x", 71}, {"70", 0},  {"", 0},
                                               {",70", 0},   {"MPX,4", 0},   {"2.5,", 2}};
  for (const auto& [line, expected] : cases) EXPECT_EQ(RecordNumber(line), expected) << line;
}

TEST(MpxFields, StandBetweenCommasAndQuotesCountInSomeOfThem) {
  const std::tuple<std::string, int, std::string, std::string> cases[] = {
      {"70,5,6", 3, "", ""},  // the last field is never found
      {"70,5,6,\"Weld, cut\",2d", 4, "\"Weld, cut", "Weld, cut"},
      {"70,5,6,\"Weld, cut\",2d,Yes", 5, "2d", "2d"},
      {"70,5,\"a,b\",c,", 3, "\"a,b", "a,b"},
      {"70,2,3,4,5,6,7,\"1,2\",9,", 9, "9", ""},  // quotes in field 8
      {"70,2,3,4,5,6,7,\"\",9,", 9, "9", "9"},
      {"70,2,3,4,5,6,7,8,\"1,2\",10,", 9, "\"1", "1,2"},  // and in field 9
      {"70,2,3,4,5,6,7,8,\"1,2,3", 9, "\"1", ""},
      {"70,5,6,\"Weld,2d,Yes,1,", 6, "", ""},  // never closed
      {"70,5,6,\"Weld\"", 4, "", ""},          // closed by the line's last character
  };
  for (const auto& [line, n, field, predecessors] : cases) {
    SCOPED_TRACE(line);
    EXPECT_EQ(std::get<std::string>(GetField(line, n)), field);
    EXPECT_EQ(std::get<std::string>(GetPredecessorField(line, n)), predecessors);
  }
  EXPECT_EQ(GetLastField("70,1,12"), "12");
  EXPECT_EQ(GetLastField("70"), "");
}

TEST(MpxFields, NamesThatTheModelCannotHoldAreRefused) {
  const auto expectBox = [](const NameRefusal& refusal, const std::string& titleEnd,
                            const std::string& rule, const std::string& name) {
    EXPECT_EQ(refusal.title, "Project to Celvar Translator" + titleEnd);
    EXPECT_EQ(refusal.text, "Merivane requires that " + rule + ".  Please change '" + name + "'.");
  };
  const std::string quotes = "Task and Resource names do not have double quotes";
  for (const std::string line :
       {"70,1,1,\"a\"\"b\",2d,", "70,1,1,\"\",2d,", "70,1,\"\"\"a\",2d,"}) {
    expectBox(std::get<NameRefusal>(GetField(line, 5)), "", quotes, line);
    expectBox(std::get<NameRefusal>(GetPredecessorField(line, 5)), ".", quotes, line);
  }
  expectBox(RefusalOfTaskName("\"Weld").value(), ". ", "Task names do not have commas", "\"Weld");
  for (const std::string name : {"Welder, senior", "Welder \"A\""}) {
    expectBox(RefusalOfResourceName(name).value(), ".",
              "Resource names do not have commas or double quotes", name);
  }
}

TEST(MpxFields, DurationsAreDaysWithTwoDecimalsInTheUnitOfTheFileOrTheirOwn) {
  constexpr std::int16_t kMinutes = 0, kHours = 1, kDays = 2, kWeeks = 3, kNone = 9;
  const std::tuple<std::string, std::int16_t, std::string> cases[] = {
      {"480", kMinutes, "1.00"},    {"8", kHours, "1.00"},    {"3", kDays, "3.00"},
      {"2", kWeeks, "10.00"},       {"7", kNone, "7.00"},     {"960m", kDays, "2.00"},
      {"16h", kMinutes, "2.00"},    {"2d", kMinutes, "2.00"}, {"1w", kMinutes, "5.00"},
      {"0.005d", kMinutes, "0.01"}, {"16H", kDays, "16.00"},  {"3ed", kDays, "1.00"},
      {"16eh", kDays, "1.00"},      {"2mo", kDays, "1.00"},   {"two days", kDays, "1.00"},
      {"d", kDays, "1.00"},         {"", kDays, "1.00"}};
  for (const auto& [text, unitOfFile, days] : cases) {
    EXPECT_EQ(ConvertDuration(text, unitOfFile), days) << text << " in a file of " << unitOfFile;
  }
}

TEST(MpxFields, AStartDateBeginsAtTheFirstDigit) {
  EXPECT_EQ(ExtractStartDate("Fri 17/10/14", 437), "17/10/14");
  EXPECT_EQ(ExtractStartDate("2003-01-07 8:00", 932), "2003-01-");
  EXPECT_EQ(ExtractStartDate("Fri 7", 437), "") << "a digit at the end alone doesn't count";
  EXPECT_EQ(ExtractStartDate("", 932), "");
}

}  // namespace
}  // namespace merivane::test
