#include "predecessors.h"

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

// The list stands on task 12, occurrence 2.
class Predecessors : public ScenarioFixture {};

TEST_P(Predecessors, AreFoldedIntoTheScenario) {
  Recordset task;
  task.OpenDynamic("select * from ProjectAct where PID = 12", State().gInterimConn.get());
  task.SetField("Predecessor", GetParam().argument);
  task.Update();
  const bool single = CountPredecessors(GetParam().argument) == 1;
  Check([&] {
    single ? ApplySinglePredecessor(State(), task) : ApplySeveralPredecessors(State(), task);
  });
}

const char* const kCases = R"(FreeEndsGetADirectLink | 11FS+2d
-> = | 51 p1>p2 Precedence | 51
StartToFinishIsPassedOver | 11sf
-> = | = | 50
TheDirectLinkIsKnown | 11 | | 31 P1>P2
-> = | = | 50
AnyChainOfAndJunctionsIsALink | 11 | 21 Fan In, Async. AND; 22 Fan In, Sync. AND | 31 P1>J21; 32 J21>J22; 33 J22>P2
-> = | = | 50
OrInsideALongerWordCounts | 11 | 21 Fan In, Async. XOR | 31 P3>J21; 32 P1>J21; 33 J21>P2
-> = | = | 50
TheKindOfJunctionIsReadAsWritten | 11 | 21 Fan In, Async. and | 31 P1>J21; 32 J21>P2
-> + 51 Fan Out, Async. AND | 31 P1>J51~; 52 J51>J21; 53 J51>P2 | 53
TheWayBackFollowsTheFirstLinkAlone | 11 | 21 Fan In, Async. AND; 22 Fan In, | 31 J22>J21; 32 P1>J21; 33 J21>P2
-> + 51 Fan Out, Async. AND | 31 J22>J21; 32 P1>J51~; 52 J51>J21; 53 J51>P2 | 53
ANullOriginTypeIsNoJunction | 11 | 21 Fan In, Sync. AND | 31 P1>J21; 32 -21>P2
-> + 51 Fan Out, Async. AND | 31 P1>J51~; 32 -21>P2; 52 J51>J21 | 52
ACircleOfJunctionsIsAnError | 11 | 21 Fan In, Async. AND; 22 Fan In, Async. AND | 31 J21>P2; 32 J22>J21; 33 J21>J22
-> = | = | 50 | 28
ALinkFromAProcessStopsTheRun | 11 | | 31 P3>P2
-> = | = | 50 | 3021
ALinkFromASynchronisedStartStays | 11 | 21 Fan Out, Sync. AND | 31 J21>P2; 32 P3>J21
-> + 51 Fan In, Async. AND | 31 J51~>P2; 32 P3>J21; 52 J21>J51; 53 P1>J51 | 53
AnotherScenarioIsDropped | 17
-> = | = | 50
AnUnknownTaskIsDropped | 19
-> = | = | 50
ANumberIsNeededInFront | Task 11
-> = | = | 50
NumbersRoundAndEndAt16Bits | 32767.5
-> = | = | 50 | 6
SeveralNewOnesShareAFanIn | 11,13+1d
-> + 51 Fan In, Async. AND | 52 J51>u2; 53 P1>J51; 54 P3>J51 | 54
OneThatHasASuccessorGetsAFanOut | 11,13,14 | | 31 P3>P5; 32 P6>P2
-> 51 Fan In, Async. AND; 54 Fan Out, Async. AND | 31 P3>J54~; 32 J51~>P2; 52 P6>J51; 53 P1>J51; 55 J54>P5; 56 J54>J51; 57 P4>J51 | 57
TheSameOneTwiceIsNewTwice | 11,11
-> 51 Fan In, Async. AND; 54 Fan Out, Async. AND | 52 J51>u2; 53 P1>J54~; 55 J54>J51; 56 J54>J51 | 56
OneNewBesideAKnownOneJoinsItsLink | 11,13 | | 31 P1>P2
-> 51 Fan In, Async. AND | 31 J51~>P2; 52 -1>J51 [Orgin_Type P]; 53 P3>J51 | 53
SynchronisedEntriesComeFirst | 13,11FF
-> 51 Fan In, Sync. AND | 52 P2>J51; 53 P1>J51; 54 p3>p2 Precedence | 54
AStartEntryHasTheTaskFirst | 11ss+1d,13sf | | 31 P4>P2
-> 51 Fan Out, Sync. AND | 52 J51>P2; 53 J51>P1 | 53
WhatThePlanDoesNotPlaceHereIsDropped | 17,18,19
-> = | = | 50
ACommaAtAnEntrysFrontBelongsToIt | 11,,13
-> = | 51 p1>p2 Precedence | 51
)";

INSTANTIATE_TEST_SUITE_P(Cases, Predecessors, testing::ValuesIn(Cases(kCases)), NameOf);

}  // namespace
}  // namespace merivane::test
