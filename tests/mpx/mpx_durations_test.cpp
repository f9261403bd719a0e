#include "mpx/mpx_durations.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace merivane {
namespace {

TEST(MpxDurations, AreDaysWithTwoDecimals) {
  struct Case {
    const char* text;
    std::int16_t defaultUnits;
    const char* days;
  };
  const std::vector<Case> cases = {
      {"2d", 0, "2.00"},   {"16h", 0, "2.00"},      {"960m", 0, "2.00"}, {"1w", 0, "5.00"},
      {"8", 1, "1.00"},    {"480", 0, "1.00"},      {"3", 2, "3.00"},    {"2", 3, "10.00"},
      {"7", 9, "7.00"},    {"0.005d", 2, "0.01"},   {"-4h", 2, "-0.50"}, {"3ed", 2, "1.00"},
      {"16eh", 2, "1.00"}, {"2 d", 2, "2.00"},      {"16H", 2, "16.00"}, {"", 1, "1.00"},
      {"d", 2, "1.00"},    {"two days", 2, "1.00"}, {"2mo", 2, "1.00"},
  };
  for (const Case& test : cases) {
    EXPECT_EQ(ConvertDuration(test.text, test.defaultUnits), test.days) << test.text;
  }
}

TEST(MpxDurations, AStartDateBeginsAtTheFirstDigit) {
  EXPECT_EQ(ExtractStartDate("Fri 17/10/14", 437), "17/10/14");
  EXPECT_EQ(ExtractStartDate("2003-01-07 8:00", 437), "2003-01-07 8:00");
  EXPECT_EQ(ExtractStartDate("2003-01-07 8:00", 932), "2003-01-");
  EXPECT_EQ(ExtractStartDate("Fri 7", 437), "") << "a digit at the end alone doesn't count";
  EXPECT_EQ(ExtractStartDate("NA", 437), "");
  EXPECT_EQ(ExtractStartDate("", 932), "");
}

}  // namespace
}  // namespace merivane
