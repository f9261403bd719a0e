#include "shell/named_files.h"

#include <filesystem>

#include "runtime/file_names.h"
#include "shell/browse.h"

namespace merivane::shell {

using namespace runtime;

namespace {

bool HasFolder(const std::string& path) {
  const std::filesystem::path folder = PathOf(path).parent_path();
  std::error_code error;
  return folder.empty() || std::filesystem::is_directory(folder, error);
}

}  // namespace

std::optional<std::string> RefusalOf(const std::vector<NamedFile>& files) {
  for (auto one = files.begin(); one != files.end(); ++one) {
    if (one->path.empty()) continue;
    if (!CanBeFileName(one->path)) return one->role + " can't be a file's name: " + one->path;
    for (auto other = files.begin(); other != one; ++other) {
      if (other->path.empty() || !(one->written || other->written)) continue;
      if (WouldBeSameFile(one->path, other->path)) {
        return other->role + " and " + one->role + " are the same file: " + one->path;
      }
    }
    if (one->written && !HasFolder(one->path)) {
      return one->role + " can't be written: there is no folder for " + one->path + ".";
    }
    if (!one->askedWord.empty() && FileIsThere(one->path)) {
      return one->path + " exists: say " + one->askedWord + ".";
    }
  }
  return std::nullopt;
}

}  // namespace merivane::shell
