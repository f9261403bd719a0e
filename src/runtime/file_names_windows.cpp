#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <cerrno>

#include "runtime/file_names.h"
#include "runtime/run_time_error.h"

namespace merivane::runtime {

std::vector<std::string> NamesIn(const std::filesystem::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    names.push_back(Utf8Of(entry->path().filename()));
  }
  return names;
}

bool MakeNewFile(const std::string& path) {
  int file = -1;
  const errno_t failure =
      _wsopen_s(&file, PathOf(path).c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_NOINHERIT,
                _SH_DENYNO, _S_IREAD | _S_IWRITE);
  if (failure == EEXIST) return false;
  if (failure != 0) throw FileError(failure == ENOENT ? kPathNotFound : kPermissionDenied, path);
  _close(file);
  return true;
}

void SyncFile(const std::string& path) {
  int file = -1;
  if (_wsopen_s(&file, PathOf(path).c_str(), _O_RDWR | _O_NOINHERIT, _SH_DENYNO, 0) != 0) {
    throw FileError(kPermissionDenied, path);
  }
  const int result = _commit(file);
  _close(file);
  if (result != 0) throw FileError(kDeviceIoError, path);
}

// The system keeps its folders by itself.
void SyncFolderOf(const std::string& /*path*/) {}

}  // namespace merivane::runtime
