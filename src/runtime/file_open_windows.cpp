#include <cerrno>
#include <filesystem>
#include <system_error>

#include "file_open.h"
#include "runtime/file_names.h"

namespace merivane::runtime {

namespace fs = std::filesystem;

std::FILE* OpenStream(const std::string& path, OpenMode mode) {
  std::error_code ignored;
  const fs::path native = PathOf(path);
  if (fs::is_directory(native, ignored)) {
    errno = EISDIR;
    return nullptr;
  }
  return _wfopen(native.c_str(), mode == OpenMode::kRead ? L"rbN" : L"wbN");
}

bool FolderExists(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(fs::absolute(PathOf(path), ignored).parent_path(), ignored);
}

bool SameFile(const std::string& a, const std::string& b) {
  std::error_code ignored;
  return a == b || fs::equivalent(PathOf(a), PathOf(b), ignored);
}

}  // namespace merivane::runtime
