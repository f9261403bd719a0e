#include "rewire_precedence.h"

#include "scenario_fixture.h"

namespace merivane::test {

using namespace roundtrip;

namespace {

// From occurrence 1 to the one that the case names.
class Precedence : public ScenarioFixture {};

TEST_P(Precedence, GoesThroughJunctions) {
  if (GetParam().name == "TheCounterEnds") SetCounter(32766);
  Check([&] { ConnectThroughJunctions(State(), 1, ToInt16(GetParam().argument)); });
}

const char* const kCases = R"(BothEndsFree | 2
-> = | 51 P1>P2 | 51
ATaskBeforeItself | 1
-> = | = | 50
AFanInTakesTheLink | 2 | 21 Fan In, Async. AND | 31 P3>J21; 32 J21>P2
-> = | + 51 P1>J21 | 51
AFanOutGivesTheLink | 2 | 21 Fan Out, Sync. AND | 31 P1>J21; 32 J21>P3
-> = | + 51 J21>P2 | 51
LinkedJunctionsStay | 2 | 21 Fan Out, Async. AND; 22 Fan In, Async. AND | 31 P1>J21; 32 J21>J22; 33 J22>P2
-> = | = | 50
BothEndsBetweenProcesses | 2 | | 31 P1>P3; 32 P4>P2
-> 51 Fan Out, Async. AND; 53 Fan In, Async. AND | 31 P1>J51~; 32 J53~>P2; 52 J51>P3; 54 -4>J53 [Orgin_Type P]; 55 J51>J53 | 55
AStartJunctionOfAnyKindTakesTheLink | 2 | 21 Fan Out, Async. OR | 31 J21>P2; 32 J21>P3
-> = | + 51 P1>J21 | 51
AnotherJunctionThatIsFedIsNoPlace | 2 | 21 Fan In, | 31 P3>J21; 32 J21>P2
-> + 51 Fan In, Async. AND | 31 P3>J21; 32 J51~>P2; 52 J21>J51; 53 P1>J51 | 53
OnlyTheFirstLinkCounts | 2 | 21 Fan Out, Async. AND | 31 P1>P3; 32 P1>J21
-> + 51 Fan Out, Async. AND | 31 P1>J51~; 32 P1>J21; 52 J51>P3; 53 J51>P2 | 53
TheCounterEnds | 2 | | 31 P1>P3
-> 32767 Fan Out, Async. AND | 31 P1>J32767~ | 32766 | 6
)";

INSTANTIATE_TEST_SUITE_P(Cases, Precedence, testing::ValuesIn(Cases(kCases)), NameOf);

}  // namespace
}  // namespace merivane::test
