#include "mpx/mpx_fields.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "runtime/run_time_error.h"

namespace merivane::test {

using namespace runtime;
using namespace mpx;

namespace {

TEST(MpxFields, RecordNumberIsTheNumberAheadOfTheFirstComma) {
  const std::vector<std::pair<std::string, int>> cases = {
      {"70,1", 70}, {" 71 ,x", 71}, {"70", 0}, {"", 0}, {",70", 0}, {"MPX,4", 0}, {"2.5,", 2}};
  for (const auto& [line, expected] : cases) EXPECT_EQ(RecordNumber(line), expected) << line;
  EXPECT_THROW(RecordNumber("70000,1"), RunTimeError);
}

TEST(MpxFields, FieldsStandBetweenCommasAndQuotesCountInSomeOfThem) {
  struct Case {
    std::string line;
    int n;
    std::string field, predecessors;
  };
  const std::vector<Case> cases = {
      {"70,5,6", 1, "70", "70"},
      {"70,5,6", 3, "", ""},  // the last field is never found
      {"70,5,6,\"Weld, cut\",2d", 4, "\"Weld, cut", "Weld, cut"},
      {"70,5,6,\"Weld, cut\",2d,Yes", 5, "2d", "2d"},
      {"70,5,\"a,b\",c,", 3, "\"a,b", "a,b"},
      {"70,2,3,4,5,6,7,\"1,2\",9,", 9, "9", ""},  // quotes in field 8
      {"70,2,3,4,5,6,7,\"\",9,", 9, "9", "9"},
      {"70,2,3,4,5,6,7,8,\"1,2\",10,", 9, "\"1", "1,2"},  // and in field 9
      {"70,2,3,4,5,6,7,8,\"1\",10,", 9, "\"1\"", "1"},
      {"70,2,3,4,5,6,7,8,\"1,2,3", 9, "\"1", ""},
      {"70,5,6,\"Weld,2d,Yes,1,", 4, "", ""},  // never closed
      {"70,5,6,\"Weld,2d,Yes,1,", 6, "", ""},
      {"70,5,6,\"Weld\"", 4, "", ""},  // closed by the line's last character
      {std::string(1000000, ','), 42, "", ""},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(std::get<std::string>(GetField(test.line, test.n)), test.field)
        << test.line.substr(0, 80);
    EXPECT_EQ(std::get<std::string>(GetPredecessorField(test.line, test.n)), test.predecessors)
        << test.line.substr(0, 80);
  }
  EXPECT_EQ(GetLastField("70,1,12") + "|" + GetLastField("70,1,") + "|" + GetLastField("70"),
            "12||");
}

TEST(MpxFields, NamesThatTheModelCannotHoldAreRefused) {
  const auto boxOf = [](const auto& refusal) { return refusal.title + "|" + refusal.text; };
  const std::string text =
      "|Merivane requires that Task and Resource names do not have double quotes.  Please change '";
  for (const std::string line :
       {"70,1,1,\"a\"\"b\",2d,", "70,1,1,\"\",2d,", "70,1,\"\"\"a\",2d,"}) {
    for (const auto& [take, end] :
         {std::pair{&GetField, ""}, std::pair{&GetPredecessorField, "."}}) {
      EXPECT_EQ(boxOf(std::get<NameRefusal>(take(line, 5))),
                "Project to Celvar Translator" + (end + text) + line + "'.");
    }
  }
  EXPECT_EQ(boxOf(RefusalOfTaskName("\"Weld, cut").value()),
            "Project to Celvar Translator. |Merivane requires that Task names do not have commas.  "
            "Please change '\"Weld, cut'.");
  for (const std::string name : {"Welder, senior", "Welder \"A\""}) {
    EXPECT_EQ(boxOf(RefusalOfResourceName(name).value()),
              "Project to Celvar Translator.|Merivane requires that Resource names do not have "
              "commas or double quotes.  Please change '" +
                  name + "'.");
  }
}

}  // namespace
}  // namespace merivane::test
