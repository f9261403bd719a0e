#include "shell/kept_files.h"

#include <fstream>
#include <utility>

#include "runtime/file_names.h"
#include "runtime/run_time_error.h"
#include "shell/browse.h"

namespace merivane::shell {

using namespace runtime;
namespace {

namespace fs = std::filesystem;

void Remove(const std::string& path) {
  std::error_code ignored;
  fs::remove(PathOf(path), ignored);
}

// Goes unless it is let go of.
class NewFile {
 public:
  explicit NewFile(std::string path) : path_(std::move(path)) {}
  ~NewFile() {
    if (!path_.empty()) Remove(path_);
  }
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;
  const std::string& Path() const { return path_; }
  std::string LetGo() { return std::exchange(path_, {}); }

 private:
  std::string path_;
};

std::string ClaimBackupName(const std::string& path) {
  std::string name = path + ".bak";
  for (int number = 2; !MakeNewFile(name); ++number) name = path + ".bak" + std::to_string(number);
  return name;
}

bool MayBeWritten(const std::string& path) {
  return std::ofstream(PathOf(path), std::ios::app | std::ios::binary).is_open();
}

bool TakesAnothersPlace(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(path), error);
  return !fs::exists(status) || fs::is_regular_file(status);
}

void TakePlace(const std::string& standIn, const std::string& path) {
  std::error_code error;
  const fs::path target = PathOf(Followed(path));
  const fs::file_status old = fs::status(target, error);
  if (fs::exists(old)) fs::permissions(PathOf(standIn), old.permissions(), error);
  SyncFile(standIn);
  fs::rename(PathOf(standIn), target, error);
  if (error) throw FileError(kPermissionDenied, path);
}

}  // namespace

std::string MakeBackup(Workspace& workspace, const std::string& path) {
  NewFile backup(ClaimBackupName(path));
  workspace.CopyDatabase(path, backup.Path());
  return backup.LetGo();
}

std::string ReplaceDatabase(Workspace& workspace, const std::string& from, const std::string& to,
                            bool keepBackup) {
  NewFile backup(keepBackup && FileIsThere(to) ? MakeBackup(workspace, to) : "");
  workspace.CopyDatabase(from, to);
  return backup.LetGo();
}

KeptFiles::~KeptFiles() { PutBack(); }

void KeptFiles::KeepDatabase(Workspace& workspace, const std::string& path, Copy copy) {
  Database kept{path, "", copy};
  if (FileIsThere(path)) {
    if (copy == Copy::kBackup) {
      kept.copy = backupName_ = MakeBackup(workspace, path);
    } else {
      NewFile made(TemporaryNameBeside(Followed(path)));
      workspace.CopyDatabase(path, made.Path());
      kept.copy = made.LetGo();
    }
  }
  databases_.push_back(std::move(kept));
}

std::string KeptFiles::StandInFor(const std::string& path) {
  if (!TakesAnothersPlace(path)) return path;
  if (FileIsThere(path) && !MayBeWritten(path)) throw FileError(kPermissionDenied, path);
  newFiles_.push_back({path, TemporaryNameBeside(Followed(path))});
  return newFiles_.back().standIn;
}

void KeptFiles::KeepText(TextFiles& files, const std::string& path) {
  files.WriteThrough(path, StandInFor(path));
}

void KeptFiles::Finish() {
  while (!newFiles_.empty()) {
    const NewPlace& made = newFiles_.back();
    if (FileIsThere(made.standIn)) TakePlace(made.standIn, made.path);
    newFiles_.pop_back();
  }
  for (const Database& database : databases_) {
    if (database.kind == Copy::kUntilDone && !database.copy.empty()) Remove(database.copy);
  }
  databases_.clear();
}

std::vector<std::string> KeptFiles::PutBack() noexcept try {
  std::vector<std::string> failures;
  for (const NewPlace& made : newFiles_) Remove(made.standIn);
  newFiles_.clear();
  for (const Database& database : databases_) {
    if (database.copy.empty()) continue;
    try {
      Workspace::PutInPlace(database.copy, database.path);
    } catch (const std::exception&) {
      failures.push_back(database.path + " can't be put back; as it was it is kept in " +
                         database.copy + ".");
    }
  }
  databases_.clear();
  return failures;
} catch (...) {
  return {};
}

}  // namespace merivane::shell
