// Files of databases on the disk: what they are, and how one takes another's place. Paths are
// UTF-8.
#pragma once

#include <string>
#include <utility>

#include "runtime/file_names.h"

namespace merivane::store {

using namespace runtime;

enum class FileKind { kSqlite, kSqliteWithLog, kOther };

// By the first bytes. Errors: 53 no such file (the path in the description), 70 one that may not be
// read, kDatabaseError for a folder. REQUIRES: no connection of ours holds the file, whose locks
// would go when it is closed here.
FileKind KindOfFile(const std::string& path);

// The same file on the disk, whatever its names; false where either is not there.
bool IsSameFile(const std::string& a, const std::string& b);

// Removes what a crash may have left beside the database.
void RemoveJournals(const std::string& path);

// A name in the folder of temporary files.
std::string TemporaryName();

// A file in the making, which goes with this unless it is let go of.
class NewFile {
 public:
  explicit NewFile(std::string path) : path_(std::move(path)) {}
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  const std::string& Path() const { return path_; }
  void LetGo() { path_.clear(); }

 private:
  std::string path_;
};

}  // namespace merivane::store
