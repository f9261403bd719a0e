#include <windows.h>
// Needs the types of windows.h.
#include <shlobj.h>

#include "platform/program_run.h"
#include "platform/system_settings.h"
#include "temporary_folder.h"

namespace merivane::test {

using namespace platform;

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

TEST(WindowsSystem, LibrariesComeFromTheSystemAndNotFromTheCurrentFolder) {
  const TemporaryFolder folder;
  wchar_t system[MAX_PATH];
  GetSystemDirectoryW(system, MAX_PATH);
  fs::copy_file(fs::path(system) / "version.dll", runtime::PathOf(folder.Path("planted.dll")));
  const fs::path before = fs::current_path();
  fs::current_path(runtime::PathOf(folder.Path(".")));
  TakeLibrariesOfTheSystemAlone();
  const HMODULE planted = LoadLibraryW(L"planted.dll");
  const HMODULE known = LoadLibraryW(L"version.dll");
  fs::current_path(before);
  EXPECT_EQ(planted, nullptr);
  EXPECT_NE(known, nullptr);
}

TEST(WindowsSystem, TheRegistryGivesTheDefaultOfAKey) {
  SetEnvironmentVariableW(L"MERIVANE_TEST", L"C:\\P \u00e9");
  HKEY key = nullptr;
  RegCreateKeyW(HKEY_CLASSES_ROOT, L"MerivaneTest.9", &key);
  const std::tuple<DWORD, std::wstring, std::string> cases[] = {
      {REG_SZ, L"\"C:\\P\\app.exe\" /x \"%1\"\0"s, "\"C:\\P\\app.exe\" /x \"%1\"\0"s},
      {REG_SZ, L"%MERIVANE_TEST%\\a.exe %1\0"s, "%MERIVANE_TEST%\\a.exe %1\0"s},
      {REG_EXPAND_SZ, L"%MERIVANE_TEST%\\a.exe %1\0"s, "C:\\P \u00e9\\a.exe %1\0"s},
      {REG_EXPAND_SZ, L"%MERIVANE_TEST%", "C:\\P \u00e9\0"s},
      {REG_DWORD, std::wstring(2, L'x'), "none"},
      {REG_SZ, std::wstring(2001, L'x'), "none"}};
  for (const auto& [type, value, found] : cases) {
    RegSetValueExW(key, L"", 0, type, reinterpret_cast<const BYTE*>(value.data()),
                   static_cast<DWORD>(value.size() * sizeof(wchar_t)));
    EXPECT_EQ(ReadClassDefault("merivanetest.9").value_or("none"), found);
  }
  EXPECT_FALSE(ReadClassDefault("MerivaneTest.9\\shell"));
  RegCloseKey(key);
  RegDeleteKeyW(HKEY_CLASSES_ROOT, L"MerivaneTest.9");
  SetEnvironmentVariableW(L"MERIVANE_TEST", nullptr);
}

TEST(WindowsSystem, APathWithBlanksStartsInQuotesAndWhatOpensNothingIsAFailure) {
  const TemporaryFolder folder;
  const std::string program = folder.Path("r\u00e4n it.exe");  // the command interpreter
  wchar_t system[MAX_PATH];
  GetSystemDirectoryW(system, MAX_PATH);
  fs::copy_file(fs::path(system) / "cmd.exe", runtime::PathOf(program));
  const std::string commands = " /c \"echo x y>\"" + folder.Path("part") + "\" & move \"" +
                               folder.Path("part") + "\" \"" + folder.Path("out") + "\"\"";
  ASSERT_TRUE(StartDetached("\"" + program + "\"" + commands));
  EXPECT_TRUE(folder.Awaited("out").starts_with("x y"));
  for (const std::string& line :
       {""s, "  "s, folder.Path("none.exe"), folder.Path("."), folder.Write("text", "text")}) {
    EXPECT_FALSE(StartDetached(line)) << line;
  }
  EXPECT_LT(OpenInBrowser("merivane-no-such-scheme:page"), 33);
}

TEST(WindowsSystem, AFileIsRememberedForTheListBehindTheButton) {
  const TemporaryFolder folder;
  const std::string name = fs::path(folder.Path("")).parent_path().filename().string() + ".mpx";
  wchar_t recent[MAX_PATH];
  ASSERT_EQ(SHGetFolderPathW(nullptr, CSIDL_RECENT, nullptr, SHGFP_TYPE_CURRENT, recent), S_OK);
  const fs::path link = fs::path(recent) / (name + ".lnk");
  RememberFile(folder.Write(name, "plan"));
  EXPECT_TRUE(fs::exists(link)) << link;
  fs::remove(link);
}

TEST(WindowsSystem, ProfileValuesAreFoundByPathAndInTheWindowsFolder) {
  const TemporaryFolder folder;
  const std::string text =
      "[ Main ]\r\nplain =  C:\\V \r\nquoted=\" a \"\r\nlong=" + std::string(300, 'x') + "\r\n";
  const std::string file = folder.Write("\u00e4 b.ini", text);
  EXPECT_EQ(ReadProfileString("main", "PLAIN", "none", file), "C:\\V");
  EXPECT_EQ(ReadProfileString("main", "quoted", "none", file), " a ");
  EXPECT_EQ(ReadProfileString("main", "long", "none", file), std::string(255, 'x'));
  EXPECT_EQ(ReadProfileString("main", "other", " none ", file), " none");
  EXPECT_EQ(ReadProfileString("main", "plain", "none", folder.Path("missing.ini")), "none");
  wchar_t windows[MAX_PATH];
  GetWindowsDirectoryW(windows, MAX_PATH);
  const fs::path bare = fs::path(windows) / "merivane-test.ini";
  fs::copy_file(runtime::PathOf(file), bare, fs::copy_options::overwrite_existing);
  EXPECT_EQ(ReadProfileString("Main", "plain", "none", "merivane-test.ini"), "C:\\V");
  fs::remove(bare);
}

TEST(WindowsSystem, TheProgramKnowsItsFolder) {
  EXPECT_TRUE(fs::equivalent(ProgramFolder(""), MERIVANE_BIN)) << ProgramFolder("");
}

}  // namespace
}  // namespace merivane::test
