#include <exception>
#include <filesystem>
#include <fstream>

#include "database_file.h"
#include "open_database.h"
#include "workspace_state.h"

namespace merivane::store {

namespace {

namespace fs = std::filesystem;

bool HasLog(const std::string& path) {
  std::error_code error;
  return fs::exists(PathOf(path + "-wal"), error);
}

// Keeps other processes from the file while it lives, null where no database is there. Refuses a
// file that may not be written or that another process holds locked. A transaction that a crash has
// cut off is undone by this.
DatabaseHandle LockForReplacement(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(path), error);
  if (!fs::exists(status)) return nullptr;
  const bool writable =
      fs::is_regular_file(status) && std::ofstream(PathOf(path), std::ios::app | std::ios::binary);
  if (!writable) throw FileError(kPermissionDenied, path);
  if (KindOfDatabase(path) == DatabaseKind::kOther) return nullptr;
  DatabaseHandle database = OpenHandle(path, SQLITE_OPEN_READWRITE);
  const int result =
      sqlite3_exec(database.get(), "begin exclusive", nullptr, nullptr, nullptr) & 0xFF;
  const bool isTaken = result == SQLITE_BUSY || result == SQLITE_LOCKED;
  if (isTaken || HasMoved(database.get())) throw InUseError(path);
  return database;
}

// False too where the disk gives no answer.
bool IsChanged(sqlite3* lock, const std::string& path, const std::string& made) try {
  std::error_code error;
  if (!fs::exists(PathOf(path), error)) return false;
  return lock == nullptr ? !HaveSameBytes(path, made) : !HasBytesOf(lock, path, made);
} catch (const RunTimeError&) {
  return false;
}

// Of a file that a lock keeps others from, if it is a database. REQUIRES: the file is opened by no
// other way meanwhile, since closing it would end the lock.
void CopyLocked(sqlite3* lock, const std::string& from, const std::string& to, WorkListener& work) {
  if (lock == nullptr) return CopyBytes(from, to, to, work);
  if (HasLog(from)) return CopyDatabasePages(lock, from, to, to, work);
  CopyOpenDatabaseBytes(lock, from, to, to, work);
}

void CopyTo(const std::string& from, Engine* inUse, const std::string& to, const std::string& shown,
            WorkListener& work, std::chrono::milliseconds patience) {
  if (inUse != nullptr) inUse->WriteHeld();
  if (inUse != nullptr && inUse->IsTaken() && !HasLog(from)) {
    return CopyOpenDatabaseBytes(inUse->Database(), from, to, shown, work);
  }
  if (inUse != nullptr) return CopyDatabasePages(inUse->Database(), from, to, shown, work);
  if (KindOfDatabase(from) == DatabaseKind::kOther || !(HasLog(from) || HasJournal(from))) {
    return CopyBytes(from, to, shown, work);
  }
  const DatabaseHandle source = OpenHandle(from, SQLITE_OPEN_READWRITE);
  sqlite3_busy_timeout(source.get(), static_cast<int>(patience.count()));
  CopyDatabasePages(source.get(), from, to, shown, work);
}

// From another disk too. The lock on what stood there ends behind it. Gives the identity of the
// file that took the place.
std::string MoveOver(const std::string& made, const std::string& target,
                     const DatabaseHandle& /*lock*/, WorkListener& work) {
  RemoveJournals(target);
  std::string identity = FileIdentity(made);
  std::error_code failure = MoveInPlace(PathOf(made), PathOf(target));
  if (failure == std::errc::cross_device_link) {
    const TemporaryFile source(made);
    const TemporaryFile near(TemporaryNameBeside(target));
    CopyBytes(made, near.Path(), target, work);
    identity = FileIdentity(near.Path());
    failure = MoveInPlace(PathOf(near.Path()), PathOf(target));
  }
  if (failure) {
    throw FileError(ErrorOfSystem(failure, kPermissionDenied), target);
  }
  SyncFolderOf(target);
  return identity;
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
    if (!engine->IsWaiting() && engine != held.get()) engine->Commit();
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

std::shared_ptr<Engine> Workspace::State::HeldOn(const std::string& path) const {
  return held != nullptr && IsSameFile(held->Path(), path) ? held : nullptr;
}

// The limit of memory (hardening.h) counts by SQLite's statistics, which may be built in as off.
Workspace::Workspace() : state_(std::make_unique<State>()) {
  sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 1);  // refused once SQLite runs
}
Workspace::~Workspace() = default;

void Workspace::LeaveOutLocks() { sqlite3_config(SQLITE_CONFIG_SINGLETHREAD); }

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
  ReplaceDatabase(from, to, "", nullptr);
}

