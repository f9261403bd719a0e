#include "mpx/mpx_durations.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace merivane::test {

using namespace mpx;

namespace {

TEST(MpxDurations, AreDaysWithTwoDecimalsInTheUnitOfTheFileOrTheirOwn) {
  constexpr std::int16_t kMinutes = 0, kHours = 1, kDays = 2, kWeeks = 3, kNone = 9;
  const struct {
    const char* text;
    std::int16_t unitOfFile;
    const char* days;
  } cases[] = {{"480", kMinutes, "1.00"},    {"8", kHours, "1.00"},    {"3", kDays, "3.00"},
               {"2", kWeeks, "10.00"},       {"7", kNone, "7.00"},     {"960m", kDays, "2.00"},
               {"16h", kMinutes, "2.00"},    {"2d", kMinutes, "2.00"}, {"1w", kMinutes, "5.00"},
               {"0.005d", kMinutes, "0.01"}, {"16H", kDays, "16.00"},  // letters of units are small
               {"3ed", kDays, "1.00"},                                 // units that are not known
               {"16eh", kDays, "1.00"},      {"2mo", kDays, "1.00"},   {"two days", kDays, "1.00"},
               {"d", kDays, "1.00"},         {"", kDays, "1.00"}};
  for (const auto& row : cases) {
    EXPECT_EQ(ConvertDuration(row.text, row.unitOfFile), row.days)
        << "'" << row.text << "' in a file of unit " << row.unitOfFile;
  }
}

TEST(MpxDurations, AStartDateBeginsAtTheFirstDigit) {
  EXPECT_EQ(ExtractStartDate("Fri 17/10/14", 437), "17/10/14");
  EXPECT_EQ(ExtractStartDate("2003-01-07 8:00", 932), "2003-01-");
  EXPECT_EQ(ExtractStartDate("Fri 7", 437), "") << "a digit at the end alone doesn't count";
  EXPECT_EQ(ExtractStartDate("", 932), "");
}

}  // namespace
}  // namespace merivane::test
