#include "database_file.h"

#include <array>
#include <fstream>
#include <string_view>

#include "runtime/code_page.h"
#include "runtime/run_time_error.h"

namespace merivane::store {

using namespace runtime;

namespace {

namespace fs = std::filesystem;

}  // namespace

DatabaseKind KindOfDatabase(const std::string& path) {
  constexpr std::string_view kMagic("SQLite format 3\0", 16);
  constexpr std::size_t kReadVersion = 19;
  constexpr char kLogVersion = 2;
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(path), error);
  const std::string shown = "'" + FromUtf8(path) + "'";
  if (!fs::exists(status)) throw FileError(kFileNotFound, path);
  if (!fs::is_regular_file(status)) {
    throw RunTimeError(kDatabaseError, shown + " is not a file.");
  }
  std::ifstream file(PathOf(path), std::ios::binary);
  if (!file) throw FileError(kPermissionDenied, path);
  std::array<char, 20> bytes{};
  file.read(bytes.data(), bytes.size());
  const std::string_view first(bytes.data(), static_cast<std::size_t>(file.gcount()));
  if (first.substr(0, kMagic.size()) != kMagic) return DatabaseKind::kOther;
  const bool log = first.size() > kReadVersion && first[kReadVersion] == kLogVersion;
  return log ? DatabaseKind::kSqliteWithLog : DatabaseKind::kSqlite;
}

bool HasJournal(const std::string& path) {
  std::error_code error;
  return fs::exists(PathOf(path + "-journal"), error);
}

bool HasPagesToPutBack(const std::string& path) {
  std::ifstream journal(PathOf(path + "-journal"), std::ios::binary);
  return journal.get() > 0;
}

void RemoveJournals(const std::string& path) {
  for (const char* ending : {"-journal", "-wal", "-shm"}) {
    std::error_code error;
    fs::remove(PathOf(path + ending), error);
  }
}

}  // namespace merivane::store
