
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "access_copy.h"
#include "runtime/code_page.h"
#include "runtime/file_names.h"
#include "runtime/run_time_error.h"

namespace merivane::store {

using namespace runtime;

bool IsAccessFile(const std::string& path) {
  static constexpr std::string_view kMark("\0\1\0\0Standard ", 13);
  char head[19] = {};
  std::ifstream file(PathOf(path), std::ios::binary);
  if (!file.read(head, sizeof head)) return false;
  const std::string_view text(head, sizeof head);
  return text.starts_with(kMark) && (text.ends_with("Jet DB") || text.ends_with("ACE DB"));
}

void LoadAccessFile(const std::string& path, const std::string& sqlitePath, WorkListener& work) {
  work.Begin("Reading the Access database", 0);
  const std::string failure = CopyAccessTablesAside(path, sqlitePath, work);
  if (failure.empty()) return;
  std::error_code ignored;
  std::filesystem::remove(PathOf(sqlitePath), ignored);
  throw RunTimeError(
      kDatabaseError,
      FromUtf8("'" + path + "' can't be read as an Access database: " + failure + "."));
}

}  // namespace merivane::store
