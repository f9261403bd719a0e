#include "open_database.h"

#include <filesystem>

#include "access_copy.h"
#include "database_file.h"
#include "hardening.h"
#include "index_choice.h"
#include "runtime/code_page.h"
#include "runtime/file_names.h"

namespace merivane::store {

namespace {

void SetUp(sqlite3* database, const std::string& path) {
  sqlite3_db_config(database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  Execute(database, "pragma synchronous = normal; pragma temp_store = memory", path);
  Execute(database, "pragma cache_size = -16384", path);
}

// A damaged head shows only when something is read.
constexpr const char* kProof = "select count(*) from sqlite_master";

// Of the pages behind the head the engine proves each that it reads. All of them are looked through
// where a file was made by another process or cut off by a crash, and otherwise not: a command
// costs what its own project costs, whatever lies beside it.
void Prove(sqlite3* database, const std::string& path) { Execute(database, kProof, path); }

bool HasJournal(const std::string& name) {
  std::error_code error;
  return std::filesystem::exists(PathOf(name + "-journal"), error);
}

std::string AsUri(const std::string& path) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string uri = "file:";
  for (const char character : path) {
    const auto byte = static_cast<unsigned char>(character);
    uri += '%';
    uri += kDigits[byte >> 4U];
    uri += kDigits[byte & 0xFU];
  }
  return uri + "?immutable=1";
}

std::shared_ptr<Engine> OpenForWriting(const std::string& path, const std::string& name,
                                       std::chrono::milliseconds patience) {
  const bool afterCrash = HasJournal(name);
  DatabaseHandle database = OpenHandle(name, SQLITE_OPEN_READWRITE);
  const bool readOnly = sqlite3_db_readonly(database.get(), "main") == 1;
  const Writing writing = readOnly ? Writing::kRefused : Writing::kAllowed;
  auto engine = std::make_shared<Engine>(std::move(database), path, writing, patience);
  SetUp(engine->Database(), path);  // which looks into the file, and waits for who writes it
  Prove(engine->Database(), path);
  if (afterCrash) RefuseSharedPages(engine->Database(), path);
  if (!readOnly) Execute(engine->Database(), "pragma journal_mode = delete", path);
  return engine;
}

// Without its log a database in that mode is a plain file; SQLite would make the log anew.
DatabaseHandle OpenUnchanged(const std::string& name, DatabaseKind kind) {
  std::error_code error;
  const bool plain = kind == DatabaseKind::kSqliteWithLog &&
                     !std::filesystem::exists(PathOf(name + "-wal"), error);
  return plain ? OpenHandle(AsUri(name), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI)
               : OpenHandle(name, SQLITE_OPEN_READONLY);
}

// `copy` is this database's alone from now on, and goes with it.
std::shared_ptr<Engine> OpenCopy(const std::string& path, const std::string& copy,
                                 WorkListener& work) {
  auto engine =
      std::make_shared<Engine>(OpenHandle(copy, SQLITE_OPEN_READWRITE), path, Writing::kRefused);
  engine->IsCopy(copy);
  SetUp(engine->Database(), path);
  Prove(engine->Database(), path);
  RefuseSharedPages(engine->Database(), path);
  Execute(engine->Database(), "pragma journal_mode = memory", path);
  AddMissingKeyIndexes(engine->Database(), path, work);
  return engine;
}

bool WasCutOff(sqlite3* database) {
  return sqlite3_exec(database, kProof, nullptr, nullptr, nullptr) != SQLITE_OK &&
         sqlite3_extended_errcode(database) == SQLITE_READONLY_ROLLBACK;
}

// A transaction that a crash has cut off is undone by writing, so it is undone in a copy.
std::shared_ptr<Engine> OpenRecovered(const std::string& path, const std::string& name,
                                      WorkListener& work) {
  TemporaryFile copy(TemporaryName());
  const TemporaryFile journal(copy.Path() + "-journal");
  CopyBytes(name, copy.Path(), copy.Path(), work);
  CopyBytes(name + "-journal", journal.Path(), journal.Path(), work);
  auto engine = OpenCopy(path, copy.Path(), work);
  copy.LetGo();
  return engine;
}

// Stays in memory as long as the cache holds it, and is a nameless file beyond.
std::shared_ptr<Engine> CopyAside(Engine& source, Writing writing, WorkListener& work) {
  DatabaseHandle aside = OpenHandle("", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  CopyPages(source.Database(), aside.get(), source.Path(), work);
  SetUp(aside.get(), source.Path());
  Execute(aside.get(), "pragma temp_store = file; pragma cache_size = -65536", source.Path());
  auto copy = std::make_shared<Engine>(std::move(aside), source.Path(), writing);
  copy->IsCopy();
  return copy;
}

std::shared_ptr<Engine> OpenAside(const std::string& path, const std::string& name,
                                  std::chrono::milliseconds patience) {
  auto engine =
      std::make_shared<Engine>(OpenOverlay(name, path), path, Writing::kAllowed, patience);
  engine->IsCopy();
  SetUp(engine->Database(), path);
  Prove(engine->Database(), path);
  Execute(engine->Database(), "pragma journal_mode = memory", path);
  return engine;
}

std::shared_ptr<Engine> OpenForReading(const std::string& path, const std::string& name,
                                       DatabaseKind kind, WorkListener& work,
                                       std::chrono::milliseconds patience) {
  auto engine =
      std::make_shared<Engine>(OpenUnchanged(name, kind), path, Writing::kRefused, patience);
  if (WasCutOff(engine->Database())) return OpenRecovered(path, name, work);
  SetUp(engine->Database(), path);
  Prove(engine->Database(), path);
  if (!LacksKeyIndexes(engine->Database(), path)) return engine;
  auto copy = CopyAside(*engine, Writing::kRefused, work);
  AddMissingKeyIndexes(copy->Database(), path, work);
  return copy;
}

std::shared_ptr<Engine> OpenAccess(const std::string& path, WorkListener& work) {
  TemporaryFile loaded(TemporaryName());
  const TemporaryFile journal(loaded.Path() + "-journal");
  LoadAccessFile(path, loaded.Path(), work);
  auto engine = OpenCopy(path, loaded.Path(), work);
  loaded.LetGo();
  return engine;
}

}  // namespace

DatabaseHandle OpenHandle(const std::string& path, int flags) {
  sqlite3* raw = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &raw, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  DatabaseHandle database(raw);
  if (result != SQLITE_OK) throw DatabaseError(raw, path);
  sqlite3_extended_result_codes(raw, 1);
  Harden(raw);
  return database;
}

void CopyPages(sqlite3* from, sqlite3* to, const std::string& path, WorkListener& work) {
  constexpr int kPages = 64;  // between two steps
  std::unique_ptr<sqlite3_backup, decltype(&sqlite3_backup_finish)> copy(
      sqlite3_backup_init(to, "main", from, "main"), &sqlite3_backup_finish);
  if (copy == nullptr) throw DatabaseError(to, path);
  int result = sqlite3_backup_step(copy.get(), kPages);
  work.Begin(kCopying, sqlite3_backup_pagecount(copy.get()) / kPages);
  while (result == SQLITE_OK) {
    work.Step();
    result = sqlite3_backup_step(copy.get(), kPages);
  }
  copy.reset();  // tells `to` why it failed
  // One that waits in vain for another's writing ends without an error of its own.
  if (result == SQLITE_BUSY || result == SQLITE_LOCKED) throw InUseError(path);
  if (result != SQLITE_DONE) throw DatabaseError(to, path);
}

std::shared_ptr<Engine> OpenDatabase(const std::string& path, OpenMode mode, bool inUse,
                                     WorkListener& work, std::chrono::milliseconds patience) {
  const DatabaseKind kind = inUse ? DatabaseKind::kSqlite : KindOfDatabase(path);
  if (kind == DatabaseKind::kOther) {
    if (IsAccessFile(path)) return OpenAccess(path, work);
    throw RunTimeError(kDatabaseError, "The file '" + FromUtf8(path) + "' is not a database.");
  }
  const std::string name = Utf8Of(std::filesystem::absolute(PathOf(path)));
  if (mode == OpenMode::kReadWrite) return OpenForWriting(path, name, patience);
  auto engine = OpenForReading(path, name, kind, work, patience);
  if (mode == OpenMode::kReadOnly) return engine;
  const bool isFileItself = kind == DatabaseKind::kSqlite && engine->HoldsFile();
  if (mode == OpenMode::kAside && isFileItself) return OpenAside(path, name, patience);
  auto copy = CopyAside(*engine, Writing::kAllowed, work);
  if (mode == OpenMode::kCopy) DropProjectIndexes(copy->Database(), path);
  return copy;
}

}  // namespace merivane::store
