#include "mpx/mpx_fields.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "platform/scripted_desktop.h"
#include "runtime/run_time_error.h"

namespace merivane {
namespace {

TEST(MpxFields, RecordNumberIsTheNumberAheadOfTheFirstComma) {
  const std::vector<std::pair<std::string, int>> cases = {
      {"70,1", 70}, {" 71 ,x", 71}, {"70", 0}, {"", 0},         {",70", 0},
      {"MPX,4", 0}, {"2.5,", 2},    {",", 0},  {"-3,-4,-5", -3}};
  for (const auto& [line, expected] : cases) EXPECT_EQ(RecordNumber(line), expected) << line;
  EXPECT_THROW(RecordNumber("70000,1"), RunTimeError);
}

struct FieldCase {
  const char* rule;
  std::string line;
  int n;
  std::string field;
  std::string predecessors;
};

TEST(MpxFields, FieldsStandBetweenCommasAndQuotesCountInSomeOfThem) {
  const std::string commas(1000000, ',');
  const std::vector<FieldCase> cases = {
      {"the record number is field 1", "70,5,6", 1, "70", "70"},
      {"plain", "70,5,6,Weld,2d,", 4, "Weld", "Weld"},
      {"empty", "70,,6", 2, "", ""},
      {"the last field is never found", "70,5,6", 3, "", ""},
      {"beyond the line", "70,5", 9, "", ""},
      {"a quoted name keeps its opening quote", "70,5,6,\"Weld, cut\",2d", 4, "\"Weld, cut",
       "Weld, cut"},
      {"its comma ends no field", "70,5,6,\"Weld, cut\",2d,Yes", 5, "2d", "2d"},
      {"quoted field 3", "70,5,\"a,b\",c,", 3, "\"a,b", "a,b"},
      {"quotes count in field 8 of a plain look-up alone", "70,2,3,4,5,6,7,\"1,2\",9,", 9, "9", ""},
      {"an empty pair is no fault in field 8", "70,2,3,4,5,6,7,\"\",9,", 9, "9", "9"},
      {"quotes don't count in field 9", "70,2,3,4,5,6,7,8,\"1,2\",10,", 9, "\"1", "1,2"},
      {"a list of one in quotes", "70,2,3,4,5,6,7,8,\"1\",10,", 9, "\"1\"", "1"},
      {"a list that is never closed", "70,2,3,4,5,6,7,8,\"1,2,3", 9, "\"1", ""},
      {"a quote that is never closed ends the line", "70,5,6,\"Weld,2d,Yes,1,", 4, "", ""},
      {"and what is behind it", "70,5,6,\"Weld,2d,Yes,1,", 6, "", ""},
      {"a quote closed at the line's end", "70,5,6,\"Weld\"", 4, "", ""},
      {"nothing but commas", commas, 42, "", ""},
      {"an empty line", "", 2, "", ""},
  };
  for (const FieldCase& test : cases) {
    ScriptedDesktop desktop;
    EXPECT_EQ(GetField(desktop, test.line, test.n), test.field) << test.rule;
    EXPECT_EQ(GetPredecessorField(desktop, test.line, test.n), test.predecessors) << test.rule;
    EXPECT_TRUE(desktop.shown.empty()) << test.rule;
  }
}

TEST(MpxFields, TheLastFieldStandsBehindTheLastComma) {
  EXPECT_EQ(GetLastField("70,1,12"), "12");
  EXPECT_EQ(GetLastField("70,1,"), "");
  EXPECT_EQ(GetLastField("70"), "");
}

std::string BoxOf(const std::function<void(Desktop&)>& action) {
  ScriptedDesktop desktop;
  desktop.pointer = kPointerHourglass;
  try {
    action(desktop);
  } catch (const ProgramEnd&) {
    const Message& box = std::get<ScriptedDesktop::ShownMessage>(desktop.shown.at(0)).message;
    EXPECT_EQ(box.icon, MessageIcon::kCritical);
    EXPECT_EQ(desktop.pointer, kPointerDefault);
    return box.title + "|" + box.text;
  }
  EXPECT_TRUE(desktop.shown.empty());
  return "";
}

TEST(MpxFields, QuotesInsideAQuotedNameEndTheProgram) {
  const std::string text =
      "Merivane requires that Task and Resource names do not have double quotes.  Please change '";
  for (const std::string line :
       {"70,1,1,\"a\"\"b\",2d,", "70,1,1,\"\",2d,", "70,1,\"\"\"a\",2d,"}) {
    EXPECT_EQ(BoxOf([&](Desktop& desktop) { GetField(desktop, line, 5); }),
              "Project to Celvar Translator|" + text + line + "'.");
    EXPECT_EQ(BoxOf([&](Desktop& desktop) { GetPredecessorField(desktop, line, 5); }),
              "Project to Celvar Translator.|" + text + line + "'.");
    EXPECT_EQ(BoxOf([&](Desktop& desktop) { GetField(desktop, line, 2); }), "");
  }
}

TEST(MpxFields, NamesThatTheModelCannotHoldEndTheProgram) {
  const auto task = [](const std::string& name) {
    return BoxOf([&](Desktop& desktop) { CheckTaskName(desktop, name); });
  };
  const auto resource = [](const std::string& name) {
    return BoxOf([&](Desktop& desktop) { CheckResourceName(desktop, name); });
  };
  EXPECT_EQ(task("Weld, cut"), "");
  EXPECT_EQ(task("\"Weld, cut"),
            "Project to Celvar Translator. |Merivane requires that Task names do not have commas.  "
            "Please change '\"Weld, cut'.");
  EXPECT_EQ(resource("Welder's mate"), "");
  for (const std::string name : {"Welder, senior", "Welder \"A\""}) {
    EXPECT_EQ(resource(name),
              "Project to Celvar Translator.|Merivane requires that Resource names do not have "
              "commas or double quotes.  Please change '" +
                  name + "'.");
  }
}

}  // namespace
}  // namespace merivane
