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

// Gives the file the first free name of ".bak", ".bak2", ... beside `path`. A name is only ever
// taken by a file that is whole.
std::string GiveBackupName(const std::string& file, const std::string& path) {
  for (int number = 1;; ++number) {
    std::string name = path + ".bak" + (number > 1 ? std::to_string(number) : "");
    std::error_code error;
    fs::create_hard_link(PathOf(file), PathOf(name), error);
    if (!error) {
      Remove(PathOf(file));
      return name;
    }
    if (error == std::errc::file_exists) continue;
    // The disk knows no second names.
    if (!MakeNewFile(name)) continue;
    const std::error_code failure = MoveInPlace(PathOf(file), PathOf(name));
    if (!failure) return name;
    Remove(PathOf(name));
    throw FileError(kPermissionDenied, name);
  }
}

// Copies what stands at `path` by `make`, which is given a temporary name.
template <typename Make>
std::string MakeCopy(const std::string& path, Copy copy, const Make& make) {
  std::string name = TemporaryNameBeside(copy == Copy::kBackup ? path : Followed(path));
  try {
    make(name);
    return copy == Copy::kBackup ? GiveBackupName(name, path) : name;
  } catch (...) {
    Remove(PathOf(name));
    throw;
  }
}

bool MayBeWritten(const std::string& path) {
  return std::ofstream(PathOf(path), std::ios::app | std::ios::binary).is_open();
}

// The name of a temporary file is given up for one that no later run clears away.
std::string NotPutBack(const std::string& path, const std::string& kept, bool temporary,
                       const char* why) {
  std::string name = kept;
  try {
    if (temporary) name = GiveBackupName(kept, path);
  } catch (const RunTimeError&) {
    name = kept;
  }
  return path + why + "; as it was it is kept in " + name + ".";
}

constexpr const char* kCantBePutBack = " can't be put back";
constexpr const char* kChangedSince =
    " was changed by another program in the meantime and is left alone";

bool TakesAnothersPlace(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(path), error);
  return !fs::exists(status) || fs::is_regular_file(status);
}

}  // namespace

std::string ReplaceDatabase(Workspace& workspace, const std::string& from, const std::string& to,
                            Copy copy) {
  if (copy == Copy::kNone || !FileIsThere(to)) {
    workspace.CopyDatabase(from, to);
    return {};
  }
  // The copy has its lasting name before the only other one goes.
  std::string name = TemporaryNameBeside(copy == Copy::kBackup ? to : Followed(to));
  try {
    workspace.ReplaceDatabase(from, to, name, [&] {
      if (copy == Copy::kBackup) name = GiveBackupName(name, to);
    });
  } catch (...) {
    Remove(PathOf(name));
    throw;
  }
  return name;
}

KeptFiles::~KeptFiles() { PutBack(); }

void KeptFiles::KeepDatabase(Workspace& workspace, const std::string& path, Copy copy) {
  workspace_ = &workspace;
  databases_.push_back({path, "", copy, "", false});
  Database& database = databases_.back();
  if (!FileIsThere(path)) return;
  const auto copyTo = [&](const std::string& name) { workspace.CopyDatabase(path, name); };
  if (copy == Copy::kBackup) database.copy = MakeCopy(path, copy, copyTo);
  database.held = workspace.Hold(path);
  if (!database.held && database.copy.empty()) database.copy = MakeCopy(path, copy, copyTo);
}

void KeptFiles::KeepReplaced(Workspace& workspace, const std::string& path, const std::string& made,
                             const std::string& backup, Copy copy) {
  workspace_ = &workspace;
  databases_.push_back({path, backup, copy, made, false});
}

std::string KeptFiles::InNamesOfOutputs(std::string text) const {
  for (const NewPlace& made : newFiles_) {
    const std::string name = Utf8Of(made.standIn);
    for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name)) {
      text.replace(at, name.size(), Utf8Of(made.place));
    }
  }
  return text;
}

void KeptFiles::Flush() {
  if (workspace_ != nullptr) workspace_->FlushHeld();
}

std::string KeptFiles::StandInFor(const std::string& path) {
  if (!TakesAnothersPlace(path)) return path;
  if (FileIsThere(path) && !MayBeWritten(path)) throw FileError(kPermissionDenied, path);
  const std::string place = Followed(path);
  std::string standIn = TemporaryNameBeside(place);
  newFiles_.push_back({PathOf(place), PathOf(standIn), {}});
  return standIn;
}

std::string KeptFiles::KeepText(TextFiles& files, const std::string& path) {
  std::string standIn = StandInFor(path);
  files.WriteThrough(path, standIn);
  return standIn;
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
    if (database.kind == Copy::kUntilDone && !database.copy.empty()) {
      copies.push_back(PathOf(database.copy));
    }
  }
  for (NewPlace& made : newFiles_) Prepare(made);
  for (NewPlace& made : newFiles_) {
    if (MoveInPlace(made.standIn, made.place))
      throw FileError(kPermissionDenied, Utf8Of(made.place));
    made.moved = true;
  }
  if (workspace_ != nullptr) workspace_->KeepHeld();
  for (const NewPlace& made : newFiles_) Remove(made.old);
  for (const fs::path& copy : copies) Remove(copy);
  newFiles_.clear();
  databases_.clear();
  workspace_ = nullptr;
}

// The old file stays at hand under a second name, where the disk knows such names.
void KeptFiles::Prepare(NewPlace& made) {
  std::error_code error;
  SyncFile(Utf8Of(made.standIn));
  const fs::file_status status = fs::status(made.place, error);
  made.stood = fs::exists(status);
  if (!made.stood) return;
  fs::permissions(made.standIn, status.permissions(), error);
  if (newFiles_.size() == 1 && databases_.empty()) return;
  fs::path old = PathOf(TemporaryNameBeside(Utf8Of(made.place)));
  fs::create_hard_link(made.place, old, error);
  if (!error) made.old = std::move(old);
}

// A sentence where it can't be put back, or is left alone.
std::string KeptFiles::Restore(const Database& database) try {
  if (database.copy.empty()) return {};
  if (database.held) {
    Remove(PathOf(database.copy));
    return {};
  }
  if (workspace_->PutBack(database.copy, database.path, database.made)) return {};
  return NotPutBack(database.path, database.copy, database.kind == Copy::kUntilDone, kChangedSince);
} catch (const std::exception&) {
  return NotPutBack(database.path, database.copy, database.kind == Copy::kUntilDone,
                    kCantBePutBack);
}

std::vector<std::string> KeptFiles::PutBack() noexcept try {
  std::vector<std::string> failures;
  for (const NewPlace& made : newFiles_) {
    Remove(made.moved && !made.stood ? made.place : made.standIn);
    if (made.moved && !made.old.empty() && MoveInPlace(made.old, made.place)) {
      failures.push_back(NotPutBack(Utf8Of(made.place), Utf8Of(made.old), true, kCantBePutBack));
    } else {
      Remove(made.old);
    }
  }
  newFiles_.clear();
  if (workspace_ != nullptr) workspace_->DropHeld();
  for (const Database& database : databases_) {
    const std::string failure = Restore(database);
    if (!failure.empty()) failures.push_back(failure);
  }
  databases_.clear();
  workspace_ = nullptr;
  return failures;
} catch (...) {
  return {};
}

}  // namespace merivane::shell
