#include "store/connection.h"

#include "open_database.h"
#include "store/recordset.h"
#include "workspace_state.h"

namespace merivane::store {

namespace {

constexpr std::string_view kOpening = "Driver={Microsoft Access Driver (*.mdb)};DBQ=";

std::string PathIn(const std::string& connectionText) {
  constexpr std::string_view kKey = "DBQ=";
  const std::size_t at = connectionText.find(kKey);
  return at == std::string::npos ? connectionText : connectionText.substr(at + kKey.size());
}

}  // namespace

std::string ConnectionText(const std::string& path) { return std::string(kOpening) + path; }

Connection::Connection(Workspace& workspace) : workspace_(workspace) {
  workspace_.state_->connections.push_back(this);
}

Connection::~Connection() {
  try {
    if (IsOpen()) Close();
  } catch (...) {
    // Nobody is left to tell; the file stands as it was before the transaction.
  }
  std::erase(workspace_.state_->connections, this);
}

void Connection::Open(const std::string& connectionText, OpenMode mode) {
  if (IsOpen()) throw RunTimeError(kObjectOpen);
  databaseName_ = PathIn(connectionText);
  engine_ = workspace_.state_->HeldOn(databaseName_);
  if (engine_) return;
  const bool inUse = workspace_.state_->CommitOthers(databaseName_, this);
  engine_ = OpenDatabase(databaseName_, mode, inUse, *workspace_.work, workspace_.patience);
  engine_->OnWait(*workspace_.work);
  engine_->OnBusy([this] { workspace_.state_->CommitOthers(databaseName_, this); });
}

void Connection::Close() {
  if (!IsOpen()) throw RunTimeError(kObjectClosed);
  const std::shared_ptr<Engine> engine = std::move(engine_);
  engine_ = nullptr;
  if (engine == workspace_.state_->held) return;
  engine->CloseSets();
  engine->Commit();
}

bool Connection::IsOpen() const { return engine_ != nullptr; }

void Connection::Commit() {
  if (!IsOpen()) throw RunTimeError(kConnectionInvalid);
  if (engine_ != workspace_.state_->held) engine_->Commit();
}

void Connection::BeginWrite() {
  if (!IsOpen()) throw RunTimeError(kConnectionInvalid);
  engine_->BeginWrite();
}

std::int64_t Connection::Version() {
  if (!IsOpen()) throw RunTimeError(kConnectionInvalid);
  sqlite3* database = engine_->Database();
  const StatementHandle version = PrepareStatement(database, "pragma data_version", databaseName_);
  if (sqlite3_step(version.get()) != SQLITE_ROW) throw DatabaseError(database, databaseName_);
  return sqlite3_column_int64(version.get(), 0);
}

std::uint64_t Connection::Undone() const { return IsOpen() ? engine_->Undone() : 0; }

std::vector<std::string> Connection::FindDamage() {
  if (!IsOpen()) throw RunTimeError(kConnectionInvalid);
  engine_->WriteHeld();
  sqlite3* database = engine_->Database();
  const StatementHandle check =
      PrepareStatement(database, "pragma integrity_check(100)", databaseName_);
  std::vector<std::string> damage;
  int result = sqlite3_step(check.get());
  for (; result == SQLITE_ROW; result = sqlite3_step(check.get())) {
    damage.push_back(ColumnText(check.get(), 0));
  }
  if ((result & 0xFF) == SQLITE_CORRUPT) {
    damage.emplace_back(sqlite3_errmsg(database));
  } else if (result != SQLITE_DONE) {
    throw DatabaseError(database, databaseName_);
  }
  if (damage == std::vector<std::string>{"ok"}) damage.clear();
  return damage;
}

void Connection::OpenSchema(int schema, Recordset& tables) {
  if (!IsOpen()) throw RunTimeError(kConnectionInvalid);
  if (schema != adSchemaTables) throw RunTimeError(kInvalidProcedureCall);
  tables.OpenList("TABLE_NAME", engine_->TableNames(), this);
}

ReadScope::ReadScope(const Connection* connection) {
  if (connection == nullptr || !connection->IsOpen()) return;
  sqlite3* database = connection->engine_->Database();
  if (sqlite3_get_autocommit(database) == 0) return;
  if (sqlite3_exec(database, "begin", nullptr, nullptr, nullptr) == SQLITE_OK) {
    engine_ = connection->engine_;
  }
}

ReadScope::~ReadScope() {
  if (engine_) sqlite3_exec(engine_->Database(), "commit", nullptr, nullptr, nullptr);
}

}  // namespace merivane::store
