#include <map>

#include "merge_steps.h"
#include "scenario_fixture.h"

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

// The argument is a step and what it works on: the list of task 12 (occurrence 2), the occurrence
// that occurrence 1 is to come before, or the two tasks of a synchronised pair, of which
// occurrence 1 (task 11) is the predecessor and 2 (12) the task whose list names it.
class Rewiring : public ScenarioFixture {
 protected:
  void ApplyPredecessors(const std::string& list) {
    Recordset task;
    task.OpenDynamic("select * from ProjectAct where PID = 12", &Interim());
    task.SetField("Predecessor", list);
    task.Update();
    CountPredecessors(list) == 1 ? ApplySinglePredecessor(State(), task)
                                 : ApplySeveralPredecessors(State(), task);
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
  if (GetParam().name == "TheCounterEnds") SetCounter(32766);
  Check([&] {
    if (words[0] == "Predecessors") {
      ApplyPredecessors(argument.substr(argument.find(' ') + 1));
    } else if (words[0] == "Connect") {
      ConnectThroughJunctions(State(), 1, ToInt16(words[1]));
    } else {
      joins.at(words[0])(State(), ToInt16(words[1]), ToInt16(words[2]));
    }
  });
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Rewiring,
    testing::ValuesIn(Cases(ReadFile(MERIVANE_SAMPLES "/../tests/roundtrip/rewiring_cases.txt"))),
    NameOf);

}  // namespace
}  // namespace merivane::test
