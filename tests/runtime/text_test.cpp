#include "runtime/text.h"

#include <gtest/gtest.h>

#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::test {

using namespace runtime;

namespace {

TEST(Positions, CountFromOneAndStopAtTheEnd) {
  EXPECT_EQ(Find("a,b,c", ",", 3), 4U);
  EXPECT_EQ(Find("a,b,c", ",", 6), 0U);
  EXPECT_EQ(Find("abc", "", 2), 2U);
  EXPECT_EQ(Find("", ""), 0U);
  EXPECT_EQ(FindNoCase("Top Sc\xC9nario", "SC\xE9n"), 5U);
  EXPECT_EQ(FindNoCase("\xF7", "\xD7"), 0U);
  EXPECT_EQ(Mid("abc", 2, 100), "bc");
  EXPECT_EQ(Mid("abc", 4), "");
  EXPECT_EQ(Left("abc", 2) + Right("abc", 9), "ababc");
  EXPECT_THROW(Mid("abc", 0, 1), RunTimeError);
  EXPECT_THROW(Left("abc", -1), RunTimeError);
}

TEST(Letters, OfTheCodePageHaveCapitals) {
  EXPECT_EQ(UpperCase("az{\xE4\xDF\xF7\xFF\x9A\x9C\x9E"), "AZ{\xC4\xDF\xF7\x9F\x8A\x8C\x8E");
  EXPECT_TRUE(EqualNoCase("\xD8re", "\xF8RE"));
  EXPECT_FALSE(EqualNoCase("ab", "abc"));
  EXPECT_EQ(Trim("  a\t "), "a\t");
}

TEST(CodePage, EveryByteSurvivesTheWayThroughUtf8) {
  std::string bytes;
  for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
  EXPECT_EQ(FromUtf8(ToUtf8(bytes)), bytes);
  EXPECT_EQ(ToUtf8("\x80\xE9\x81"), "\u20AC\u00E9\xC2\x81");
}

TEST(CodePage, WhatHasNoByteBecomesOneQuestionMark) {
  const std::pair<std::string, std::string> cases[] = {
      {"a\u4E16b", "a?b"},       {"\U0001F600", "?"},         {"\xC2\x80", "?"},
      {"cut \xE2\x82", "cut ?"}, {"\xE9t\xC3\xA9", "?t\xE9"}, {"\xC0\xAF", "??"},
      {"\xED\xA0\x80", "???"},   {"\xF4\x90", "??"}};
  for (const auto& [utf8, text] : cases) EXPECT_EQ(FromUtf8(utf8), text);
}

}  // namespace
}  // namespace merivane::test
