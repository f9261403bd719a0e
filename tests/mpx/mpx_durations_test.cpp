#include "mpx/mpx_durations.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace merivane::test {

using namespace mpx;

namespace {

TEST(MpxDurations, AreDaysWithTwoDecimalsInTheUnitOfTheFileOrTheirOwn) {
  const auto days = [](const std::string& text, std::int16_t unit) {
    return ConvertDuration(text, unit);
  };
  EXPECT_EQ(days("480", 0) + days("8", 1) + days("3", 2) + days("2", 3) + days("7", 9),
            "1.001.003.0010.007.00");
  EXPECT_EQ(days("960m", 2) + days("16h", 0) + days("2d", 0) + days("1w", 0) + days("0.005d", 0),
            "2.002.002.005.000.01");
  for (const char* unknown : {"3ed", "16eh", "2mo", "two days", "d", ""}) {
    EXPECT_EQ(days(unknown, 2), "1.00") << unknown;
  }
  EXPECT_EQ(days("16H", 2), "16.00") << "unit letters are small letters";
}

TEST(MpxDurations, AStartDateBeginsAtTheFirstDigit) {
  EXPECT_EQ(ExtractStartDate("Fri 17/10/14", 437), "17/10/14");
  EXPECT_EQ(ExtractStartDate("2003-01-07 8:00", 932), "2003-01-");
  EXPECT_EQ(ExtractStartDate("Fri 7", 437), "") << "a digit at the end alone doesn't count";
  EXPECT_EQ(ExtractStartDate("", 932), "");
}

}  // namespace
}  // namespace merivane::test
