#include <cerrno>
#include <filesystem>
#include <system_error>

#include "file_open.h"

namespace merivane {
namespace {

namespace fs = std::filesystem;

fs::path PathOf(const std::string& utf8) {
  return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

}  // namespace

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

}  // namespace merivane
