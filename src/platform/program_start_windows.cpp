#include <windows.h>
// Needs the types of windows.h.
#include <shellapi.h>

#include "platform/program_run.h"
#include "windows_text.h"

namespace merivane::platform {

bool StartDetached(const std::string& commandLine) {
  std::wstring line = Wide(commandLine);  // the call may write into it
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, NORMAL_PRIORITY_CLASS, nullptr,
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
