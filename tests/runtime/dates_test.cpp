#include "runtime/dates.h"

#include <gtest/gtest.h>

namespace merivane::test {

using namespace runtime;

namespace {

std::string Reprinted(const char* text) {
  const auto date = ParseDate(text);
  return date ? FormatDate(*date) : "no date";
}

TEST(Dates, AreReadInTheOrderThatGivesAValidDay) {
  const std::pair<const char*, const char*> cases[] = {
      {"1/2/03", "1/2/2003"},   {"13/2/2000", "2/13/2000"},     {"2000-02-29", "2/29/2000"},
      {"2 29 99", "no date"},   {"12/31/29", "12/31/2029"},     {"12/31/30", "12/31/1930"},
      {"30/2/1", "2/1/1930"},   {" 1 / 2 - 2003 ", "1/2/2003"}, {"January 5, 2000", "1/5/2000"},
      {"5-jan-99", "1/5/1999"}, {"Feb 29 2001", "no date"}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(Reprinted(text), expected) << text;
  for (const char* text : {"", "1/2", "1/2/3/4", "1//2/3", "2/30/2001", "1/2/10000", "Janu 5 2000",
                           "Jan Feb 2000", "1/2/3x", "0/1/2000"}) {
    EXPECT_FALSE(IsDate(text)) << text;
  }
}

TEST(Dates, CarryATimeOfTheDay) {
  const std::pair<const char*, const char*> cases[] = {
      {"1/2/2003 0:00", "1/2/2003"},
      {"1/2/2003 8:05", "1/2/2003 8:05:00 AM"},
      {"1/2/2003 12:00:01 am", "1/2/2003 12:00:01 AM"},
      {"1/2/2003 12:30 PM", "1/2/2003 12:30:00 PM"},
      {"2 Jan 2003 23:59:59", "1/2/2003 11:59:59 PM"},
      {"1/2/2003 24:00", "no date"},
      {"1/2/2003 13:00 PM", "no date"},
      {"1/2/2003 8:60", "no date"},
      {"1/2/2003 8:05 XM", "no date"},
      {"1/2/2003 8", "no date"}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(Reprinted(text), expected) << text;
}

}  // namespace
}  // namespace merivane::test
