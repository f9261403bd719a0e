#include <gtest/gtest.h>

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
  struct Case {
    const char* all;
    const char* type;
    const char* lang;
    int codePage;
  };
  for (const Case& c : {Case{"", "", "ja_JP.UTF-8", 932}, Case{"ko_KR", "ja_JP", "C", 949},
                        Case{"", "ja", "ko_KR", 932}, Case{"C", "", "ja_JP", 437},
                        Case{"", "", "", 437}, Case{"", "", "kok_IN@latin", 437}}) {
    all.Set(c.all);
    type.Set(c.type);
    lang.Set(c.lang);
    EXPECT_EQ(SystemOemCodePage(), c.codePage) << c.all << "," << c.type << "," << c.lang;
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
