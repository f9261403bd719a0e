#include <windows.h>
// Needs the types of windows.h.
#include <io.h>
#include <shellapi.h>
#include <shlobj.h>

#include <filesystem>
#include <memory>

#include "platform/program_run.h"
#include "runtime/file_names.h"
#include "windows_text.h"

namespace merivane::platform {

// What `main` is given has lost the characters outside the system's code page.
std::vector<std::string> ProgramArguments(int /*argc*/, char** /*argv*/) {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(
      CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(Narrow(words.get()[i]));
  return arguments;
}

void TakeLibrariesOfTheSystemAlone() {
  SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_APPLICATION_DIR);
  SetDllDirectoryW(L"");
}

std::string ProgramFolder(const std::string& /*name*/) {
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    if (length < name.size()) {
      name.resize(length);
      return runtime::Utf8Of(std::filesystem::path(name).parent_path());
    }
    name.resize(name.size() * 2);
  }
}

void RememberFile(const std::string& path) {
  const std::wstring name = runtime::PathOf(path).make_preferred().wstring();
  SHAddToRecentDocs(SHARD_PATHW, name.c_str());
}

bool StandardErrorIsTerminal() {
  constexpr int kStandardError = 2;
  return _isatty(kStandardError) != 0;
}

int OnUtf8Terminal(const std::function<int()>& run) {
  const UINT before = GetConsoleOutputCP();  // 0 without a terminal
  SetConsoleOutputCP(CP_UTF8);
  const int result = run();
  if (before != 0) SetConsoleOutputCP(before);
  return result;
}

bool StartDetached(const std::string& commandLine) {
  std::wstring line = Wide(commandLine);  // the call may write into it
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, NORMAL_PRIORITY_CLASS, nullptr,
                     nullptr, &startup, &process) == FALSE) {
    return false;
  }
  WaitForSingleObject(process.hProcess, 1);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

int OpenInBrowser(const std::string& url, const std::function<void()>& /*meanwhile*/) {
  const HINSTANCE result =
      ShellExecuteW(nullptr, L"Open", Wide(url).c_str(), L"0", L"0", SW_SHOWNORMAL);
  return static_cast<int>(reinterpret_cast<INT_PTR>(result));
}

}  // namespace merivane::platform
