#include "model_fixture.h"

namespace merivane::test {

namespace {

class Predecessors : public ModelFixture {
 protected:
  Predecessors() { Scenario(1, "Main"); }

  // MSP_LINKS as "predecessor>successor:type", in order.
  std::string PlanLinks() {
    std::string links;
    for (const Row& row : Rows(Model(), "select * from MSP_LINKS")) {
      links += " " + Joined(row[2]) + ">" + Joined(row[3]) + ":" + Joined(row[4]);
    }
    return links;
  }
  // The Predecessors field of each record 70, in brackets.
  std::string InFile() {
    std::string fields;
    for (const std::string& record : Records("70,")) {
      const std::size_t begin = record.find(",1,,") + 4;  // behind outline level and baseline
      fields += "[" + record.substr(begin, record.find(",,", begin) - begin) + "]";
    }
    return fields;
  }
};

TEST_F(Predecessors, ComeDirectlyAndOnEachWayThroughJunctions) {
  Uobs({1, 2, 3, 4});
  Uob(5, 1, {{"Send_to_Project", 0}});
  for (const int num : {100, 101, 102}) Junction(num, "Fan In", "XOR");
  Links({{1, 4}, {100, 4}, {2, 100}, {101, 100}, {102, 100}, {3, 101}, {101, 102}, {5, 100}});
  Links({{5, 4}, {103, 4}});  // neither is in the plan
  Translate(mpxPath);
  EXPECT_EQ(PlanLinks(), " 1>4:1 2>4:1 3>4:1 3>4:1");
  EXPECT_EQ(InFile(), "[][][][\"1,2,3,3\"]");
  EXPECT_EQ(ColumnOf(Model(), "LINK_UID", "MSP_LINKS"), (Values{1, 2, 3, 4}));
  EXPECT_EQ(ColumnOf(Model(), "PROJ_EXT_EDITED", "MSP_PROJECTS"), Values{-1});
}

TEST_F(Predecessors, OfSyncAndNameTheOtherBranchesOnTheFirst) {
  Uobs({1, 2, 3, 4, 6, 7, 8});
  Junction(100, "Fan Out", "Sync. AND");
  Junction(200, "Fan In", "Sync. AND");
  Junction(300, "Fan Out", "XOR");
  Links({{1, 100}, {100, 2}, {100, 3}, {100, 4}, {3, 300}, {6, 200}, {7, 200}, {8, 6}});
  Links({{100, 200}});  // no UOB at the far end
  Translate(mpxPath);
  EXPECT_EQ(PlanLinks(), " 1>2:1 2>3:3 2>4:3 1>3:1 1>4:1 7>5:1 5>6:0");
  EXPECT_EQ(InFile(), "[][\"1,3SS, 4SS\"][\"1\"][\"1\"][\"7,6FF\"][][]");
}

TEST_F(Predecessors, OfSyncAndPassABranchBehindAnother) {
  Uobs({1, 2, 3});
  Junction(100, "Fan Out", "Sync. AND");
  Junction(200, "Fan In", "Sync. AND");
  Links({{100, 1}, {1, 200}, {2, 200}, {3, 200}});
  Translate();
  EXPECT_EQ(Activities("FFRels"), (Values{Value(), "1FF, 3FF", Value()}));
}

}  // namespace
}  // namespace merivane::test
