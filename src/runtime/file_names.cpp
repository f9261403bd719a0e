#include "runtime/file_names.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <string_view>

#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::runtime {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kPrefix = "merivane-";
constexpr std::size_t kDigits = 20;

bool IsTemporaryName(std::string_view name) {
  if (!name.starts_with(kPrefix)) return false;
  name.remove_prefix(kPrefix.size());
  const auto digits = static_cast<std::size_t>(
      std::find_if(name.begin(), name.end(), [](char c) { return c < '0' || c > '9'; }) -
      name.begin());
  return digits == kDigits;
}

void RemoveWhatKilledRunsLeft(const fs::path& folder) {
  const auto yesterday = fs::file_time_type::clock::now() - std::chrono::hours(24);
  for (const std::string& name : NamesIn(folder)) {
    if (!IsTemporaryName(name)) continue;
    const fs::path left = folder / PathOf(name);
    std::error_code unknown;
    const auto status = fs::symlink_status(left, unknown);
    const bool ours = fs::is_regular_file(status) || fs::is_directory(status);
    const bool old = ours && fs::last_write_time(left, unknown) < yesterday;
    if (old && !unknown) fs::remove_all(left, unknown);
  }
}

std::string RandomName() {
  std::random_device device;
  std::string digits;
  while (digits.size() < kDigits) digits += std::to_string(device());
  return std::string(kPrefix) + digits.substr(0, kDigits);
}

}  // namespace

std::string Utf8Of(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

bool IsSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  return fs::equivalent(PathOf(a), PathOf(b), error) && !error;
}

bool WouldBeSameFile(const std::string& a, const std::string& b) {
  return IsSameFile(a, b) || IsSameFileName(Followed(a), Followed(b));
}

void RefuseDevice(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(path), error);
  if (!fs::exists(status) || fs::is_regular_file(status) || fs::is_directory(status)) return;
  throw RunTimeError(kPathFileAccessError, "'" + FromUtf8(path) + "' is not a file.");
}

std::string TemporaryNameIn(const fs::path& folder) {
  RemoveWhatKilledRunsLeft(folder.empty() ? "." : folder);
  return Utf8Of(folder / RandomName());
}

std::string TemporaryName() {
  std::error_code error;
  const fs::path folder = fs::temp_directory_path(error);
  if (error) throw FileError(kPathNotFound, "the folder of temporary files");
  return TemporaryNameIn(folder);
}

std::string TemporaryNameBeside(const std::string& path) {
  const fs::path place = PathOf(path);
  return TemporaryNameIn(place.parent_path()) + Utf8Of(place.extension());
}

}  // namespace merivane::runtime
