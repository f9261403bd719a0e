#include <exception>
#include <filesystem>
#include <fstream>

#include "database_file.h"
#include "open_database.h"
#include "runtime/code_page.h"
#include "whole_copy.h"
#include "workspace_state.h"

namespace merivane::store {

namespace {

namespace fs = std::filesystem;

RunTimeError SystemError(const std::error_code& error, const std::string& path) {
  if (error == std::errc::no_space_on_device) return FileError(kDiskFull, path);
  if (error == std::errc::no_such_file_or_directory) return FileError(kPathNotFound, path);
  return FileError(kPermissionDenied, path);
}

bool HasLog(const std::string& path) {
  std::error_code error;
  return fs::exists(PathOf(path + "-wal"), error);
}

bool HasJournal(const std::string& path) {
  std::error_code error;
  return HasLog(path) || fs::exists(PathOf(path + "-journal"), error);
}

// Refuses a file that may not be written or that another process holds locked. A transaction that a
// crash has cut off is undone by this.
void CheckReplaceable(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(path), error);
  if (!fs::exists(status)) return;
  const bool writable =
      fs::is_regular_file(status) && std::ofstream(PathOf(path), std::ios::app | std::ios::binary);
  if (!writable) throw FileError(kPermissionDenied, path);
  if (KindOfFile(path) == FileKind::kOther) return;
  const DatabaseHandle database = OpenHandle(path, SQLITE_OPEN_READWRITE);
  const int result =
      sqlite3_exec(database.get(), "begin exclusive", nullptr, nullptr, nullptr) & 0xFF;
  if (result == SQLITE_BUSY || result == SQLITE_LOCKED) throw FileError(kPermissionDenied, path);
}

void CopyTo(const std::string& from, Engine* inUse, const std::string& to, const std::string& shown,
            Work& work) {
  constexpr int kPatience = 3000;  // milliseconds
  if (inUse != nullptr && inUse->IsTaken() && !HasLog(from)) {
    return CopyOpenDatabaseBytes(inUse->Database(), from, to, shown, work);
  }
  if (inUse != nullptr) return CopyDatabasePages(inUse->Database(), from, to, shown, work);
  if (KindOfFile(from) == FileKind::kOther || !HasJournal(from)) {
    return CopyBytes(from, to, shown, work);
  }
  const DatabaseHandle source = OpenHandle(from, SQLITE_OPEN_READWRITE);
  sqlite3_busy_timeout(source.get(), kPatience);
  CopyDatabasePages(source.get(), from, to, shown, work);
}

bool Holds(const Engine* engine, const std::string& path) {
  return engine != nullptr && engine->HoldsFile() && IsSameFile(engine->Path(), path);
}

}  // namespace

bool Workspace::State::CommitOthers(const std::string& path, const Connection* self) {
  bool any = false;
  for (const Connection* connection : connections) {
    Engine* engine = EngineOf(*connection);
    if (connection == self || !Holds(engine, path)) continue;
    any = true;
    if (!engine->IsWaiting()) engine->Commit();
  }
  return any;
}

Engine* Workspace::State::EngineOn(const std::string& path) const {
  for (const Connection* connection : connections) {
    Engine* engine = EngineOf(*connection);
    if (Holds(engine, path)) return engine;
  }
  return nullptr;
}

// Nobody asks for SQLite's statistics of memory, which take a lock for each piece of it.
Workspace::Workspace() : state_(std::make_unique<State>()) {
  sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);  // refused once SQLite runs
}
Workspace::~Workspace() = default;

void Workspace::CommitAll() {
  std::exception_ptr first;
  for (Connection* connection : state_->connections) {
    try {
      if (connection->IsOpen()) connection->Commit();
    } catch (const RunTimeError&) {
      if (!first) first = std::current_exception();
    }
  }
  if (first) std::rethrow_exception(first);
}

void Workspace::CommitAllQuietly() noexcept {
  try {
    CommitAll();
  } catch (...) {
    // The program ends on an error that it has shown already.
  }
}

void Workspace::CopyDatabase(const std::string& from, const std::string& to) {
  std::error_code error;
  if (!fs::exists(PathOf(from), error)) throw FileError(kFileNotFound, from);
  if (IsSameFile(from, to)) throw FileError(kPermissionDenied, to);
  Engine* source = state_->EngineOn(from);
  if (source == nullptr || !source->IsTaken()) state_->CommitOthers(from, nullptr);
  const bool held = state_->CommitOthers(to, nullptr);
  if (!held) CheckReplaceable(to);
  const std::string target = Followed(to);
  const NewFile made(TemporaryNameBeside(target));
  CopyTo(from, source, made.Path(), to, *work);
  if (fs::exists(PathOf(target), error)) {
    fs::permissions(PathOf(made.Path()), fs::status(PathOf(target), error).permissions(), error);
  }
  PutInPlace(made.Path(), target);
}

bool Workspace::IsAsCopied(const std::string& path, const std::string& copy) {
  return !HasJournal(path) && HaveSameBytes(path, copy);
}

void Workspace::PutInPlace(const std::string& copy, const std::string& to) {
  const std::string target = Followed(to);
  RemoveJournals(target);
  const std::error_code failure = MoveInPlace(PathOf(copy), PathOf(target));
  if (failure == std::errc::cross_device_link) {
    Workspace().CopyDatabase(copy, target);
    std::error_code ignored;
    fs::remove(PathOf(copy), ignored);
  } else if (failure) {
    throw SystemError(failure, to);
  }
  SyncFolderOf(target);
}

}  // namespace merivane::store
