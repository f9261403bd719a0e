#include <windows.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "access_copy.h"
#include "runtime/file_names.h"

namespace merivane::store {

using namespace runtime;

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() { Close(); }
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  HANDLE Get() const { return handle_; }
  HANDLE* Place() { return &handle_; }
  void Close() {
    if (handle_ != nullptr) CloseHandle(std::exchange(handle_, nullptr));
  }

 private:
  HANDLE handle_ = nullptr;
};

fs::path Reader() {
  std::wstring name(32768, L'\0');  // as long as a path may be
  name.resize(GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size())));
  return fs::path(name).parent_path() / "merivane-access.exe";
}

// What the reader needs least: this user's rights without any privilege. None where the system
// refuses it.
Handle TokenWithoutPrivileges() {
  Handle own, restricted;
  constexpr DWORD kUse = TOKEN_DUPLICATE | TOKEN_ASSIGN_PRIMARY | TOKEN_QUERY;
  if (OpenProcessToken(GetCurrentProcess(), kUse, own.Place()) == FALSE) return {};
  if (CreateRestrictedToken(own.Get(), DISABLE_MAX_PRIVILEGE, 0, nullptr, 0, nullptr, 0, nullptr,
                            restricted.Place()) == FALSE) {
    return {};
  }
  return restricted;
}

// A job whose one process ends with it, starts no other, stays within the limits, and reaches
// neither clipboard nor windows of others; none where the system refuses it.
Handle NewJob(const AccessLimits& limits) {
  constexpr std::int64_t kTicksOfSecond = 10'000'000;
  constexpr SIZE_T kMemory = SIZE_T{1} << 30U;
  Handle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION told{};
  told.BasicLimitInformation.LimitFlags =
      JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_PROCESS_MEMORY |
      JOB_OBJECT_LIMIT_PROCESS_TIME | JOB_OBJECT_LIMIT_DIE_ON_UNHANDLED_EXCEPTION |
      JOB_OBJECT_LIMIT_ACTIVE_PROCESS;
  told.BasicLimitInformation.ActiveProcessLimit = 1;
  told.BasicLimitInformation.PerProcessUserTimeLimit.QuadPart = limits.cpu.count() * kTicksOfSecond;
  told.ProcessMemoryLimit = kMemory;
  if (SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &told, sizeof told) ==
      FALSE) {
    job.Close();
  }
  JOBOBJECT_BASIC_UI_RESTRICTIONS screen{};
  screen.UIRestrictionsClass = JOB_OBJECT_UILIMIT_HANDLES | JOB_OBJECT_UILIMIT_READCLIPBOARD |
                               JOB_OBJECT_UILIMIT_WRITECLIPBOARD | JOB_OBJECT_UILIMIT_DESKTOP |
                               JOB_OBJECT_UILIMIT_EXITWINDOWS | JOB_OBJECT_UILIMIT_SYSTEMPARAMETERS;
  SetInformationJobObject(job.Get(), JobObjectBasicUIRestrictions, &screen, sizeof screen);
  return job;
}

// By its handle: the folder tells the size of a file that is open only later.
std::uintmax_t SizeOf(const fs::path& path) {
  const Handle file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, 0, nullptr));
  LARGE_INTEGER size{};
  const bool told = file.Get() != INVALID_HANDLE_VALUE && GetFileSizeEx(file.Get(), &size) != FALSE;
  return told ? static_cast<std::uintmax_t>(size.QuadPart) : 0;
}

class Child {
 public:
  explicit Child(const AccessLimits& limits) : job_(NewJob(limits)) {}
  ~Child() {
    if (process_.Get() != nullptr) End();
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  bool Start(const fs::path& source, const fs::path& copy) {
    Handle words;
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    if (CreatePipe(words_.Place(), words.Place(), &inherited, 0) == FALSE) return false;
    SetHandleInformation(words_.Get(), HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = words.Get();
    const fs::path reader = Reader();
    std::wstring line = Quoted(reader) + L" " + Quoted(source) + L" " + Quoted(copy);
    PROCESS_INFORMATION started{};
    const Handle token = TokenWithoutPrivileges();
    constexpr DWORD kHow = CREATE_SUSPENDED | CREATE_NO_WINDOW;
    const bool isStarted =
        token.Get() != nullptr
            ? CreateProcessAsUserW(token.Get(), reader.c_str(), line.data(), nullptr, nullptr, TRUE,
                                   kHow, nullptr, nullptr, &startup, &started) != FALSE
            : CreateProcessW(reader.c_str(), line.data(), nullptr, nullptr, TRUE, kHow, nullptr,
                             nullptr, &startup, &started) != FALSE;
    if (!isStarted) return false;
    process_ = Handle(started.hProcess);
    const Handle thread(started.hThread);
    return job_.Get() != nullptr && AssignProcessToJobObject(job_.Get(), process_.Get()) != FALSE &&
           ResumeThread(thread.Get()) != static_cast<DWORD>(-1);
  }

  bool HasEnded(std::chrono::milliseconds wait) const {
    return WaitForSingleObject(process_.Get(), static_cast<DWORD>(wait.count())) == WAIT_OBJECT_0;
  }
  // After it has ended.
  DWORD Status() const {
    DWORD status = 1;
    GetExitCodeProcess(process_.Get(), &status);
    return status;
  }
  std::string Words() const {
    char text[4096];
    DWORD size = 0;
    const bool read = ReadFile(words_.Get(), text, sizeof text, &size, nullptr) != FALSE;
    return {text, read ? size : 0};
  }
  void End() const {
    TerminateProcess(process_.Get(), 1);
    WaitForSingleObject(process_.Get(), INFINITE);
  }

 private:
  // No path holds a quotation mark.
  static std::wstring Quoted(const fs::path& path) { return L"\"" + path.wstring() + L"\""; }

  Handle job_;
  Handle process_;
  Handle words_;
};

// Why the child failed; empty when it did not.
std::string Supervise(const Child& child, const AccessLimits& limits, const fs::path& copy,
                      Work& work) {
  constexpr std::chrono::milliseconds kWait(20);
  const auto deadline = Clock::now() + limits.wall;
  while (!child.HasEnded(kWait)) {
    work.Beat();
    if (SizeOf(copy) > limits.bytes) return kDamaged;
    if (Clock::now() >= deadline) return kEndless;
  }
  const DWORD status = child.Status();
  if (status == 0) return {};
  if (status == ERROR_NOT_ENOUGH_QUOTA) return kEndless;  // the time was used up
  const std::string words = child.Words();
  return words.empty() ? kDamaged : words;
}

}  // namespace

std::string CopyAccessTablesAside(const std::string& path, const std::string& sqlitePath,
                                  Work& work) {
  std::error_code ignored;
  const fs::path source = fs::absolute(PathOf(path), ignored);
  const fs::path copy = fs::absolute(PathOf(sqlitePath), ignored);
  const AccessLimits limits = LimitsFor(path);
  Child child(limits);
  if (!child.Start(source, copy)) return kNoProcess;
  return Supervise(child, limits, copy, work);
}

}  // namespace merivane::store
