#include <windows.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

#include "access_copy.h"
#include "runtime/file_names.h"
#include "runtime/helper_process.h"

namespace merivane::store {

using namespace runtime;

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// By its handle: the folder tells the size of a file that is open only later.
std::uintmax_t SizeOf(const fs::path& path) {
  const HANDLE file = CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, 0, nullptr);
  if (file == INVALID_HANDLE_VALUE) return 0;
  LARGE_INTEGER size{};
  const bool told = GetFileSizeEx(file, &size) != FALSE;
  CloseHandle(file);
  return told ? static_cast<std::uintmax_t>(size.QuadPart) : 0;
}

// Why the child failed; empty when it did not.
std::string Supervise(const HelperProcess& child, const AccessLimits& limits, const fs::path& copy,
                      WorkListener& work) {
  constexpr std::chrono::milliseconds kWait(20);
  const auto deadline = Clock::now() + limits.wall;
  do {
    work.Beat();
    if (SizeOf(copy) > limits.bytes) return kDamaged;
    if (Clock::now() >= deadline) return kEndless;
  } while (!child.HasEnded(kWait));
  if (child.HasSucceeded()) return {};
  if (child.HasUsedUpItsTime()) return kEndless;
  const std::string words = child.Output();
  return words.empty() ? kDamaged : words;
}

}  // namespace

std::string CopyAccessTablesAside(const std::string& path, const std::string& sqlitePath,
                                  WorkListener& work) {
  std::error_code ignored;
  const fs::path source = fs::absolute(PathOf(path), ignored);
  const fs::path copy = fs::absolute(PathOf(sqlitePath), ignored);
  const AccessLimits limits = LimitsFor(path);
  const HelperProcess child("merivane-access.exe", {Utf8Of(source), Utf8Of(copy)},
                            {.memory = limits.memory, .cpu = limits.cpu, .apart = true});
  return child.HasStarted() ? Supervise(child, limits, copy, work) : kNoProcess;
}

}  // namespace merivane::store