void Workspace::ReplaceDatabase(const std::string& from, const std::string& to,
                                const std::string& backup, const std::function<void()>& copied) {
  std::error_code error;
  if (!fs::exists(PathOf(from), error)) throw FileError(kFileNotFound, from);
  if (IsSameFile(from, to)) throw FileError(kPermissionDenied, to);
  Engine* source = state_->EngineOn(from);
  if (source == nullptr || !source->IsTaken()) state_->CommitOthers(from, nullptr);
  const bool isOpenHere = state_->CommitOthers(to, nullptr);
  const std::string target = Followed(to);
  const TemporaryFile made(TemporaryNameBeside(target));
  const DatabaseHandle lock = isOpenHere ? nullptr : LockForReplacement(to);
  CopyTo(from, source, made.Path(), to, *work, patience);
  if (fs::exists(PathOf(target), error)) {
    fs::permissions(PathOf(made.Path()), fs::status(PathOf(target), error).permissions(), error);
  }
  if (!backup.empty()) {
    Engine* open = state_->EngineOn(to);
    if (open != nullptr) {
      CopyTo(to, open, backup, backup, *work, patience);
    } else {
      CopyLocked(lock.get(), to, backup, *work);
    }
    copied();
  }
  std::string& placed = state_->placed[target];  // behind the move nothing may fail
  placed = MoveOver(made.Path(), target, lock, *work);
}

bool Workspace::PutBack(const std::string& copy, const std::string& to, const std::string& made) {
  const std::string target = Followed(to);
  const DatabaseHandle lock = LockForReplacement(target);
  // Two runs may have put files of the same bytes there.
  const auto placed = state_->placed.find(target);
  const std::string now = FileIdentity(target);
  const bool isAnother = placed != state_->placed.end() && !placed->second.empty() &&
                         !now.empty() && now != placed->second;
  if (!made.empty() && isAnother) return false;
  // Where pages are still to be put back, behind the lock, a run of ours could neither finish nor
  // undo what it wrote, and nobody has written since.
  const bool isOurs = made.empty() || HasPagesToPutBack(target);
  if (!isOurs && IsChanged(lock.get(), target, made)) return false;
  MoveOver(copy, target, lock, *work);
  return true;
}

bool Workspace::Hold(const std::string& path) {
  for (const Connection* connection : state_->connections) {
    if (!Holds(connection->engine_.get(), path) || !connection->engine_->IsTaken()) continue;
    state_->held = connection->engine_;
    state_->held->OnBusy(nullptr);
    return true;
  }
  return false;
}

void Workspace::HoldCopy(Connection& connection, const std::string& path) {
  connection.Open(ConnectionText(path), OpenMode::kAside);
  state_->held = connection.engine_;
}

void Workspace::FlushHeld() {
  if (state_->held) state_->held->Flush();
}

void Workspace::KeepHeld() {
  if (!state_->held) return;
  state_->held->CloseSets();
  state_->held->Commit();
  state_->held.reset();
}

void Workspace::DropHeld() noexcept {
  if (!state_->held) return;
  state_->held->CloseSets();
  state_->held->RollBack();
  state_->held.reset();
}

}  // namespace merivane::store
