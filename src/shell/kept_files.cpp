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

void Remove(const fs::path& path) {
  std::error_code ignored;
  fs::remove(path, ignored);
}

// Goes unless it is let go of.
class NewFile {
 public:
  explicit NewFile(std::string path) : path_(std::move(path)) {}
  ~NewFile() {
    if (!path_.empty()) Remove(PathOf(path_));
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

// The name of a temporary file is given up for one that no later run clears away.
std::string NotPutBack(const std::string& path, const std::string& kept, bool temporary) {
  std::string name = kept;
  try {
    if (temporary) name = ClaimBackupName(path);
    if (temporary && MoveInPlace(PathOf(kept), PathOf(name))) {
      Remove(PathOf(name));
      name = kept;
    }
  } catch (const RunTimeError&) {
    name = kept;
  }
  return path + " can't be put back; as it was it is kept in " + name + ".";
}

bool TakesAnothersPlace(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(path), error);
  return !fs::exists(status) || fs::is_regular_file(status);
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
  databases_.push_back({path, "", copy});
  if (!FileIsThere(path)) return;
  if (copy == Copy::kBackup) {
    databases_.back().copy = MakeBackup(workspace, path);
  } else {
    NewFile made(TemporaryNameBeside(Followed(path)));
    workspace.CopyDatabase(path, made.Path());
    databases_.back().copy = made.LetGo();
  }
}

std::string KeptFiles::StandInFor(const std::string& path) {
  if (!TakesAnothersPlace(path)) return path;
  if (FileIsThere(path) && !MayBeWritten(path)) throw FileError(kPermissionDenied, path);
  const std::string place = Followed(path);
  std::string standIn = TemporaryNameBeside(place);
  newFiles_.push_back({PathOf(place), PathOf(standIn), {}});
  return standIn;
}

void KeptFiles::KeepText(TextFiles& files, const std::string& path) {
  files.WriteThrough(path, StandInFor(path));
}

std::string KeptFiles::BackupName() const {
  for (const Database& database : databases_) {
    if (database.kind == Copy::kBackup) return database.copy;
  }
  return {};
}

// All that may fail stands before the first file is moved, so that PutBack finds each as it was or
// can take it back.
void KeptFiles::Finish() {
  std::erase_if(newFiles_, [](const NewPlace& made) { return !FileIsThere(Utf8Of(made.standIn)); });
  std::vector<fs::path> copies;
  for (const Database& database : databases_) {
    if (database.kind == Copy::kUntilDone) copies.push_back(PathOf(database.copy));
  }
  for (NewPlace& made : newFiles_) Prepare(made);
  for (NewPlace& made : newFiles_) {
    if (MoveInPlace(made.standIn, made.place))
      throw FileError(kPermissionDenied, Utf8Of(made.place));
    made.moved = true;
  }
  for (const NewPlace& made : newFiles_) Remove(made.old);
  for (const fs::path& copy : copies) Remove(copy);
  newFiles_.clear();
  databases_.clear();
}

// The old file stays at hand under a second name, where the disk knows such names.
void KeptFiles::Prepare(NewPlace& made) {
  std::error_code error;
  SyncFile(Utf8Of(made.standIn));
  const fs::file_status status = fs::status(made.place, error);
  made.stood = fs::exists(status);
  if (!made.stood) return;
  fs::permissions(made.standIn, status.permissions(), error);
  if (newFiles_.size() == 1) return;
  fs::path old = PathOf(TemporaryNameBeside(Utf8Of(made.place)));
  fs::create_hard_link(made.place, old, error);
  if (!error) made.old = std::move(old);
}

std::vector<std::string> KeptFiles::PutBack() noexcept try {
  std::vector<std::string> failures;
  for (const NewPlace& made : newFiles_) {
    Remove(made.moved && !made.stood ? made.place : made.standIn);
    if (made.moved && !made.old.empty() && MoveInPlace(made.old, made.place)) {
      failures.push_back(NotPutBack(Utf8Of(made.place), Utf8Of(made.old), true));
    } else {
      Remove(made.old);
    }
  }
  newFiles_.clear();
  for (const Database& database : databases_) {
    if (database.copy.empty()) continue;
    try {
      if (Workspace::IsAsCopied(database.path, database.copy)) {
        Remove(PathOf(database.copy));
      } else {
        Workspace::PutInPlace(database.copy, database.path);
      }
    } catch (const std::exception&) {
      failures.push_back(
          NotPutBack(database.path, database.copy, database.kind == Copy::kUntilDone));
    }
  }
  databases_.clear();
  return failures;
} catch (...) {
  return {};
}

}  // namespace merivane::shell
