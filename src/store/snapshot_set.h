// The rows of a static set, and of a set that no table's rows stand behind.
#pragma once

#include <limits>
#include <optional>
#include <vector>

#include "engine.h"

namespace merivane::store {

using RowPlace = std::size_t;  // of a row in its set
inline constexpr RowPlace kNoRow = std::numeric_limits<RowPlace>::max();

// The rows as they were when they were first asked for. They are read one by one while nothing
// could change them; before a write to their table, before the file is let go, and for going back
// they are copied whole.
class SnapshotSet final : private RowWatcher {
 public:
  SnapshotSet(Engine& engine, SelectShape& shape, std::vector<Literal> literals)
      : engine_(&engine), shape_(&shape), literals_(std::move(literals)) {}
  SnapshotSet(std::string fieldName, std::vector<std::string> texts);
  ~SnapshotSet();
  SnapshotSet(const SnapshotSet&) = delete;
  SnapshotSet& operator=(const SnapshotSet&) = delete;

  // kNoRow where there is no such row.
  RowPlace First() { return Has(0) ? 0 : kNoRow; }
  RowPlace Last() { return Count() == 0 ? kNoRow : Count() - 1; }
  RowPlace After(RowPlace place) { return Has(place + 1) ? place + 1 : kNoRow; }
  static RowPlace Before(RowPlace place) { return place == 0 ? kNoRow : place - 1; }
  std::size_t Count();
  static bool IsThere(RowPlace /*place*/) { return true; }

  int FieldCount() const { return shape_ == nullptr ? 1 : shape_->FieldCount(); }
  std::string FieldName(int field) const {
    return shape_ == nullptr ? fieldName_ : shape_->FieldName(field);
  }
  int FindField(std::string_view name) const;
  Value Read(RowPlace place, int field);
  void ReadRow(RowPlace place, std::vector<Value>& fields);

 private:
  void BeforeInsert(const TableData& table, std::int64_t /*rowId*/) override { Written(table); }
  void BeforeUpdate(const TableData& table, std::int64_t /*rowId*/,
                    std::span<const FieldChange> /*changes*/) override {
    Written(table);
  }
  void BeforeDelete(const TableData& table) override { Written(table); }
  void LetGo() override { Keep(); }
  void Written(const TableData& table) {
    if (&table == &shape_->Table()) Keep();
  }

  void Ask();
  void Begin();
  bool Has(RowPlace place);
  bool Step(LentStatement& statement);
  void StandOn(RowPlace place, int slot);
  void Keep();

  Engine* engine_ = nullptr;
  SelectShape* shape_ = nullptr;
  std::vector<Literal> literals_;
  std::string fieldName_;
  bool asked_ = false;
  std::optional<std::size_t> count_;
  LentStatement walk_;  // stands on the row at `at_`
  RowPlace at_ = 0;
  int lastSlot_ = 0;  // of the fields, once whole rows are read
  bool kept_ = false;
  std::vector<std::vector<Value>> rows_;
};

}  // namespace merivane::store
