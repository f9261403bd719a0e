#include "store/connection.h"

#include <filesystem>
#include <optional>

#include "open_database.h"
#include "runtime/file_names.h"
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

// Nothing where the file can't be asked.
std::optional<std::int64_t> VersionOf(sqlite3* database, const std::string& path) {
  try {
    const StatementHandle version = PrepareStatement(database, "pragma data_version", path);
    if (sqlite3_step(version.get()) != SQLITE_ROW) return std::nullopt;
    return sqlite3_column_int64(version.get(), 0);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
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
  const auto written = WhenWritten(databaseName_);
  auto& proven = workspace_.state_->proven[databaseName_];
  engine_ = OpenDatabase(databaseName_, mode, {inUse, written && proven == written},
                         *workspace_.work, workspace_.patience);
  proven = written;
  versionProven_ = VersionOf(engine_->Database(), databaseName_);
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
  if (engine->Transaction() == 0 || !engine->HoldsFile()) return;
  const auto written = WhenWritten(databaseName_);
  const bool alone =
      versionProven_ && VersionOf(engine->Database(), databaseName_) == versionProven_;
  if (alone) workspace_.state_->proven[databaseName_] = written;
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
  const auto version = VersionOf(engine_->Database(), databaseName_);
  if (!version) throw DatabaseError(engine_->Database(), databaseName_);
  return *version;
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
