// The sample models read from their first line to their last.
#include "reader_fixture.h"

namespace merivane::test {
namespace {

TEST_F(ReaderTest, SamplesReadWhole) {
  const struct {
    const char* name;
    std::vector<std::size_t> rows;
  } samples[] = {
      {"onboarding.txt", {5, 4, 0, 1, 1, 5, 11, 2, 0, 7, 1}},
      {"festival.txt", {22, 8, 3, 1, 5, 23, 46, 10, 1, 33, 1}},
      {"clinic.txt", {9, 4, 2, 1, 3, 11, 22, 2, 1, 11, 0}},
      {"bakery.txt", {7, 4, 0, 1, 2, 7, 15, 1, 0, 6, 0}},
  };
  for (const auto& [name, expected] : samples) {
    ++State().gMspProjId;
    EXPECT_THAT(ReadBytes(ReadFile(std::string(MERIVANE_SAMPLES "/") + name)), IsEmpty()) << name;
    std::vector<std::size_t> rows;
    for (const char* table :
         {"Activity_Pool", "Object_Pool", "Fact_Pool", "Misc", "Scenario", "Activity_in_Scenario",
          "Object_in_Activity_in_Scenario", "Junctions_in_Scenario", "Facts_in_Junction",
          "Links_in_Scenario", "OSTN_List"}) {
      rows.push_back(
          CountRows(Model(), table, "where Msp_ProjID = " + std::to_string(State().gMspProjId)));
    }
    EXPECT_EQ(rows, expected) << name;
  }
}

}  // namespace
}  // namespace merivane::test
