#include <gtest/gtest.h>

#include <tuple>

#include "environment.h"
#include "platform/system_settings.h"

namespace merivane::test {

using namespace platform;

namespace {

#ifndef _WIN32
TEST(SystemLocale, TheLanguageTellsTheCodePage) {
  const EnvironmentVariable all("LC_ALL");
  const EnvironmentVariable type("LC_CTYPE");
  const EnvironmentVariable lang("LANG");
  using Case = std::tuple<const char*, const char*, const char*, int>;
  for (const auto& [first, second, third, codePage] :
       {Case{"", "", "ja_JP.UTF-8", 932}, Case{"ko_KR", "ja_JP", "C", 949},
        Case{"", "ja", "ko_KR", 932}, Case{"C", "", "ja_JP", 437}, Case{"", "", "", 437},
        Case{"", "", "kok_IN@latin", 437}}) {
    all.Set(first);
    type.Set(second);
    lang.Set(third);
    EXPECT_EQ(SystemOemCodePage(), codePage) << first << "," << second << "," << third;
  }
}
#endif

TEST(SystemLocale, TheSourceDateIsTheDayInUtc) {
  const EnvironmentVariable epoch("SOURCE_DATE_EPOCH");
  const EnvironmentVariable zone("TZ");
  zone.Set("XXX-14");
  const std::pair<const char*, const char*> cases[] = {
      {"0", "1/1/1970"}, {"951868799", "2/29/2000"}, {"951868800", "3/1/2000"}};
  for (const auto& [seconds, day] : cases) {
    epoch.Set(seconds);
    EXPECT_EQ(FormatDate(SystemToday()), day);
  }
  epoch.Set(std::nullopt);
  const DateTime clock = SystemToday();
  EXPECT_GE(clock.year, 2024);
  for (const char* text : {"", "-1", "12x", "99999999999999999999", "999999999999999"}) {
    epoch.Set(text);
    EXPECT_EQ(SystemToday().year, clock.year) << text;
  }
}

}  // namespace
}  // namespace merivane::test
