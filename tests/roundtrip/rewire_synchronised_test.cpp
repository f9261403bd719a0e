#include "rewire_synchronised.h"

#include <map>

#include "scenario_fixture.h"

namespace merivane::test {

using namespace roundtrip;

namespace {

// The argument is a routine and its two numbers. Occurrence 1 (task 11 of the plan) is the
// predecessor, 2 (12) the task whose list names it.
class SynchronisedTasks : public ScenarioFixture {};

TEST_P(SynchronisedTasks, MeetAtOneJunction) {
  static const std::map<std::string, void (*)(ProjectToModel&, std::int16_t, std::int16_t)> joins =
      {{"JoinFinishes", &JoinFinishes},
       {"JoinStarts", &JoinStarts},
       {"JoinFinishesByTask", &JoinFinishesByTask},
       {"JoinStartsByTask", &JoinStartsByTask}};
  const std::vector<std::string> call = Split(GetParam().argument, ' ');
  Check([&] { joins.at(call[0])(State(), ToInt16(call[1]), ToInt16(call[2])); });
}

const char* const kCases =
    R"(OnlyTheTasksFarEndIsKept | JoinFinishes 1 2 | 21 Fan Out, Async. OR | 31 P1>J21; 32 J21>P4; 33 P2>P5; 34 P6>P2
-> + 51 Fan In, Sync. AND | 32 J21>P4; 52 P1>J51; 53 J51>P5; 54 P2>J51 | 54
AJunctionAsKeptFarEndHasItsTypeElsewhere | JoinFinishes 1 2 | 22 Fan Out, Sync. AND | 31 P2>J22
-> + 51 Fan In, Sync. AND | 52 P1>J51; 53 J51>-22 [DestinationType J]; 54 P2>J51 | 54
AProcessBehindThePredecessorStopsTheRun | JoinFinishes 1 2 | | 31 P1>P3; 32 P4>P2
-> = | = | 50 | 3021
BothOnTheJoinLoseTheTasksPlace | JoinFinishes 1 2 | 21 Fan In, Sync. AND | 31 P1>J21; 32 P2>J21; 33 P4>P2
-> = | 31 P1>J21; 32 P2>J21 | 50
AFreeTaskComesToTheJoin | JoinFinishes 1 2 | 21 Fan In, Sync. AND | 31 P1>J21
-> = | + 51 P2>J21 | 51
ItsFarEndComesBehindTheJoin | JoinFinishes 1 2 | 21 Fan In, Sync. AND | 31 P1>J21; 32 P2>P5
-> = | 31 P1>J21; 51 J21>P5; 52 P2>J21 | 52
ASynchronisedFanOutBehindTakesTheFarEnd | JoinFinishes 1 2 | 21 Fan In, Sync. AND; 22 Fan Out, Sync. AND | 31 P1>J21; 32 J21>J22; 33 P2>P5
-> = | 31 P1>J21; 32 J21>J22; 51 J22>P5; 52 P2>J21 | 52
AnythingElseBehindGetsABranch | JoinFinishes 1 2 | 21 Fan In, Sync. AND; 22 Fan Out, Async. AND | 31 P1>J21; 32 J21>J22; 33 P2>P5
-> + 51 Fan Out, Async. AND | 31 P1>J21; 52 J51>P5; 53 J51>J22; 54 J21>J51; 55 P2>J21 | 55
ASecondLinkOutGoesBehindTheNewJoin | JoinFinishes 1 2 | 22 Fan In, | 31 P1>J22; 32 P1>P4; 33 P2>P5
-> + 51 Fan In, Sync. AND | 52 J51>P4; 53 P1>J51; 54 P2>J51 | 54
ThePredecessorComesToTheTasksJoin | JoinFinishes 1 2 | 21 Fan In, Sync. AND | 31 P2>J21; 32 J21>P5
-> = | + 51 P1>J21 | 51
ThePredecessorsOwnThirdLinkGivesTheBranch | JoinFinishes 1 2 | 21 Fan In, Sync. AND; 22 Fan Out, Async. AND | 31 P1>J22; 32 P1>P4; 33 P1>P6; 34 P2>J21; 35 J21>P5
-> + 51 Fan Out, Async. AND | 34 P2>J21; 35 J21>P5; 52 J51>P4; 53 J51>P6; 54 J21>J51; 55 P1>J21 | 55
TheTaskLosesItsLink | JoinStarts 1 2 | | 31 P3>P2; 32 P1>P4
-> 51 Fan Out, Sync. AND | 32 P1>P4; 52 J51>P1; 53 J51>P2 | 53
JunctionsAsTasksHaveTheirTypeElsewhere | JoinStarts 21 22 | 21 Fan In,; 22 Fan In, |
-> + 51 Fan Out, Sync. AND | 52 J51>-21 [DestinationType J]; 53 J51>-22 [DestinationType J] | 53
ALinkIntoThePredecessorStopsTheRun | JoinStarts 1 2 | 21 Fan Out, Sync. AND | 31 J21>P1; 32 P3>P2
-> = | = | 50 | 2147217900
ASecondLinkIntoTheTaskStopsTheRun | JoinStarts 1 2 | | 31 P3>P2; 32 P4>P2
-> = | 32 P4>P2 | 50 | 2147217900
AnUnknownTaskChangesNothing | JoinFinishesByTask 12 19 | | 31 P2>P4
-> = | = | 50
ATaskWithoutOccurrenceChangesNothing | JoinFinishesByTask 18 11 | | 31 P1>P4
-> = | = | 50
AProcessBehindTheTaskIsLost | JoinFinishesByTask 12 11 | | 31 P2>P4; 32 P6>P1
-> 51 Fan In, Sync. AND | 32 P6>P1; 52 P2>J51; 53 P1>J51 | 53
AnyFanInBecomesSynchronisedAndTheBranchAProcess | JoinFinishesByTask 12 11 | 21 Fan In, Async. AND | 31 P2>J21; 32 P3>J21; 33 J21>P4; 34 P1>P5
-> 21 Fan In, Sync. AND; 51 Fan Out, Async. AND | 31 P2>J21; 32 P3>J21; 52 J51>P5; 53 P51>P4; 54 J21>J51; 55 P1>J21 | 55
AProcessBehindTheListedPredecessorStopsTheRun | JoinFinishesByTask 12 11 | | 31 P1>P5; 32 P2>P4
-> = | 31 P1>P5 | 50 | 3021
ASecondLinkOutStopsTheRun | JoinFinishesByTask 12 11 | | 31 P2>P4; 32 P2>P5
-> 51 Fan In, Sync. AND | 52 J51>P5 | 50 | 3704
TheJoinsFarLinkIsNotSeenFromTheOtherSide | JoinFinishesByTask 12 11 | 21 Fan In, | 31 P1>J21; 32 J21>P4; 33 P2>P5; 34 P2>P6
-> 21 Fan In, Sync. AND | 31 P1>J21; 32 J21>P4; 51 J21>P6; 52 P2>J21 | 52
AnAsynchronousFanOutIsNoJoin | JoinStartsByTask 12 11 | 21 Fan Out, Async. AND | 31 J21>P2
-> + 51 Fan Out, Sync. AND | 52 J51>P2; 53 J51>P1 | 53
AMovedFarEndHasTheTasksType | JoinStartsByTask 12 11 | 22 Fan Out, Async. AND | 31 P4>P2; 32 J22>P2
-> + 51 Fan Out, Sync. AND | 52 P22>J51; 53 J51>P2; 54 J51>P1 | 54
ASynchronisedFanInBeforeTheJoinTakesTheFarEnd | JoinStartsByTask 12 11 | 21 Fan Out, Sync. AND; 22 Fan In, Sync. AND | 31 J21>P2; 32 J22>J21; 33 P5>P1
-> = | 31 J21>P2; 32 J22>J21; 51 P5>J22; 52 J21>P1 | 52
AnythingElseBeforeTheJoinGetsABranch | JoinStartsByTask 12 11 | 21 Fan Out, Sync. AND | 31 J21>P2; 32 P4>J21; 33 P5>P1
-> + 51 Fan In, Async. AND | 31 J21>P2; 52 P5>J51; 53 P4>J51; 54 J51>J21; 55 J21>P1 | 55
FromTheOtherSideItsTypeIsThatOfTheTasksFarEnd | JoinStartsByTask 12 11 | 21 Fan Out, Sync. AND; 22 Fan Out, Async. AND | 31 J21>P1; 32 J22>J21; 33 P4>P2; 34 P5>P2
-> + 51 Fan In, Async. AND | 31 J21>P1; 52 P5>J51; 53 P22>J51; 54 J51>J21; 55 J21>P2 | 55
AProcessBeforeThePredecessorStopsTheRun | JoinStartsByTask 12 11 | | 31 P4>P1; 32 P3>P2
-> = | 31 P4>P1 | 50 | 3021
)";

INSTANTIATE_TEST_SUITE_P(Cases, SynchronisedTasks, testing::ValuesIn(Cases(kCases)), NameOf);

}  // namespace
}  // namespace merivane::test
