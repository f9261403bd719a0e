// The rows of a dynamic set: a list of row numbers that grows as it is asked for, with live values.
#pragma once

#include <optional>
#include <vector>

#include "engine.h"
#include "snapshot_set.h"

namespace merivane::store {

// The list holds the rows that the statement found when it was first asked. Before a write through
// the engine that could change what is still unread, the rest is read; a write that can't (an added
// row has a greater number than all before) only ends the reading statement, and the rest is read
// when it is wanted. So opening, asking for a row and adding one cost the same whatever the table
// holds. REQUIRES: a shape with keys.
//
// The list's states; a set never goes back to an earlier one:
//
//   fresh ---- Step ----> walking ---- the last row, or the tail ----------> complete
//     |                   |     \                                               ^
//     | Insert            |      a write that could change what is unread ------+
//     v                   | any other write, LetGo                              |
//   parted <--------------+                                                     |
//     +----------- a place behind those read, or a write as above --------------+
//
//   fresh     nothing was asked; `walk_` is empty
//   walking   `walk_` stands on the row that `keys_` ends with
//   parted    `keys_` ends with `lastRead_`; the rest is read in one go, up to `limit_`
//   complete  `keys_` holds all, and those added through this set behind them
//
// In any state `tail_` may be known already, where the last row was asked for first.
class DynamicSet final : private RowWatcher {
 public:
  DynamicSet(Engine& engine, SelectShape& shape, std::vector<Literal> literals)
      : engine_(engine), shape_(shape), table_(shape.Table()), literals_(std::move(literals)) {}
  ~DynamicSet();
  DynamicSet(const DynamicSet&) = delete;
  DynamicSet& operator=(const DynamicSet&) = delete;

  // Places hold from one call to the next, whatever is written. These give kNoRow where there is
  // no row, pass over rows deleted since, and read no more than they need.
  RowPlace First() { return NextThere(0); }
  RowPlace Last();
  RowPlace After(RowPlace place);
  RowPlace Before(RowPlace place);
  bool IsThere(RowPlace place);  // not deleted since

  int FieldCount() const { return shape_.FieldCount(); }
  std::string FieldName(int field) const { return shape_.FieldName(field); }
  int FindField(std::string_view name) const { return shape_.FindField(name); }
  int ColumnOf(int field) const { return shape_.ColumnOf(field); }
  ColumnKind KindOf(int column) const { return table_.Schema().KindOf(column); }
  Value Read(RowPlace place, int field);                     // error 3021 for a row deleted since
  void ReadRow(RowPlace place, std::vector<Value>& fields);  // likewise

  void CheckWritable() const { engine_.CheckWritable(); }
  // The new row's place is the last. The changes may be taken.
  void Insert(std::vector<FieldChange>& changes);
  // Writes the changes that differ from what the row holds; the others are taken out.
  void Update(RowPlace place, std::vector<FieldChange>& changes);
  void Delete(RowPlace place);

 private:
  // The last row, found from the end while the places before it are not known.
  static constexpr RowPlace kTail = kNoRow - 1;
  static constexpr std::int64_t kDeleted = std::numeric_limits<std::int64_t>::min();

  void BeforeInsert(const TableData& table, std::int64_t rowId) override;
  void BeforeUpdate(const TableData& table, std::int64_t rowId,
                    std::span<const FieldChange> changes) override;
  void BeforeDelete(const TableData& table) override;
  void LetGo() override;

  bool IsOrdered() const { return !shape_.Statement().order.empty(); }
  bool IsPending(const TableData& table) const { return &table == &table_ && !complete_; }
  bool Uses(std::span<const FieldChange> changes) const;
  void Ask();
  bool Has(RowPlace place);
  void Step();
  void ReadRest();
  void ReadKeys();
  LentStatement LendUnread(ReadKind kind);
  void EndList();
  void EndWalk();
  void BeginWrite();
  RowPlace NextThere(RowPlace place);
  RowPlace PreviousThere(RowPlace end);
  RowPlace FindTail();
  std::int64_t& KeyAt(RowPlace place);
  bool StandOn(std::int64_t key, int slot);
  sqlite3_stmt* RowWith(RowPlace place, int slot);

  Engine& engine_;
  SelectShape& shape_;
  TableData& table_;
  std::vector<Literal> literals_;

  std::vector<std::int64_t> keys_;
  bool asked_ = false;
  bool complete_ = false;
  std::uint64_t deletesSeen_ = 0;
  std::int64_t lastRead_ = kDeleted;                               // number of the row read last
  std::int64_t limit_ = std::numeric_limits<std::int64_t>::max();  // greatest number of the list
  std::optional<std::int64_t> tail_;
  RowPlace tailPlace_ = kNoRow;      // where the tail stands in the complete list
  std::vector<std::int64_t> added_;  // through this set, until the list is complete

  LentStatement walk_;  // stands on the last key where `walkStands_`
  bool walkStands_ = false;
  LentStatement row_;  // stands on the row `rowKey_` as it was at write `rowWrites_`
  std::int64_t rowKey_ = kDeleted;
  std::uint64_t rowWrites_ = 0;
  int lastSlot_ = 0;  // of the fields, once whole rows are read
};

}  // namespace merivane::store
