#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "file_open.h"
#include "runtime/file_names.h"

namespace merivane::runtime {

namespace fs = std::filesystem;

namespace {

int ErrnoOf(DWORD failure) {
  switch (failure) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return ENOENT;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return ENOSPC;
    case ERROR_TOO_MANY_OPEN_FILES:
      return EMFILE;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
      return EACCES;
    default:
      return EINVAL;
  }
}

}  // namespace

// A file that is open may be given another name, as on other systems.
std::FILE* OpenStream(const std::string& path, OpenMode mode) {
  std::error_code ignored;
  const fs::path native = PathOf(path);
  if (fs::is_directory(native, ignored)) {
    errno = EISDIR;
    return nullptr;
  }
  const bool reads = mode == OpenMode::kRead;
  const HANDLE file =
      CreateFileW(native.c_str(), reads ? GENERIC_READ : GENERIC_WRITE,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  reads ? OPEN_EXISTING : CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    errno = ErrnoOf(GetLastError());
    return nullptr;
  }
  const int number = _open_osfhandle(reinterpret_cast<std::intptr_t>(file),
                                     (reads ? _O_RDONLY : _O_WRONLY) | _O_BINARY | _O_NOINHERIT);
  if (number < 0) {
    CloseHandle(file);
    return nullptr;
  }
  std::FILE* stream = _fdopen(number, reads ? "rb" : "wb");
  if (stream == nullptr) _close(number);
  return stream;
}

bool FolderExists(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(fs::absolute(PathOf(path), ignored).parent_path(), ignored);
}

}  // namespace merivane::runtime
