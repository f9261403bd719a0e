#include <cerrno>
#include <filesystem>
#include <system_error>

#include "file_open.h"

namespace merivane::runtime {

namespace fs = std::filesystem;

std::FILE* OpenStream(const std::string& path, OpenMode mode) {
  std::error_code ignored;
  if (fs::is_directory(path, ignored)) {
    errno = EISDIR;
    return nullptr;
  }
  return std::fopen(path.c_str(), mode == OpenMode::kRead ? "rbe" : "wbe");
}

bool FolderExists(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(fs::absolute(path, ignored).parent_path(), ignored);
}

}  // namespace merivane::runtime
