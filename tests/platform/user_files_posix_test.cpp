#include <gtest/gtest.h>

#include <filesystem>

#include "environment.h"
#include "platform/system_settings.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace platform;

namespace {

using namespace std::string_literals;

class UserFilesTest : public testing::Test {
 protected:
  UserFilesTest() {
    std::filesystem::create_directories(folder_.Path("merivane"));
    std::filesystem::create_directories(folder_.Path("home/.config/merivane"));
    config_.Set(folder_.Path("."));
    home_.Set(folder_.Path("home"));
  }

  // The value found, "none" without one; a missing NUL at its end shows.
  std::string Found(const std::string& regText, const std::string& key = "P.9\\command") const {
    folder_.Write("merivane/classes.reg", regText);
    const auto value = ReadClassDefault(key);
    if (!value) return "none";
    return value->ends_with('\0') ? value->substr(0, value->size() - 1) : *value + " without NUL";
  }

  static std::string Utf16(const std::string& ascii, bool lowFirst) {
    std::string bytes = lowFirst ? "\xFF\xFE" : "\xFE\xFF";
    for (const char c : ascii) bytes += lowFirst ? std::string{c, '\0'} : std::string{'\0', c};
    return bytes;
  }

  TemporaryFolder folder_;
  EnvironmentVariable config_{"XDG_CONFIG_HOME"};
  EnvironmentVariable home_{"HOME"};
};

std::string Repeated(const std::string& text, int times) {
  std::string repeated;
  for (int i = 0; i < times; ++i) repeated += text;
  return repeated;
}

const std::string kKeyLine = "[HKEY_CLASSES_ROOT\\P.9\\command]\r\n";

TEST_F(UserFilesTest, RegistryTextGivesTheDefaultOfItsKeys) {
  const std::string value = "@=\"C:\\\\P\\\\app.exe \\\"%1\\\"\"\r\n";
  const std::string expected = "C:\\P\\app.exe \"%1\"";
  const std::pair<std::string, std::string> cases[] = {
      {"Windows Registry Editor Version 5.00\r\n\r\n" + kKeyLine + value, expected},
      {"[hkey_classes_root\\p.9\\COMMAND]\n" + value, expected},
      {"\xEF\xBB\xBF" + kKeyLine + value, expected},
      {Utf16("REGEDIT\n" + kKeyLine + value, true), expected},
      {Utf16(kKeyLine + value, false), expected},
      {kKeyLine + "  @ = \"a;b\" ; which program\n", "a;b"},
      {kKeyLine + "@=hex(2):25,00,41,00,\\\r\n  e9,00,3d,d8,00,de,00,00\r\n", "%A\u00e9\U0001F600"},
      {kKeyLine + "@=\"old\"\n" + kKeyLine + "@=\"new\"\n", "new"},
      {kKeyLine + "@=\"\"\n", ""}};
  for (const auto& [text, wanted] : cases) EXPECT_EQ(Found(text), wanted) << text;
}

TEST_F(UserFilesTest, RegistryTextWithoutTheDefaultGivesNothing) {
  const std::string cases[] = {"",
                               kKeyLine,
                               "@=\"a\"\n" + kKeyLine,
                               kKeyLine + "\"name\"=\"a\"\n",
                               kKeyLine + ";@=\"a\"\n",
                               kKeyLine + "@=\"a\n",
                               kKeyLine + "@=\"a\\",
                               kKeyLine + "@=dword:00000001\n",
                               kKeyLine + "@=hex(2):4g,00\n",
                               kKeyLine + "@=\"a\"\n@=-\n",
                               kKeyLine + "@=\"a\"\n[-HKEY_CLASSES_ROOT\\P.9]\n",
                               "[HKEY_CLASSES_ROOT\\P.9]\n@=\"a\"\n",
                               "[HKEY_CURRENT_USER\\P.9\\command]\n@=\"a\"\n",
                               "[HKEY_CLASSES_ROOT\\P.9\\command\n@=\"a\"\n",
                               kKeyLine + "[\n@=\"a\"\n"};
  for (const std::string& text : cases) EXPECT_EQ(Found(text), "none") << text;
  EXPECT_EQ(Found(kKeyLine + "@=\"a\"\n[-HKEY_CLASSES_ROOT\\P]\n"), "a");
  std::filesystem::remove(folder_.Path("merivane/classes.reg"));
  EXPECT_FALSE(ReadClassDefault("P.9\\command"));
}

TEST_F(UserFilesTest, TheConfigurationFolderIsTheUsersOwn) {
  folder_.Write("home/.config/merivane/classes.reg", kKeyLine + "@=\"home\"\n");
  EXPECT_EQ(Found(kKeyLine + "@=\"configured\"\n"), "configured");
  for (const auto& none : {std::optional<std::string>(), std::optional("relative"s)}) {
    config_.Set(none);
    EXPECT_EQ(ReadClassDefault("P.9\\command"), "home\0"s);
  }
}

TEST_F(UserFilesTest, ProfileValuesFollowTheRulesOfIniFiles) {
  const std::string file =
      folder_.Write("any.ini",
                    "; comment\r\nplain=outside\r\n[ Main ]\r\n Plain =  C:\\V "
                    "\t\r\n;hidden=1\r\nquoted=\" a \"\r\n"
                    "single=''b''\r\nhalf=\"c\r\nempty=\r\nequals=a=b\r\nword\r\nlong=" +
                        std::string(300, 'x') + "\r\naccents=" + Repeated("\u00e9", 300) +
                        "\r\n"
                        "[other]\r\nfar=away\r\n[main]\r\nagain=yes\r\nplain=second\r\n");
  const std::pair<const char*, std::string> cases[] = {{"PLAIN", "C:\\V"},
                                                       {"quoted", " a "},
                                                       {"single", "'b'"},
                                                       {"half", "\"c"},
                                                       {"empty", ""},
                                                       {"equals", "a=b"},
                                                       {"word", "none"},
                                                       {"hidden", "none"},
                                                       {"far", "none"},
                                                       {"again", "yes"},
                                                       {"accents", Repeated("\u00e9", 255)},
                                                       {"long", std::string(255, 'x')}};
  for (const auto& [key, value] : cases) {
    EXPECT_EQ(ReadProfileString("main", key, "none  ", file), value) << key;
  }
  EXPECT_EQ(ReadProfileString("nowhere", "plain", " none ", file), " none");
  EXPECT_EQ(ReadProfileString("main", "plain", "none", folder_.Path("missing.ini")), "none");
  EXPECT_EQ(ReadProfileString("main", "plain", "none", folder_.Path(".")), "none");
}

TEST_F(UserFilesTest, ABareIniNameIsLookedForInTheUsersFolderFirst) {
  const std::string working = std::filesystem::current_path().string();
  std::filesystem::current_path(folder_.Path("home"));
  folder_.Write("home/vorn.ini", "[s]\nk=working\n");
  EXPECT_EQ(ReadProfileString("s", "k", "none", "vorn.ini"), "working");
  folder_.Write("merivane/vorn.ini", "[s]\nk=user\n");
  EXPECT_EQ(ReadProfileString("s", "k", "none", "vorn.ini"), "user");
  EXPECT_EQ(ReadProfileString("s", "k", "none", "./vorn.ini"), "working");
  std::filesystem::current_path(working);
}

}  // namespace
}  // namespace merivane::test
