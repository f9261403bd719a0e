// A scenario under merge in short notation, in a real database.
//
// Links:     "31 P1>J21; 32 J21>P2 Precedence": number, both ends with the letter of their type (P
//            process, J junction, p process with a blank behind, u with an underscore, - Null), the
//            link's type. A moved end, whose name was emptied, has a "~" behind it. A type in an
//            oddly spelt column stands in brackets.
// Junctions: "21 Fan In, Async. AND"; an empty type is Null.
// Cases:     two lines each, "name | argument | junctions | links" before, and behind them
//            "-> junctions | links | counter | error number": "=" as before, "+" and what is new.
//
// The plan's tasks 11 to 16 are the occurrences 1 to 6 of scenario 3, 17 is occurrence 7 of another
// scenario, 18 has no occurrence. The counter stands at 50.
#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "error_of.h"
#include "mpx_fixture.h"
#include "runtime/text.h"

namespace merivane::test {

struct MergeCase {
  std::string name, argument, junctions, links, after;
};

inline void PrintTo(const MergeCase& example, std::ostream* out) { *out << example.name; }
inline std::string NameOf(const testing::TestParamInfo<MergeCase>& info) { return info.param.name; }

inline std::vector<std::string> Split(const std::string& list, char separator) {
  std::vector<std::string> entries;
  std::istringstream in(list);
  for (std::string entry; std::getline(in, entry, separator);) entries.push_back(Trim(entry));
  return entries;
}

inline void Append(std::string& list, const std::string& entry) {
  list += list.empty() ? entry : "; " + entry;
}

inline std::string Expected(const std::string& text, std::string before) {
  if (text.starts_with('+')) Append(before, Trim(text.substr(1)));
  return text.starts_with('+') || text == "=" ? before : text;
}

inline std::vector<MergeCase> Cases(const std::string& table) {
  std::vector<MergeCase> cases;
  const std::vector<std::string> lines = Split(table, '\n');
  for (std::size_t i = 0; i + 1 < lines.size(); i += 2) {
    std::vector<std::string> before = Split(lines[i], '|'), after = Split(lines[i + 1], '|');
    before.resize(4);
    after.resize(4, "0");
    cases.push_back({before[0], before[1], before[2], before[3],
                     Expected(Trim(after[0].substr(2)), before[2]) + " | " +
                         Expected(after[1], before[3]) + " | " + after[2] + " | " + after[3]});
  }
  return cases;
}

class ScenarioFixture : public MpxFixture, public testing::WithParamInterface<MergeCase> {
 protected:
  ScenarioFixture() {
    State().gInterimConn = Connect();
    State().gInterimProjId = 1;
    State().gCurrentScenario = 3;
    Add("MSP_PROJECTS PROJ_ID KV7_PROJ_MAX_USE_ID KV7_PROJ_MAX_ACT_ID", {{1, 50, 0}});
    for (int use = 1; use <= 7; ++use) {
      Add("ProjectAct Msp_ProjID PID Text1", {{1, 10 + use, std::to_string(use)}});
      Add("MSP_TASKS Proj_ID TASK_UID KV7_PROCOCC_HEX KV7_SCENARIO_HEX",
          {{1, use, use, use == 7 ? 9 : 3}});
    }
    Add("ProjectAct Msp_ProjID PID", {{1, 18}});
    // The same occurrences, linked elsewhere: none of this may be seen or touched.
    AddLink("91 P1>P2", 9, 1);
    AddLink("92 P3>P2", 3, 2);
  }

  Connection& Interim() { return *State().gInterimConn; }

  void SetCounter(int last) {
    Recordset project;
    project.OpenDynamic("select * from MSP_PROJECTS", &Interim());
    project.SetField("KV7_PROJ_MAX_USE_ID", last);
    project.Update();
  }

  // Loads the parameter's scenario and compares what the step makes of it.
  void Check(const std::function<void()>& step) {
    for (const std::string& text : Split(GetParam().junctions, ';')) {
      const std::size_t comma = text.find(',');
      const std::string type = Trim(text.substr(comma + 1));
      Add("Junctions_in_Scenario Msp_ProjID Scenario_Num Num Cardinality Type",
          {{1, 3, std::stoi(text), text.substr(3, comma - 3), type.empty() ? Value() : type}});
    }
    for (const std::string& text : Split(GetParam().links, ';')) AddLink(text, 3, 1);
    const int error = std::abs(ErrorOf(step));
    EXPECT_EQ(Description() + std::to_string(error), GetParam().after);
    EXPECT_EQ(Rows(Interim(),
                   "select Num from Links_in_Scenario where Scenario_Num = 9 or Msp_ProjID = 2"),
              (std::vector<Row>{{91}, {92}}));
  }

 private:
  void AddLink(const std::string& text, int scenario, int project) {
    std::istringstream in(text);
    int number = 0, origin = 0, destination = 0;
    char from = 0, arrow = 0, to = 0;
    in >> number >> from >> origin >> arrow >> to >> destination;
    Add("Links_in_Scenario Msp_ProjID Scenario_Num Num Origin_Num Origin_Type Origin_Name "
        "Destination_Num Destination_Type Destination_Name",
        {{project, scenario, number, origin, TypeOf(from), "before", destination, TypeOf(to),
          "before"}});
  }

  static Value TypeOf(char letter) {
    if (letter == '-') return {};
    return letter == 'J' ? "Junction" : "Process-Occurrence";
  }
  static std::string LetterOf(const Value& type) {
    if (type == Value("Process-Occurrence ")) return "p";
    if (type == Value("Process_Occurrence")) return "u";
    return type == TypeOf('P')   ? "P"
           : type == TypeOf('J') ? "J"
           : type == TypeOf('-') ? "-"
                                 : Shown(type);
  }
  static std::string EndOf(Recordset& row, const std::string& end) {
    return LetterOf(row.Field(end + "_Type")) + Joined(row.Field(end + "_Num")) +
           (row.Field(end + "_Name") == Value("") ? "~" : "");
  }

  std::string Description() {
    const std::string here = " where Scenario_Num = 3 and Msp_ProjID = 1";
    std::string junctions, links;
    for (const Row& row :
         Rows(Interim(), "select Num, Cardinality, Type from Junctions_in_Scenario" + here)) {
      Append(junctions, Trim(Joined(row[0]) + " " + Joined(row[1]) + ", " + Joined(row[2])));
    }
    Recordset row;
    row.OpenStatic("select * from Links_in_Scenario" + here, &Interim());
    for (; !row.Eof(); row.MoveNext()) {
      Append(links, Trim(Joined(row.Field("Num")) + " " + EndOf(row, "Origin") + ">" +
                         EndOf(row, "Destination") + " " + Joined(row.Field("Type"))));
      for (const std::string column : {"Orgin_Type", "DestinationType"}) {
        const Value type = row.Field(column);
        if (!type.IsNull()) links += " [" + column + " " + LetterOf(type) + "]";
      }
    }
    const Value stored = ColumnOf(Interim(), "KV7_PROJ_MAX_USE_ID", "MSP_PROJECTS")[0];
    const auto& numbers = State().greatestNumbers;
    return junctions + " | " + links + " | " + Joined(numbers ? Value(numbers->use) : stored) +
           " | ";
  }
};

}  // namespace merivane::test
