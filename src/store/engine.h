// One open database: its tables, its statements, its transaction, and the record sets that read it.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hardening.h"
#include "select_shape.h"
#include "statement.h"
#include "store/work_listener.h"
#include "table_data.h"

namespace merivane::store {

// Rows that have been read in part, and must know of a write before it is done.
class RowWatcher {
 public:
  virtual void BeforeInsert(const TableData& table, std::int64_t rowId) = 0;
  virtual void BeforeUpdate(const TableData& table, std::int64_t rowId,
                            std::span<const FieldChange> changes) = 0;
  virtual void BeforeDelete(const TableData& table) = 0;
  // Gives back what keeps the file locked for reading; reading may go on later.
  virtual void LetGo() = 0;

 protected:
  ~RowWatcher() = default;
};

// A record set that is open on the database.
class OpenSet {
 public:
  virtual void ConnectionCloses() noexcept = 0;

 protected:
  ~OpenSet() = default;
};

enum class Writing { kAllowed, kRefused };  // with error 3251

class Engine {
 public:
  // Waits for another process that holds the file for `patience`, each time.
  Engine(DatabaseHandle database, std::string path, Writing writing,
         std::chrono::milliseconds patience = {});
  ~Engine();  // closes the sets; what isn't committed is lost
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  sqlite3* Database() const { return database_.get(); }
  const std::string& Path() const { return path_; }

  // Called once when another connection keeps this one waiting; it may free the file.
  void OnBusy(std::function<void()> callback);
  // Told while another process keeps this one waiting. What it throws ends the wait; BeginWrite
  // passes it on, every other call ends in error 70.
  void OnWait(WorkListener& work) { work_ = &work; }
  bool IsWaiting() const { return waiting_; }  // that call runs: nothing may be done here
  // The rows come from a copy: `path` names where they came from, and the file there is not held.
  void IsCopy(std::string ownFile = "") {  // deleted at the end
    holdsFile_ = false;
    ownFile_ = std::move(ownFile);
  }
  bool HoldsFile() const { return holdsFile_; }

  // The shape of the statement, with its literals; see statement.h for the failures, and
  // kUnknownTable.
  SelectShape& FindSelect(std::string_view sql, std::vector<Literal>& literals);
  std::vector<std::string> TableNames();

  void CheckWritable() const;  // error 3251 read-only
  // Begins a transaction where none runs. Error 70 where another process writes, 3251 read-only.
  void BeginWrite();
  std::uint64_t Transaction() const { return transaction_; }
  // A transaction runs in which nothing has been written yet.
  bool IsTaken();
  void Commit();
  void WriteHeld();  // of all tables
  // Grows where what a transaction wrote is undone, also by SQLite itself behind an error.
  std::uint64_t Undone() const { return undone_; }
  // What was written goes to the disk, the transaction stays open. Fails as well where it was lost
  // before, by a write whose error somebody passed over.
  void Flush();
  void RollBack() noexcept;
  void CloseSets() noexcept;

  void BeforeInsert(const TableData& table, std::int64_t rowId);
  void BeforeUpdate(const TableData& table, std::int64_t rowId,
                    std::span<const FieldChange> changes);
  void BeforeDelete(const TableData& table);

  void Watch(RowWatcher& rows) { watchers_.push_back(&rows); }
  void Unwatch(const RowWatcher& rows) { std::erase(watchers_, &rows); }
  void AddSet(OpenSet& set) { sets_.push_back(&set); }
  void RemoveSet(const OpenSet& set) { std::erase(sets_, &set); }

 private:
  TableData& FindTable(std::string_view name);
  SelectShape& FindSplit(std::string_view sql);  // by `split_`
  void LetGo();
  static int Busy(void* engine, int count);
  static void RolledBack(void* engine);
  bool MayWait();

  DatabaseHandle database_;
  std::string path_;
  StepLimit limit_;
  Writing writing_;
  std::chrono::milliseconds patience_;
  bool holdsFile_ = true;
  std::string ownFile_;
  std::function<void()> onBusy_;
  std::uint64_t transaction_ = 0;
  std::uint64_t undone_ = 0;
  std::int64_t changesBefore_ = 0;  // of the transaction
  bool inTransaction_ = false;
  std::optional<RunTimeError> failure_;  // of the last write that failed
  bool waiting_ = false;
  WorkListener* work_ = nullptr;
  std::exception_ptr waitEnd_;
  SplitStatement split_;
  std::vector<std::unique_ptr<TableData>> tables_;
  std::unordered_map<std::string, std::unique_ptr<SelectShape>> selects_;
  struct KnownSelect {
    ShapePieces pieces;
    SelectShape* select;
  };
  // By how a text begins. It is a way to `selects_` that is short, and a few that take the long
  // one all the same.
  std::array<std::vector<KnownSelect>, 64> known_;
  std::vector<RowWatcher*> watchers_;
  std::vector<OpenSet*> sets_;
};

}  // namespace merivane::store
