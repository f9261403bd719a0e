// The sample models read from their first line to their last.
#include "reader_fixture.h"

namespace merivane::test {

namespace {

TEST_F(ReaderTest, SamplesReadWhole) {
  const std::vector<std::pair<std::string, std::vector<std::size_t>>> samples = {
      {"onboarding.txt", {5, 4, 0, 1, 1, 5, 11, 2, 0, 7, 1}},
      {"festival.txt", {22, 8, 3, 1, 5, 23, 46, 10, 1, 33, 1}},
      {"clinic.txt", {9, 4, 2, 1, 3, 11, 22, 2, 1, 11, 0}},
      {"bakery.txt", {7, 4, 0, 1, 2, 7, 15, 1, 0, 6, 0}},
  };
  for (const auto& [name, expected] : samples) {
    ++State().gMspProjId;
    EXPECT_THAT(ReadBytes(ReadFile(MERIVANE_SAMPLES "/" + name)), IsEmpty()) << name;
    EXPECT_EQ(RowCounts(), expected) << name;
  }
}

}  // namespace
}  // namespace merivane::test
