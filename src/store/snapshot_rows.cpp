#include "snapshot_rows.h"

namespace merivane::store {

SnapshotRows::SnapshotRows(std::string fieldName, std::vector<std::string> texts)
    : fieldName_(std::move(fieldName)), taken_(true) {
  for (std::string& text : texts) {
    rows_.emplace_back();
    rows_.back().emplace_back(std::move(text));
  }
}

std::size_t SnapshotRows::Count() {
  if (taken_) return rows_.size();
  const LentStatement statement = shape_->Lend(ReadKind::kSnapshot, literals_);
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(statement.get())) == SQLITE_ROW) {
    auto& row = rows_.emplace_back();
    for (int field = 0; field < FieldCount(); ++field) {
      row.push_back(ColumnValue(statement.get(), field, false));
    }
  }
  if (step != SQLITE_DONE) {
    rows_.clear();
    throw DatabaseError(sqlite3_db_handle(statement.get()), path_);
  }
  taken_ = true;
  return rows_.size();
}

int SnapshotRows::FieldCount() const { return shape_ == nullptr ? 1 : shape_->FieldCount(); }

std::string SnapshotRows::FieldName(int field) const {
  return shape_ == nullptr ? fieldName_ : shape_->FieldName(field);
}

int SnapshotRows::FindField(std::string_view name) const {
  if (shape_ != nullptr) return shape_->FindField(name);
  return SameName(fieldName_, name) ? 0 : -1;
}

Value SnapshotRows::Read(Place place, int field) {
  return rows_[place][static_cast<std::size_t>(field)];
}

}  // namespace merivane::store
