#include <sstream>

#include "writer_fixture.h"

namespace merivane::test {

namespace {

struct Plan {
  const char* name;
  const char* outlines;  // of tasks 1, 2, ...
  const char* links;     // of LINK_UID 1, 2, ...: predecessor, type, successor
  const char* expected;  // junctions and links of each scenario
};

void PrintTo(const Plan& plan, std::ostream* out) { *out << plan.name; }

int LinkType(const std::string& name) {
  return name == "SS" ? 3 : name == "FS" ? 1 : name == "SF" ? 2 : 0;
}

// "4J1:Fan Out:Async. AND" for a junction, "5:1>4" for a link, "Scenario  2" in front of the
// further scenarios, "cut" for one that a failure has ended.
std::string Summary(const std::string& text) {
  std::string summary;
  std::istringstream lines(text);
  bool open = false;
  for (std::string line; std::getline(lines, line);) {
    const auto behind = [&](const char* keyword) {
      const bool found = line.starts_with(keyword);
      if (found) line.erase(0, std::string(keyword).size());
      return found;
    };
    if (behind("Junction ") && line != "List") summary += " " + line;
    if (behind("ID ")) summary += line;
    if (behind("Cardinality:  ") || behind("Type:  ")) summary += ":" + line;
    if (behind("Link ") && line != "List") summary += " " + line;
    if (behind("  Origin  #")) summary += ":" + line;
    if (behind("  Destination  #")) summary += ">" + line;
    if (open && line.starts_with("Scenario  ")) summary += " cut";
    if (line.starts_with("Scenario  ") && line != "Scenario  1") summary += " " + line;
    if (line.starts_with("Scenario  ")) open = true;
    if (line == "End  Scenario") open = false;
  }
  return summary + (open ? " cut" : "");
}

class LinksToJunctions : public WriterFixture, public ::testing::WithParamInterface<Plan> {};

TEST_P(LinksToJunctions, OfAPlan) {
  std::istringstream outlines(GetParam().outlines);
  int uid = 0;
  for (std::string outline; outlines >> outline;) AddTask(++uid, outline);
  std::istringstream links(GetParam().links);
  uid = 0;
  std::string type;
  for (int from = 0, to = 0; links >> from >> type >> to;) AddLink(++uid, from, to, LinkType(type));
  EXPECT_EQ(Summary(Part(Generate(), "Scenario List\n")), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, LinksToJunctions,
    ::testing::Values(
        Plan{"ChainIsPlainLinks", "1 2 3", "1 FS 2 2 FS 3", " 4:1>2 5:2>3"},
        Plan{"StartToFinishIsPassedOver", "1 2", "1 SF 2", ""},
        Plan{"TwoSuccessorsFanOut", "1 2 3", "1 FS 2 1 FS 3",
             " 4J1:Fan Out:Async. AND 5:1>4 6:4>2 7:4>3"},
        Plan{"FanInOfATaskComesBeforeItsFanOut", "1 2 3 4 5", "1 FS 3 2 FS 3 3 FS 4 3 FS 5",
             " 6J1:Fan In:Async. AND 10J2:Fan Out:Async. AND 7:6>3 8:1>6 9:2>6 11:3>10 12:10>4 "
             "13:10>5"},
        Plan{
            "RowOfAFanOutAndAFanInGivesBothPaths", "1 2 3 4", "1 FS 3 1 FS 4 2 FS 4",
            " 5J1:Fan Out:Async. AND 9J2:Fan In:Async. AND 6:1>5 7:5>3 8:5>4 10:9>4 11:1>9 12:2>9"},
        Plan{"SingleSuccessorThatIsUsedHidesTheSinglePredecessor", "1 2.1 3 4 2",
             "2 FS 3 3 FS 4 1 FS 4", " 6J1:Fan In:Async. AND 7:6>4 8:3>6 9:1>6 Scenario  2 10:2>3"},
        Plan{"StartTogetherBehindAFanOut", "1 2 3", "1 FS 2 1 FS 3 2 SS 3",
             " 4J1:Fan Out:Sync. And 5:1>4 6:4>2 7:4>3"},
        Plan{"StartTogetherReplacesAPlainLink", "1 2 3 4 5 6", "4 FS 5 4 FS 6 1 FS 2 2 SS 3",
             " 7J1:Fan Out:Async. AND 12J2:Fan Out:Sync. And 8:4>7 9:7>5 10:7>6 13:1>12 14:12>2 "
             "15:12>3"},
        Plan{"StartTogetherJoinsTwoOrigins", "1 2 3 4 5 6 7", "5 FS 6 5 FS 7 1 FS 3 2 FS 4 3 SS 4",
             " 8J1:Fan Out:Async. AND 14J2:Fan Out:Sync. And 15J3:Fan In:Async. AND 9:5>8 10:8>6 "
             "11:8>7 16:1>15 17:2>15 18:15>14 19:14>3 20:14>4"},
        Plan{"SecondStartRowReusesTheJunctionOfTheSharedTask", "1 2 3", "1 SS 2 2 SS 3",
             " 4J1:Fan Out:Sync. And 5:4>1 6:4>2 7:4>3"},
        Plan{"FinishTogetherInFrontOfAFanIn", "1 2 3", "1 FS 3 2 FS 3 1 FF 2",
             " 4J1:Fan In:Sync. And 5:4>3 6:1>4 7:2>4"},
        Plan{"FinishTogetherMovesBothDestinations", "1 2 3 4 5 6 7",
             "5 FS 6 5 FS 7 1 FS 3 2 FS 4 1 FF 2",
             " 8J1:Fan Out:Async. AND 14J2:Fan In:Sync. And 15J3:Fan Out:Async. AND 9:5>8 10:8>6 "
             "11:8>7 16:15>3 17:15>4 18:14>15 19:1>14 20:2>14"},
        Plan{"DestinationOfAnEarlierFinishRowTakesPartAgain", "1 2 3 4 5 6 7 8",
             "6 FS 7 6 FS 8 2 FS 5 1 FF 2 3 FF 4",
             " 9J1:Fan Out:Async. AND 14J2:Fan In:Sync. And 18J3:Fan In:Sync. And 10:6>9 11:9>7 "
             "12:9>8 15:14>5 16:1>14 17:2>14 19:18>5 20:3>18 21:4>18"},
        Plan{"StartRowOnALinkFailsInAScenarioWithoutJunction", "1 2 3", "1 FS 2 2 SS 3", " cut"},
        Plan{"StartRowOfTheTopAddsItsJunctionToEveryScenario", "1 2 2.1", "1 SS 2",
             " 4J1:Fan Out:Sync. And 5:4>1 6:4>2 Scenario  2 7J1:Fan Out:Sync. And 8:7>1 9:7>2"},
        Plan{"LinkBeyondTheScenarioIsKept", "1 2 2.1", "3 FS 1", " 4:3>1 Scenario  2 5:3>1"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(WriterFixture, ElementNumbersEndAt16Bits) {
  Sql("with recursive n(i) as (select 1 union all select i + 1 from n where i < 32766)"
      " insert into MSP_TASKS (PROJ_ID, TASK_UID, TASK_OUTLINE_LEVEL) select 1, i, 9 from n");
  Sql("update MSP_TASKS set TASK_OUTLINE_LEVEL = 1, TASK_OUTLINE_NUM = TASK_UID"
      " where TASK_UID in (1, 2, 3)");
  AddLink(1, 1, 2, 1);
  AddLink(2, 2, 3, 1);
  EXPECT_EQ(Summary(Part(Generate(), "Scenario List\n")), " cut");
  EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>{"Overflow"});
}

}  // namespace
}  // namespace merivane::test
