#include "shell/kept_files.h"

#include <algorithm>
#include <filesystem>

#include "runtime/file_names.h"
#include "runtime/run_time_error.h"
#include "shell/named_files.h"

namespace merivane::shell {

using namespace runtime;

namespace {

namespace fs = std::filesystem;

// Gives the file the first free name of ".bak", ".bak2", ... beside `path`. A name is only ever
// taken by a file that is whole.
std::string GiveBackupName(const std::string& file, const std::string& path) {
  for (int number = 1;; ++number) {
    std::string name = path + ".bak" + (number > 1 ? std::to_string(number) : "");
    std::error_code error;
    fs::create_hard_link(PathOf(file), PathOf(name), error);
    if (!error) {
      RemoveFile(PathOf(file));
      return name;
    }
    // The name is taken, or the disk knows no second names.
    if (!MakeNewFile(name)) continue;
    const std::error_code failure = MoveInPlace(PathOf(file), PathOf(name));
    if (!failure) return name;
    RemoveFile(PathOf(name));
    throw FileError(ErrorOfSystem(failure, kPermissionDenied), name);
  }
}

// Copies what stands at `path` by `make`, which is given a temporary name and calls `copied` once
// the copy is whole. The name that it has then.
template <typename Make>
std::string MakeCopy(const std::string& path, Copy copy, const Make& make) {
  std::string name = TemporaryNameBeside(copy == Copy::kBackup ? path : Followed(path));
  const auto copied = [&] {
    if (copy == Copy::kBackup) name = GiveBackupName(name, path);
  };
  try {
    make(name, copied);
  } catch (...) {
    RemoveFile(PathOf(name));
    throw;
  }
  return name;
}

// The name of a temporary file is given up for one that no later run clears away.
std::string NotPutBack(const std::string& path, const std::string& kept, Copy kind,
                       const char* why) {
  std::string name = kept;
  try {
    if (kind == Copy::kUntilDone) name = GiveBackupName(kept, path);
  } catch (const RunTimeError&) {
    name = kept;
  }
  return path + why + "; as it was it is kept in " + name + ".";
}

constexpr const char* kCantBePutBack = " can't be put back";
constexpr const char* kChangedSince =
    " was changed by another program in the meantime and is left alone";

}  // namespace

std::string ReplaceDatabase(Workspace& workspace, const std::string& from, const std::string& to,
                            Copy copy) {
  if (copy == Copy::kNone || !FileIsThere(to)) {
    workspace.CopyDatabase(from, to);
    return {};
  }
  // The copy has its lasting name before the only other one goes.
  return MakeCopy(to, copy, [&](const std::string& name, const auto& copied) {
    workspace.ReplaceDatabase(from, to, name, copied);
  });
}

KeptFiles::~KeptFiles() { PutBack(); }

void KeptFiles::KeepDatabase(Workspace& workspace, const std::string& path, Copy copy) {
  workspace_ = &workspace;
  databases_.push_back({.path = path, .kind = copy});
  Database& database = databases_.back();
  if (!FileIsThere(path)) return;
  const auto copyTo = [&](const std::string& name, const auto& copied) {
    workspace.CopyDatabase(path, name);
    copied();
  };
  if (copy == Copy::kBackup) database.copy = MakeCopy(path, copy, copyTo);
  database.held = workspace.Hold(path);
  if (!database.held && database.copy.empty()) database.copy = MakeCopy(path, copy, copyTo);
}

void KeptFiles::KeepReplaced(Workspace& workspace, const std::string& path, const std::string& made,
                             const std::string& backup, Copy copy) {
  workspace_ = &workspace;
  databases_.push_back({.path = path, .copy = backup, .kind = copy, .made = made});
}

bool KeptFiles::NamesOutput(const std::string& text) const {
  return std::any_of(newFiles_.begin(), newFiles_.end(), [&](const NewFile& file) {
    return text.find("'" + file.Name() + "'") != std::string::npos;
  });
}

void KeptFiles::Flush() {
  if (workspace_ != nullptr) workspace_->FlushHeld();
}

const Output& KeptFiles::NewOutput(const std::string& name) {
  return newFiles_.emplace_back(name).Target();
}

const Output& KeptFiles::NewOutput(TextFiles& files, const std::string& name) {
  files.WriteThrough(name);  // whatever an earlier run wrote it through
  const Output& made = NewOutput(name);
  files.WriteThrough(made);
  return made;
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
  std::vector<fs::path> copies;
  for (const Database& database : databases_) {
    if (database.kind == Copy::kUntilDone && !database.copy.empty()) {
      copies.push_back(PathOf(database.copy));
    }
  }
  const bool alone = newFiles_.size() == 1 && databases_.empty();
  for (NewFile& file : newFiles_) {
    file.Prepare();
    if (!alone) file.KeepOld();
  }
  for (NewFile& file : newFiles_) file.TakePlace();
  if (workspace_ != nullptr) workspace_->KeepHeld();
  for (NewFile& file : newFiles_) file.Settle();
  for (const fs::path& copy : copies) RemoveFile(copy);
  newFiles_.clear();
  databases_.clear();
  workspace_ = nullptr;
}

// A sentence where it can't be put back, or is left alone.
std::string KeptFiles::Restore(const Database& database) try {
  if (database.copy.empty()) return {};
  if (database.held) {
    RemoveFile(PathOf(database.copy));
    return {};
  }
  if (workspace_->PutBack(database.copy, database.path, database.made)) return {};
  return NotPutBack(database.path, database.copy, database.kind, kChangedSince);
} catch (const std::exception&) {
  return NotPutBack(database.path, database.copy, database.kind, kCantBePutBack);
}

std::vector<std::string> KeptFiles::PutBack() noexcept try {
  std::vector<std::string> failures;
  for (NewFile& file : newFiles_) {
    const std::string kept = file.PutBack();
    if (!kept.empty())
      failures.push_back(NotPutBack(file.Name(), kept, Copy::kUntilDone, kCantBePutBack));
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
