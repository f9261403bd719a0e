#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cwctype>
#include <filesystem>
#include <system_error>

#include "runtime/file_names.h"
#include "runtime/run_time_error.h"

namespace merivane::runtime {

namespace {

namespace fs = std::filesystem;

// `ask` fills a buffer of so many characters and gives the length that it needs; 0 is a failure.
template <typename Ask>
std::wstring Answer(Ask ask) {
  std::wstring text(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = ask(text.data(), static_cast<DWORD>(text.size()));
    const bool fits = length < text.size();
    text.resize(length);
    if (fits) return text;
  }
}

// Without the prefix for long names, which the standard library does not know: the manifest asks
// for long names of the plain form.
std::wstring Plain(std::wstring path) {
  constexpr std::wstring_view kUnc = LR"(\\?\UNC\)";
  constexpr std::wstring_view kPlain = LR"(\\?\)";
  if (path.starts_with(kUnc)) return L"\\\\" + path.substr(kUnc.size());
  const bool ofDrive = path.size() > kPlain.size() + 1 && path[kPlain.size() + 1] == L':';
  if (ofDrive && path.starts_with(kPlain)) path.erase(0, kPlain.size());
  return path;
}

// The place of a file or folder that is there, every link followed; empty for none.
fs::path FinalPlace(const fs::path& path) {
  const HANDLE file =
      CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  std::wstring place = Answer([&](wchar_t* text, DWORD room) {
    return GetFinalPathNameByHandleW(file, text, room, FILE_NAME_NORMALIZED | VOLUME_NAME_DOS);
  });
  CloseHandle(file);
  return Plain(std::move(place));
}

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

fs::path PathOf(const std::string& utf8) {
  return Plain(fs::path(std::u8string(utf8.begin(), utf8.end())).wstring());
}

std::string Followed(const std::string& path) {
  const fs::path name = PathOf(path);
  if (const fs::path place = FinalPlace(name); !place.empty()) return Utf8Of(place);
  const fs::path full = Answer([&](wchar_t* text, DWORD room) {
    return GetFullPathNameW(name.c_str(), room, text, nullptr);
  });
  const fs::path folder = FinalPlace(full.parent_path());
  return Utf8Of(folder.empty() ? full : folder / full.filename());
}

// A device keeps its name in every folder, whatever stands behind a point.
bool CanBeFileName(const std::string& path) {
  static constexpr std::wstring_view kDevices[] = {L"CON", L"PRN",    L"AUX",
                                                   L"NUL", L"CONIN$", L"CONOUT$"};
  std::wstring rest = Plain(PathOf(path).wstring());
  if (rest.starts_with(LR"(\\.\)")) return false;
  if (rest.size() > 1 && rest[1] == L':') {
    if (rest.size() == 2 || (rest[2] != L'\\' && rest[2] != L'/')) return false;
    rest.erase(0, 2);
  }
  const auto forbidden = [](wchar_t c) {
    return c < L' ' || std::wstring_view(L"<>:\"|?*").find(c) != std::wstring_view::npos;
  };
  if (std::ranges::any_of(rest, forbidden)) return false;
  std::wstring name = fs::path(rest).filename().wstring();
  name.resize(std::min(name.find(L'.'), name.size()));
  while (name.ends_with(L' ')) name.pop_back();
  std::ranges::transform(name, name.begin(), [](wchar_t c) { return std::towupper(c); });
  if (std::ranges::find(kDevices, name) != std::end(kDevices)) return false;
  const bool numbered = name.size() == 4 && (name.starts_with(L"COM") || name.starts_with(L"LPT"));
  return !(numbered && name[3] >= L'0' && name[3] <= L'9');
}

bool IsSameFileName(const std::string& a, const std::string& b) {
  const std::wstring left = PathOf(a).wstring();
  const std::wstring right = PathOf(b).wstring();
  return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                              static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

// The index of a file holds how often its record was taken; FAT makes it of the place of the name.
// The time of creation tells nothing: a file that takes a name gets that of the one before it.
std::string FileIdentity(const std::string& path) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const HANDLE file = CreateFileW(PathOf(path).c_str(), 0, kShared, nullptr, OPEN_EXISTING,
                                  FILE_FLAG_BACKUP_SEMANTICS, nullptr);
  if (file == INVALID_HANDLE_VALUE) return {};
  BY_HANDLE_FILE_INFORMATION told{};
  wchar_t system[MAX_PATH + 1]{};
  const bool isTold = GetFileInformationByHandle(file, &told) != FALSE &&
                      GetVolumeInformationByHandleW(file, nullptr, 0, nullptr, nullptr, nullptr,
                                                    system, MAX_PATH + 1) != FALSE;
  CloseHandle(file);
  if (!isTold || std::wstring_view(system).find(L"FAT") != std::wstring_view::npos) return {};
  std::string identity;
  for (const DWORD part : {told.dwVolumeSerialNumber, told.nFileIndexHigh, told.nFileIndexLow}) {
    identity += std::to_string(part) + ' ';
  }
  return identity;
}

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
  if (failure != 0) throw FileError(ErrorOfSystem(failure, kPermissionDenied), path);
  _close(file);
  return true;
}

// Another program may have it open, unless it lets nobody write or delete meanwhile.
bool MayBeReplaced(const std::string& path) {
  const HANDLE file = CreateFileW(PathOf(path).c_str(), GENERIC_WRITE | DELETE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  CloseHandle(file);
  return true;
}

// A name that is in use can't be taken, but its file can be given another one.
std::error_code MoveInPlace(const std::filesystem::path& from, const std::filesystem::path& to) {
  const auto move = [](const std::filesystem::path& file, const std::filesystem::path& name) {
    if (MoveFileExW(file.c_str(), name.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE)
      return DWORD{0};
    return GetLastError();
  };
  const DWORD failure = move(from, to);
  if (failure == 0) return {};
  const auto told = [](DWORD number) {
    return std::error_code(ErrnoOf(number), std::generic_category());
  };
  if (failure != ERROR_ACCESS_DENIED && failure != ERROR_SHARING_VIOLATION) return told(failure);
  const DWORD attributes = GetFileAttributesW(to.c_str());
  constexpr DWORD kNotToReplace = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & kNotToReplace) != 0) {
    return told(failure);
  }
  // No name that a later run would clear away: it may be all that is left of the file.
  std::filesystem::path aside = to;
  do aside += ".replaced";
  while (GetFileAttributesW(aside.c_str()) != INVALID_FILE_ATTRIBUTES);
  if (move(to, aside) != 0) return told(failure);
  if (move(from, to) != 0) {
    move(aside, to);
    return told(failure);
  }
  DeleteFileW(aside.c_str());  // goes once nobody has it open
  return {};
}

void SyncFile(const std::string& path) {
  int file = -1;
  const errno_t refusal =
      _wsopen_s(&file, PathOf(path).c_str(), _O_RDWR | _O_NOINHERIT, _SH_DENYNO, 0);
  if (refusal != 0) throw FileError(ErrorOfSystem(refusal, kPermissionDenied), path);
  const int failure = _commit(file) == 0 ? 0 : errno;
  _close(file);
  if (failure != 0) throw FileError(ErrorOfSystem(failure, kDeviceIoError), path);
}

// The system keeps its folders by itself.
void SyncFolderOf(const std::string& /*path*/) {}

// A file that is open may be given another name, as on other systems.
std::FILE* OpenStream(const std::string& path, FileUse mode) {
  std::error_code ignored;
  const fs::path native = PathOf(path);
  if (fs::is_directory(native, ignored)) {
    errno = EISDIR;
    return nullptr;
  }
  const bool reads = mode == FileUse::kRead;
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
