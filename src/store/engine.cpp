#include "engine.h"

#include <chrono>
#include <filesystem>
#include <thread>

#include "database_file.h"
#include "runtime/code_page.h"

namespace merivane::store {

using namespace std::chrono_literals;

namespace {

std::uintmax_t SizeOf(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(PathOf(path), error);
  return error ? 0 : size;
}

}  // namespace

Engine::Engine(DatabaseHandle database, std::string path, Writing writing,
               std::chrono::milliseconds patience)
    : database_(std::move(database)),
      path_(std::move(path)),
      limit_(Database(), SizeOf(path_)),
      writing_(writing),
      patience_(patience) {
  sqlite3_busy_handler(Database(), &Engine::Busy, this);
  sqlite3_rollback_hook(Database(), &Engine::RolledBack, this);
}

void Engine::CloseSets() noexcept {
  while (!sets_.empty()) {
    OpenSet* set = sets_.back();
    set->ConnectionCloses();
    RemoveSet(*set);
  }
}

Engine::~Engine() {
  CloseSets();
  selects_.clear();
  tables_.clear();
  database_.reset();
  if (!ownFile_.empty()) {
    std::error_code error;
    std::filesystem::remove(PathOf(ownFile_), error);
    RemoveJournals(ownFile_);
  }
}

// The rows that wait go with those that were written.
void Engine::RolledBack(void* self) {
  auto& engine = *static_cast<Engine*>(self);
  ++engine.undone_;
  for (const auto& table : engine.tables_) table->DropHeld();
}

void Engine::OnBusy(std::function<void()> callback) { onBusy_ = std::move(callback); }

int Engine::Busy(void* self, int count) {
  constexpr auto kPause = 10ms;
  auto& engine = *static_cast<Engine*>(self);
  if (count > engine.patience_ / kPause) return 0;
  if (count == 0 && engine.onBusy_) {
    engine.waiting_ = true;
    try {
      engine.onBusy_();
    } catch (const std::exception&) {
      // The file stays taken, and the wait for it ends in its own error.
    }
    engine.waiting_ = false;
    return 1;
  }
  std::this_thread::sleep_for(kPause);
  // Where another program has put its own file in the place of this one, it writes a journal under
  // the same name, which SQLite would take for that of a crash, and undo and delete.
  return engine.MayWait() && !HasMoved(engine.Database()) ? 1 : 0;
}

// SQLite's code, which knows no exceptions, stands between here and who asked it to wait.
bool Engine::MayWait() try {
  if (work_ != nullptr) work_->Beat();
  return true;
} catch (...) {
  waitEnd_ = std::current_exception();
  return false;
}

TableData& Engine::FindTable(std::string_view name) {
  for (const auto& table : tables_) {
    if (IsSameName(table->Schema().Name(), name)) return *table;
  }
  auto schema = TableSchema::Read(Database(), path_, name);
  if (!schema) {
    throw RunTimeError(kUnknownTable, "No table '" + std::string(name) + "' in the database '" +
                                          FromUtf8(path_) + "'.");
  }
  tables_.push_back(std::make_unique<TableData>(Database(), path_, std::move(*schema), failure_));
  return *tables_.back();
}

SelectShape& Engine::FindSelect(std::string_view sql, std::vector<Literal>& literals) {
  constexpr std::size_t kBeginning = 32;
  constexpr std::size_t kMostKnown = 16;
  const std::size_t beginning = std::hash<std::string_view>()(sql.substr(0, kBeginning));
  std::vector<KnownSelect>& known = known_[beginning % known_.size()];
  constexpr std::size_t kMostly = 3;
  literals.reserve(kMostly);
  for (const KnownSelect& candidate : known) {
    if (candidate.pieces.Fit(sql, literals)) return *candidate.select;
    literals.clear();
  }
  SplitLiterals(sql, split_);
  SelectShape& select = FindSplit(sql);
  ShapePieces pieces(split_.shape);
  if (known.size() < kMostKnown && pieces.Fit(sql, literals)) {
    known.push_back({std::move(pieces), &select});
  }
  literals.swap(split_.literals);
  return select;
}

SelectShape& Engine::FindSplit(std::string_view sql) {
  auto found = selects_.find(split_.shape);
  if (found == selects_.end()) {
    TableData* table = nullptr;
    auto statement = ReadSelect(
        Database(), split_.shape, sql, [&](std::string_view name) -> const auto& {
          table = &FindTable(name);
          return table->Schema();
        });
    auto shape = std::make_unique<SelectShape>(Database(), path_, std::move(statement), *table);
    found = selects_.emplace(split_.shape, std::move(shape)).first;
  }
  return *found->second;
}

std::vector<std::string> Engine::TableNames() {
  const StatementHandle list = PrepareStatement(
      Database(),
      "select name from sqlite_master where type = 'table' and name not like 'sqlite\\_%' "
      "escape '\\' order by rowid",
      path_);
  std::vector<std::string> names;
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(list.get())) == SQLITE_ROW)
    names.push_back(ColumnText(list.get(), 0));
  if (step != SQLITE_DONE) throw DatabaseError(Database(), path_);
  return names;
}

