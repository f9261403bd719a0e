#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <utility>
#include <vector>

#include "runtime/file_names.h"
#include "runtime/helper_process.h"
#include "runtime/new_file.h"

namespace merivane::runtime {

namespace {

namespace fs = std::filesystem;

class Handle {
 public:
  Handle() = default;
  explicit Handle(HANDLE handle) : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  ~Handle() { Close(); }
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  explicit operator bool() const { return handle_ != nullptr; }
  HANDLE Get() const { return handle_; }
  HANDLE* Place() { return &handle_; }
  void Close() {
    if (handle_ != nullptr) CloseHandle(std::exchange(handle_, nullptr));
  }

 private:
  HANDLE handle_ = nullptr;
};

fs::path PlaceOf(const std::string& name) {
  std::wstring own(32768, L'\0');  // as long as a path may be
  own.resize(GetModuleFileNameW(nullptr, own.data(), static_cast<DWORD>(own.size())));
  return fs::path(own).parent_path() / PathOf(name);
}

// What a helper needs least: this user's rights without any privilege. None where the system
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

// A job whose one process ends with it, starts no other and stays within the limits; none where the
// system refuses it.
Handle NewJob(const HelperLimits& limits) {
  constexpr std::int64_t kTicksOfSecond = 10'000'000;
  Handle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION told{};
  told.BasicLimitInformation.LimitFlags =
      JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_PROCESS_MEMORY |
      JOB_OBJECT_LIMIT_DIE_ON_UNHANDLED_EXCEPTION | JOB_OBJECT_LIMIT_ACTIVE_PROCESS;
  told.BasicLimitInformation.ActiveProcessLimit = 1;
  told.ProcessMemoryLimit = limits.memory;
  if (limits.cpu.count() > 0) {
    told.BasicLimitInformation.LimitFlags |= JOB_OBJECT_LIMIT_PROCESS_TIME;
    told.BasicLimitInformation.PerProcessUserTimeLimit.QuadPart =
        limits.cpu.count() * kTicksOfSecond;
  }
  if (SetInformationJobObject(job.Get(), JobObjectExtendedLimitInformation, &told, sizeof told) ==
      FALSE) {
    return {};
  }
  if (limits.apart) {
    JOBOBJECT_BASIC_UI_RESTRICTIONS screen{};
    screen.UIRestrictionsClass = JOB_OBJECT_UILIMIT_HANDLES | JOB_OBJECT_UILIMIT_READCLIPBOARD |
                                 JOB_OBJECT_UILIMIT_WRITECLIPBOARD | JOB_OBJECT_UILIMIT_DESKTOP |
                                 JOB_OBJECT_UILIMIT_EXITWINDOWS |
                                 JOB_OBJECT_UILIMIT_SYSTEMPARAMETERS;
    SetInformationJobObject(job.Get(), JobObjectBasicUIRestrictions, &screen, sizeof screen);
  }
  return job;
}

// A file that the child inherits and that is gone with its last handle: unlike a pipe it holds
// whatever comes, whoever reads when.
Handle NewStream() {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return Handle(CreateFileW(PathOf(TemporaryName()).c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited,
                            CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE,
                            nullptr));
}

constexpr std::size_t kMostAtOnce = 1U << 24U;

bool Fill(const Handle& stream, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto size = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
    DWORD written = 0;
    if (WriteFile(stream.Get(), bytes.data(), size, &written, nullptr) == FALSE) return false;
    bytes.remove_prefix(written);
  }
  return SetFilePointer(stream.Get(), 0, nullptr, FILE_BEGIN) == 0;
}

// That a process inherits these handles alone, of all that may be inherited.
class Inheritance {
 public:
  explicit Inheritance(std::span<HANDLE> handles) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    list_.resize(size);
    isReady_ = InitializeProcThreadAttributeList(Get(), 1, 0, &size) != FALSE;
    if (!isReady_) return;
    UpdateProcThreadAttribute(Get(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles.data(),
                              handles.size_bytes(), nullptr, nullptr);
  }
  ~Inheritance() {
    if (isReady_) DeleteProcThreadAttributeList(Get());
  }
  Inheritance(const Inheritance&) = delete;
  Inheritance& operator=(const Inheritance&) = delete;

  LPPROC_THREAD_ATTRIBUTE_LIST Get() const {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(list_.data());
  }

 private:
  mutable std::vector<std::byte> list_;
  bool isReady_ = false;
};

std::wstring Quoted(const std::wstring& word) {  // no path holds a quotation mark
  return L"\"" + word + L"\"";
}

}  // namespace

