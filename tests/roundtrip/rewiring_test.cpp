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
#include "error_of.h"
#include "merge_steps.h"
#include "mpx_fixture.h"
#include "runtime/text.h"

namespace merivane::test {

using namespace roundtrip;

namespace {

TEST(CountPredecessors, CountsCommasUnlessTheFirstStandsInFront) {
  const std::vector<std::pair<Value, int>> cases = {
      {Value(), 0}, {"", 0},     {"5", 1},    {"5,7", 2},
      {"5,,7", 3},  {"5,7,", 3}, {",5,7", 1}, {"5" + std::string(32766, ','), 32767}};
  for (const auto& [text, count] : cases) EXPECT_EQ(CountPredecessors(text), count) << count;
  EXPECT_THROW(CountPredecessors("5" + std::string(32767, ',')), RunTimeError);
}

struct MergeCase {
  std::string name, argument, junctions, links, after;
};

void PrintTo(const MergeCase& example, std::ostream* out) { *out << example.name; }
std::string NameOf(const testing::TestParamInfo<MergeCase>& info) { return info.param.name; }

std::vector<std::string> Split(const std::string& list, char separator) {
  std::vector<std::string> entries;
  std::istringstream in(list);
  for (std::string entry; std::getline(in, entry, separator);) entries.push_back(Trim(entry));
  return entries;
}

void Append(std::string& list, const std::string& entry) {
  list += list.empty() ? entry : "; " + entry;
}

std::string Expected(const std::string& text, std::string before) {
  if (text.starts_with('+')) Append(before, Trim(text.substr(1)));
  return text.starts_with('+') || text == "=" ? before : text;
}

std::vector<MergeCase> Cases(const std::string& table) {
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

const std::map<char, Value> kTypes = {{'P', "Process-Occurrence"},
                                      {'p', "Process-Occurrence "},
                                      {'u', "Process_Occurrence"},
                                      {'J', "Junction"},
                                      {'-', Value()}};

// The argument is a step and what it works on: the list of task 12 (occurrence 2), the occurrence
// that occurrence 1 is to come before, or the two tasks of a synchronised pair, of which
// occurrence 1 (task 11) is the predecessor and 2 (12) the task whose list names it.
class Rewiring : public MpxFixture, public testing::WithParamInterface<MergeCase> {
 protected:
  Rewiring() {
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

  void ApplyPredecessors(const std::string& list) {
    Recordset task;
    task.OpenDynamic("select * from ProjectAct where PID = 12", &Interim());
    task.SetField("Predecessor", list);
    task.Update();
    CountPredecessors(list) == 1 ? ApplySinglePredecessor(State(), task)
                                 : ApplySeveralPredecessors(State(), task);
  }

  void AddLink(const std::string& text, int scenario, int project) {
    std::istringstream in(text);
    int number = 0, origin = 0, destination = 0;
    char from = 0, arrow = 0, to = 0;
    in >> number >> from >> origin >> arrow >> to >> destination;
    Add("Links_in_Scenario Msp_ProjID Scenario_Num Num Origin_Num Origin_Type Origin_Name "
        "Destination_Num Destination_Type Destination_Name",
        {{project, scenario, number, origin, kTypes.at(from), "before", destination, kTypes.at(to),
          "before"}});
  }

  static std::string LetterOf(const Value& type) {
    for (const auto& [letter, known] : kTypes) {
      if (type == known) return {letter};
    }
    return Shown(type);
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

TEST_P(Rewiring, ChangesTheScenario) {
  static const std::map<std::string, void (*)(ProjectToModel&, std::int16_t, std::int16_t)> joins =
      {{"JoinFinishes", &JoinFinishes},
       {"JoinStarts", &JoinStarts},
       {"JoinFinishesByTask", &JoinFinishesByTask},
       {"JoinStartsByTask", &JoinStartsByTask}};
  const std::string argument = GetParam().argument;
  const std::vector<std::string> words = Split(argument, ' ');
  if (GetParam().name == "TheCounterEnds") Sql("update MSP_PROJECTS set KV7_PROJ_MAX_USE_ID=32766");
  for (const std::string& text : Split(GetParam().junctions, ';')) {
    const std::size_t comma = text.find(',');
    const std::string type = Trim(text.substr(comma + 1));
    Add("Junctions_in_Scenario Msp_ProjID Scenario_Num Num Cardinality Type",
        {{1, 3, std::stoi(text), text.substr(3, comma - 3), type.empty() ? Value() : type}});
  }
  for (const std::string& text : Split(GetParam().links, ';')) AddLink(text, 3, 1);
  const int error = std::abs(ErrorOf([&] {
    if (words[0] == "Predecessors") {
      ApplyPredecessors(argument.substr(argument.find(' ') + 1));
    } else if (words[0] == "Connect") {
      ConnectThroughJunctions(State(), 1, ToInt16(words[1]));
    } else {
      joins.at(words[0])(State(), ToInt16(words[1]), ToInt16(words[2]));
    }
  }));
  EXPECT_EQ(Description() + std::to_string(error), GetParam().after);
  EXPECT_EQ(Table("Num from Links_in_Scenario where Scenario_Num = 9 or Msp_ProjID = 2"),
            "91\n92\n");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Rewiring,
    testing::ValuesIn(Cases(ReadFile(MERIVANE_SAMPLES "/../tests/roundtrip/rewiring_cases.txt"))),
    NameOf);

}  // namespace
}  // namespace merivane::test
