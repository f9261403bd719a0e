// Rows that are known by their row numbers: the list grows as it is asked for, and values are read
// when they are.
#pragma once

#include <optional>
#include <vector>

#include "engine.h"
#include "rows.h"

namespace merivane::store {

// The list holds the rows that the statement found when it was first asked. Before a write through
// the engine that could change what is still unread, the rest is read; a write that can't (an added
// row has a greater number than all before) only ends the reading statement, and the rest is read
// when it is wanted. So opening, asking for a row and adding one cost the same whatever the table
// holds.
class KeyedRows : public Rows, private RowWatcher {
 public:
  // A fixed set keeps its values as they were when it was first asked, and can't be written.
  KeyedRows(Engine& engine, SelectShape& shape, std::vector<Literal> literals, bool fixed)
      : engine_(engine),
        shape_(shape),
        table_(shape.Table()),
        literals_(std::move(literals)),
        fixed_(fixed) {}
  ~KeyedRows() override;

  Place First() override { return NextThere(0); }
  Place Last() override;
  Place After(Place place) override;
  Place Before(Place place) override;
  std::size_t Count() override;
  bool IsThere(Place place) override;

  int FieldCount() const override { return shape_.FieldCount(); }
  std::string FieldName(int field) const override;
  int FindField(std::string_view name) const override { return shape_.FindField(name); }
  Value Read(Place place, int field) override;

  void CheckWritable() const override;
  int ColumnOf(int field) const override;
  ColumnKind KindOf(int column) const override;
  void Insert(std::span<const FieldChange> changes) override;
  void Update(Place place, std::vector<FieldChange>& changes) override;
  void Delete(Place place) override;

 private:
  // The last row, found from the end while the places before it are not known.
  static constexpr Place kTail = kNoPlace - 1;
  static constexpr std::int64_t kDeleted = std::numeric_limits<std::int64_t>::min();

  void BeforeInsert(const TableData& table, std::int64_t rowId) override;
  void BeforeUpdate(const TableData& table, std::optional<std::int64_t> rowId,
                    std::span<const FieldChange> changes) override;
  void BeforeDelete(const TableData& table) override;
  void LetGo() override;

  bool IsOrdered() const { return !shape_.Statement().order.empty(); }
  bool IsPending(const TableData& table) const;
  bool Uses(std::span<const FieldChange> changes) const;
  void Ask();
  bool Has(Place place);
  void Step();
  void ReadRest();
  void ReadKeys();
  LentStatement LendUnread(ReadKind kind);
  void EndList();
  void EndWalk();
  void KeepValues();
  void BeginWrite();
  Place NextThere(Place place);
  Place PreviousThere(Place end);
  Place FindTail();
  std::int64_t& KeyAt(Place place);
  bool StandOn(std::int64_t key, int width);
  sqlite3_stmt* StatementWith(Place place, int slot);

  Engine& engine_;
  SelectShape& shape_;
  TableData& table_;
  std::vector<Literal> literals_;
  bool fixed_;

  std::vector<std::int64_t> keys_;
  bool asked_ = false;
  bool complete_ = false;
  std::uint64_t deletesSeen_ = 0;
  std::int64_t lastRead_ = kDeleted;                               // number of the row read last
  std::int64_t limit_ = std::numeric_limits<std::int64_t>::max();  // greatest number of the list
  std::optional<std::int64_t> tail_;
  Place tailPlace_ = kNoPlace;       // where the tail stands in the complete list
  std::vector<std::int64_t> added_;  // through this set, until the list is complete

  LentStatement walk_;  // stands on the last key where `walkStands_`
  bool walkStands_ = false;
  LentStatement row_;  // stands on the row `rowKey_` as it was at write `rowWrites_`
  std::int64_t rowKey_ = kDeleted;
  std::uint64_t rowWrites_ = 0;
  std::vector<std::vector<Value>> values_;  // of a fixed set, once something was written
  bool valuesKept_ = false;
};

}  // namespace merivane::store
