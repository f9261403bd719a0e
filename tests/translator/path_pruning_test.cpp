#include "model_fixture.h"

namespace merivane::test {

namespace {

constexpr const char* kFirstWay = "Take L100002 until J200\r\n";

struct Way {
  const char* type = "XOR";
  const char* glossary = kFirstWay;
  const char* plan = "U1 U2 U3 U4 U5 U9";
  const char* fact = "PATHAT";
};

// A fan-out J100 with the ways U2, U3 and U4, U5, which meet in the fan-in J200 in front of U9.
class PathPruning : public ModelFixture, public ::testing::WithParamInterface<Way> {
 protected:
  void TwoWays(const Way& way = {}) {
    Scenario(1, "Main");
    Uobs({1, 2, 3, 4, 5, 9});
    Junction(100, "Fan Out", way.type);
    Junction(200, "Fan In", "XOR");
    Links({{1, 100}, {100, 2}, {2, 3}, {3, 200}, {100, 4}, {4, 5}, {5, 200}, {200, 9}});
    Add("Fact_Pool", {{"Num", 1}, {"Name", "Way"}, {"Glossary", way.glossary}});
    Add("Facts_in_Junction",
        {{"Fact_Num", 1}, {"Fact_Name", way.fact}, {"Junction_Num", 100}, {"Scenario_Num", 1}});
  }
};

TEST_P(PathPruning, LeavesOutTheOtherWayUpToTheMeetingJunction) {
  TwoWays(GetParam());
  Translate();
  EXPECT_EQ(Plan(), GetParam().plan);
}

INSTANTIATE_TEST_SUITE_P(Ways, PathPruning,
                         ::testing::Values(Way{"XOR", kFirstWay, "U1 U2 U3 U9"},
                                           Way{"Async. OR", kFirstWay, "U1 U2 U3 U9"},
                                           Way{"Sync. OR", kFirstWay, "U1 U2 U3 U9"},
                                           Way{"Async. AND", kFirstWay},
                                           Way{"XOR", kFirstWay, Way{}.plan, "Path"},
                                           Way{"XOR", "Take L100002 until J200"},
                                           Way{"XOR", "Take Lx until J200\r\n"},
                                           Way{"XOR", "Take L100002 until Jx\r\n"}));

TEST_F(PathPruning, TakesThePathOfTheJunctionBeforeWhereAJunctionHasNoFact) {
  TwoWays();
  Junction(101, "Fan Out", "XOR");
  Links({{101, 3}});
  Translate();
  EXPECT_EQ(Plan(), "U1 U2 U9");
}

TEST_F(PathPruning, TakesDecompositionsAlongButNothingBehindAFurtherJunction) {
  TwoWays();
  Scenario(2, "Of four", 4);
  Uob(41, 2);
  Uob(6);
  Junction(300, "Fan Out", "Async. AND");
  Links({{4, 300}, {300, 6}});
  Translate();
  EXPECT_EQ(Plan(), "U1 U2 U3 U6 U9");
}

TEST_F(PathPruning, EndsACircleOfUobs) {
  TwoWays();
  Links({{5, 4}});
  EXPECT_EQ(AbortOf(), ErrorText(kSubscriptOutOfRange));
}

}  // namespace
}  // namespace merivane::test
