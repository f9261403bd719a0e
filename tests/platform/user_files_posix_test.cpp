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
  std::string Found(const std::string& regText) const {
    folder_.Write("merivane/classes.reg", regText);
    const auto value = ReadClassDefault("P.9\\command");
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
      {kKeyLine + "@=\"\"\n", ""},
      {kKeyLine + "@=\"a\"\n[-HKEY_CLASSES_ROOT\\P]\n", "a"},
      {"@=\"a\"\n" + kKeyLine, "none"},
      {kKeyLine + "\"name\"=\"a\"\n", "none"},
      {kKeyLine + "@=\"a\n", "none"},
      {kKeyLine + "@=\"a\\", "none"},
      {kKeyLine + "@=dword:00000001\n", "none"},
      {kKeyLine + "@=hex(2):4g,00\n", "none"},
      {kKeyLine + "@=\"a\"\n@=-\n", "none"},
      {kKeyLine + "@=\"a\"\n[-HKEY_CLASSES_ROOT\\P.9]\n", "none"},
      {"[HKEY_CURRENT_USER\\P.9\\command]\n@=\"a\"\n", "none"},
      {"[HKEY_CLASSES_ROOT\\P.9\\command\n@=\"a\"\n", "none"}};
  for (const auto& [text, wanted] : cases) EXPECT_EQ(Found(text), wanted) << text;
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
  std::string longest;
  for (int i = 0; i < 255; ++i) longest += "\u00e9";
  const std::string file = folder_.Write(
      "any.ini",
      "; comment\r\nplain=outside\r\n[ Main ]\r\n Plain =  C:\\V \t\r\n;hidden=1\r\n"
      "quoted=\" a \"\r\nsingle=''b''\r\nhalf=\"c\r\nempty=\r\nequals=a=b\r\nword\r\n"
      "long=" +
          longest + longest + "\r\n[other]\r\nfar=away\r\n[main]\r\nagain=yes\r\nplain=second\r\n");
  const std::pair<const char*, std::string> cases[] = {
      {"PLAIN", "C:\\V"}, {"quoted", " a "}, {"single", "'b'"}, {"half", "\"c"},
      {"empty", ""},      {"equals", "a=b"}, {"word", "none"},  {"hidden", "none"},
      {"far", "none"},    {"again", "yes"},  {"long", longest}};
  for (const auto& [key, value] : cases) {
    EXPECT_EQ(ReadProfileString("main", key, "none  ", file), value) << key;
  }
  EXPECT_EQ(ReadProfileString("nowhere", "plain", " none ", file), " none");
  for (const char* missing : {"missing.ini", "."}) {
    EXPECT_EQ(ReadProfileString("main", "plain", "none", folder_.Path(missing)), "none");
  }
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
