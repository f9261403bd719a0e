#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

#include "runtime/file_names.h"
#include "runtime/run_time_error.h"

namespace merivane::runtime {

namespace {

[[noreturn]] void ThrowFailure(const std::string& path) {
  throw FileError(ErrorOfSystem(errno, kPermissionDenied), path);
}

}  // namespace

// The standard library's iterator ends the program where memory runs out.
std::vector<std::string> NamesIn(const std::filesystem::path& folder) {
  const auto close = [](DIR* open) { closedir(open); };
  const std::unique_ptr<DIR, decltype(close)> open(opendir(folder.c_str()), close);
  std::vector<std::string> names;
  if (!open) return names;
  while (const dirent* entry = readdir(open.get())) names.emplace_back(entry->d_name);
  return names;
}

std::filesystem::path PathOf(const std::string& utf8) { return {utf8}; }

std::string Followed(const std::string& path) {
  constexpr int kMostLinks = 40;  // as many as the system follows
  std::error_code error;
  std::filesystem::path name = PathOf(path);
  for (int links = 0; links < kMostLinks &&
                      std::filesystem::is_symlink(std::filesystem::symlink_status(name, error));
       ++links) {
    name = name.parent_path() / std::filesystem::read_symlink(name, error);
  }
  const std::filesystem::path place =
      std::filesystem::weakly_canonical(std::filesystem::absolute(name, error), error);
  return Utf8Of(error ? name : place);
}

bool IsSameFileName(const std::string& a, const std::string& b) { return a == b; }

// The number of a file that is gone goes to another, which is made later.
std::string FileIdentity(const std::string& path) {
  struct statx file {};
  if (statx(AT_FDCWD, path.c_str(), 0, STATX_INO | STATX_BTIME, &file) != 0) return {};
  std::string identity;
  for (const std::uint64_t part :
       {std::uint64_t{file.stx_dev_major}, std::uint64_t{file.stx_dev_minor},
        std::uint64_t{file.stx_ino}, static_cast<std::uint64_t>(file.stx_btime.tv_sec),
        std::uint64_t{file.stx_btime.tv_nsec}}) {
    identity += std::to_string(part) + ' ';
  }
  return identity;
}

bool CanBeFileName(const std::string& path) { return path.find('\0') == std::string::npos; }

bool MayBeReplaced(const std::string& path) {
  const int file = open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  if (file >= 0) close(file);
  return file >= 0;
}

bool MakeNewFile(const std::string& path) {
  constexpr mode_t kForAllAsTheUserAllows = 0666;
  const int file =
      open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kForAllAsTheUserAllows);
  if (file < 0 && errno != EEXIST) ThrowFailure(path);
  if (file >= 0) close(file);
  return file >= 0;
}

std::error_code MoveInPlace(const std::filesystem::path& from, const std::filesystem::path& to) {
  std::error_code error;
  std::filesystem::rename(from, to, error);
  return error;
}

void SyncFile(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) ThrowFailure(path);
  const int result = fsync(file);
  const int failure = errno;
  close(file);
  errno = failure;
  if (result != 0) ThrowFailure(path);
}

void SyncFolderOf(const std::string& path) {
  const auto folder = std::filesystem::absolute(PathOf(path)).parent_path();
  const int file = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (file < 0) return;
  fsync(file);
  close(file);
}

std::FILE* OpenStream(const std::string& path, FileUse mode) {
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) {
    errno = EISDIR;
    return nullptr;
  }
  return std::fopen(path.c_str(), mode == FileUse::kRead ? "rbe" : "wbe");
}

bool FolderExists(const std::string& path) {
  std::error_code ignored;
  return std::filesystem::is_directory(std::filesystem::absolute(path, ignored).parent_path(),
                                       ignored);
}

}  // namespace merivane::runtime