struct HelperProcess::System {
  explicit System(const HelperLimits& limits) : job(NewJob(limits)), output(NewStream()) {}

  bool Start(const fs::path& program, std::wstring line, const Handle& input) {
    HANDLE streams[] = {input.Get(), output.Get()};
    const Inheritance inheritance(streams);
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup.StartupInfo.hStdInput = input.Get();
    startup.StartupInfo.hStdOutput = output.Get();
    startup.lpAttributeList = inheritance.Get();
    PROCESS_INFORMATION started{};
    const Handle token = TokenWithoutPrivileges();
    constexpr DWORD kHow = CREATE_SUSPENDED | CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT;
    const bool isStarted =
        token ? CreateProcessAsUserW(token.Get(), program.c_str(), line.data(), nullptr, nullptr,
                                     TRUE, kHow, nullptr, nullptr, &startup.StartupInfo,
                                     &started) != FALSE
              : CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, kHow, nullptr,
                               nullptr, &startup.StartupInfo, &started) != FALSE;
    if (!isStarted) return false;
    process = Handle(started.hProcess);
    const Handle thread(started.hThread);
    return job && AssignProcessToJobObject(job.Get(), process.Get()) != FALSE &&
           ResumeThread(thread.Get()) != static_cast<DWORD>(-1);
  }

  ~System() { Stop(); }

  void Stop() const {
    if (!process) return;
    TerminateProcess(process.Get(), 1);
    WaitForSingleObject(process.Get(), INFINITE);
  }

  DWORD Status() const {
    DWORD status = 1;
    GetExitCodeProcess(process.Get(), &status);
    return status;
  }

  Handle job;
  Handle output;
  Handle process;
  bool started = false;
};

HelperProcess::HelperProcess(const std::string& name, const std::vector<std::string>& words,
                             const HelperLimits& limits, std::string_view input)
    : system_(std::make_unique<System>(limits)) {
  const fs::path program = PlaceOf(name);
  std::wstring line = Quoted(program.wstring());
  for (const std::string& word : words) line += L' ' + Quoted(PathOf(word).wstring());
  const Handle stream = NewStream();
  system_->started = stream && system_->output && Fill(stream, input) &&
                     system_->Start(program, std::move(line), stream);
}

HelperProcess::~HelperProcess() = default;

bool HelperProcess::IsThere(const std::string& name) {
  std::error_code ignored;
  return fs::is_regular_file(PlaceOf(name), ignored);
}

bool HelperProcess::HasStarted() const { return system_->started; }

bool HelperProcess::HasEnded(std::chrono::milliseconds wait) const {
  const auto longest = static_cast<DWORD>(wait.count());
  return WaitForSingleObject(system_->process.Get(), longest) == WAIT_OBJECT_0;
}

void HelperProcess::Stop() { system_->Stop(); }

bool HelperProcess::HasSucceeded() const { return system_->Status() == 0; }

bool HelperProcess::HasUsedUpItsTime() const { return system_->Status() == ERROR_NOT_ENOUGH_QUOTA; }

std::string HelperProcess::Output() const {
  const HANDLE stream = system_->output.Get();
  LARGE_INTEGER size{};
  if (GetFileSizeEx(stream, &size) == FALSE) return {};
  std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
  SetFilePointer(stream, 0, nullptr, FILE_BEGIN);
  std::size_t at = 0;
  while (at < bytes.size()) {
    const auto most = static_cast<DWORD>(std::min(bytes.size() - at, kMostAtOnce));
    DWORD got = 0;
    if (ReadFile(stream, bytes.data() + at, most, &got, nullptr) == FALSE || got == 0) break;
    at += got;
  }
  bytes.resize(at);
  return bytes;
}

void GiveUpRights() {
  SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
  PROCESS_MITIGATION_EXTENSION_POINT_DISABLE_POLICY extensions{};
  extensions.DisableExtensionPoints = 1;
  SetProcessMitigationPolicy(ProcessExtensionPointDisablePolicy, &extensions, sizeof extensions);
  PROCESS_MITIGATION_DYNAMIC_CODE_POLICY code{};
  code.ProhibitDynamicCode = 1;
  SetProcessMitigationPolicy(ProcessDynamicCodePolicy, &code, sizeof code);
  PROCESS_MITIGATION_IMAGE_LOAD_POLICY images{};
  images.NoRemoteImages = 1;
  images.NoLowMandatoryLabelImages = 1;
  images.PreferSystem32Images = 1;
  SetProcessMitigationPolicy(ProcessImageLoadPolicy, &images, sizeof images);
}

}  // namespace merivane::runtime
