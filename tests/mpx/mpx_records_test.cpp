#include <gtest/gtest.h>

#include <algorithm>

#include "mpx/mpx_format.h"

namespace merivane::test {

using namespace mpx;

namespace {

TEST(MpxFields, EachHasItsNumberAndItsPlace) {
  const auto commas = [](std::string_view line) { return std::ranges::count(line, ','); };
  EXPECT_EQ(commas(kMpxResourceFields), 19);
  EXPECT_EQ(commas(kMpxResourceFieldNumbers), 19);
  EXPECT_EQ(commas(MpxResource(1, "Crane", Value())), 19);
  EXPECT_EQ(commas(kMpxTaskFields), 42);
  EXPECT_EQ(commas(kMpxTaskFieldNumbers), 42);
  EXPECT_EQ(commas(MpxTaskRecord({1, "Dig", "1d", 1, "", 7}, 437)), 42);
}

TEST(MpxTaskRecord, QuotesNamesWithCommaAndPredecessors) {
  const std::string empty(33, ',');
  EXPECT_EQ(MpxTaskRecord({4, "Dig, fill", "0.40d", 2, "3,5", 17}, 437),
            "70,4,4,\"Dig, fill\",0.40d,Yes,2,,\"3,5\"" + empty + ",17");
  EXPECT_EQ(MpxTaskRecord({4, "Dig", "1d", 1, "", 17}, 932), "70,4,4,Dig,1d,,1,," + empty + ",17");
}

TEST(MpxNoteText, BreaksLinesWithOneCharacterAndDropsTheLast) {
  const std::pair<std::string, std::string> cases[] = {{"", "\""},
                                                       {"x", "\""},
                                                       {"One\r\n", "\"One\x7f"},
                                                       {"One\r\nTwo\r\n", "\"One\x7fTwo\x7f"},
                                                       {"One\nTwo.", "\"One\nTwo"},
                                                       {"One\rTwo.", "\"One\x7fwo"},
                                                       {"One\r", "\"One"}};
  for (const auto& [glossary, note] : cases) EXPECT_EQ(MpxNoteText(glossary), note) << glossary;
}

}  // namespace
}  // namespace merivane::test