void Engine::CheckWritable() const {
  if (writing_ == Writing::kAllowed) return;
  throw RunTimeError(kNotUpdatable,
                     "The database '" + FromUtf8(path_) + "' is open for reading only.");
}

void Engine::BeginWrite() {
  if (inTransaction_ && sqlite3_get_autocommit(Database()) == 0) return;
  inTransaction_ = false;
  waitEnd_ = nullptr;
  CheckWritable();
  constexpr const char* kBegin = "begin immediate";
  // Who reads is not made to wait by SQLite but refused at once, so reading is put off.
  if (sqlite3_exec(Database(), kBegin, nullptr, nullptr, nullptr) != SQLITE_OK) {
    if (waitEnd_) std::rethrow_exception(waitEnd_);
    if (sqlite3_txn_state(Database(), nullptr) == SQLITE_TXN_NONE) {
      throw DatabaseError(Database(), path_);
    }
    LetGo();
    Execute(Database(), kBegin, path_);
  }
  if (HasMoved(Database())) {
    Execute(Database(), "rollback", path_);
    throw InUseError(path_);
  }
  inTransaction_ = true;
  ++transaction_;
  changesBefore_ = sqlite3_total_changes64(Database());
}

bool Engine::IsTaken() {
  WriteHeld();
  return inTransaction_ && sqlite3_total_changes64(Database()) == changesBefore_;
}

void Engine::LetGo() {
  for (std::size_t i = watchers_.size(); i-- > 0;) watchers_[i]->LetGo();
}

void Engine::WriteHeld() {
  for (const auto& table : tables_) table->WriteHeld();
}

void Engine::Commit() {
  WriteHeld();
  LetGo();
  if (inTransaction_ && sqlite3_get_autocommit(Database()) == 0) {
    Execute(Database(), "commit", path_);
  }
  inTransaction_ = false;
}

void Engine::Flush() {
  WriteHeld();
  const bool isLost = inTransaction_ && sqlite3_get_autocommit(Database()) != 0;
  if (isLost) throw failure_.value_or(FileError(kDeviceIoError, path_));
  const int result = sqlite3_db_cacheflush(Database());
  if (result != SQLITE_OK && result != SQLITE_BUSY) throw DatabaseError(Database(), path_, result);
}

// A rollback that fails to read or write is carried out from the journal by the next transaction,
// which may also leave a journal that holds nothing; where the disk refuses that too, by who opens
// the file next.
void Engine::RollBack() noexcept {
  LetGo();
  sqlite3_exec(Database(), "rollback", nullptr, nullptr, nullptr);
  inTransaction_ = false;
  const char* name = sqlite3_db_filename(Database(), "main");
  if (name == nullptr || !HasJournal(name)) return;
  if (sqlite3_exec(Database(), "begin immediate", nullptr, nullptr, nullptr) != SQLITE_OK) return;
  if (!HasPagesToPutBack(name)) RemoveFile(PathOf(std::string(name) + "-journal"));
  sqlite3_exec(Database(), "rollback", nullptr, nullptr, nullptr);
}

void Engine::BeforeInsert(const TableData& table, std::int64_t rowId) {
  for (std::size_t i = watchers_.size(); i-- > 0;) watchers_[i]->BeforeInsert(table, rowId);
}

void Engine::BeforeUpdate(const TableData& table, std::int64_t rowId,
                          std::span<const FieldChange> changes) {
  for (std::size_t i = watchers_.size(); i-- > 0;)
    watchers_[i]->BeforeUpdate(table, rowId, changes);
}

void Engine::BeforeDelete(const TableData& table) {
  for (std::size_t i = watchers_.size(); i-- > 0;) watchers_[i]->BeforeDelete(table);
}

}  // namespace merivane::store
