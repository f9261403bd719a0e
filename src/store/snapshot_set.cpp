#include "snapshot_set.h"

namespace merivane::store {

SnapshotSet::SnapshotSet(std::string fieldName, std::vector<std::string> texts)
    : fieldName_(std::move(fieldName)), count_(texts.size()), kept_(true) {
  for (std::string& text : texts) rows_.emplace_back().emplace_back(std::move(text));
}

SnapshotSet::~SnapshotSet() {
  if (asked_) engine_->Unwatch(*this);
}

void SnapshotSet::Ask() {
  if (asked_ || kept_) return;
  asked_ = true;
  engine_->Watch(*this);
}

void SnapshotSet::Begin() {
  walk_ = shape_->Lend(ReadKind::kWalk, literals_);
  at_ = 0;
  if (Step(walk_)) return;
  count_ = 0;
  walk_.reset();
}

// Ends a statement that fails.
bool SnapshotSet::Step(LentStatement& statement) {
  const int step = sqlite3_step(statement.get());
  if (step == SQLITE_ROW) return true;
  if (step == SQLITE_DONE) return false;
  RunTimeError error = DatabaseError(engine_->Database(), engine_->Path());
  statement.reset();
  throw error;
}

bool SnapshotSet::Has(RowPlace place) {
  Ask();
  if (!count_ && !walk_) Begin();
  if (count_) return place < *count_;
  for (; at_ < place; ++at_) {
    if (Step(walk_)) continue;
    count_ = at_ + 1;
    walk_.reset();
    return false;
  }
  return true;
}

std::size_t SnapshotSet::Count() {
  Ask();
  if (!count_) {
    LentStatement count = shape_->Lend(ReadKind::kCount, literals_);
    Step(count);
    count_ = static_cast<std::size_t>(sqlite3_column_int64(count.get(), 0));
  }
  return *count_;
}

int SnapshotSet::FindField(std::string_view name) const {
  if (shape_ != nullptr) return shape_->FindField(name);
  return IsSameName(fieldName_, name) ? 0 : -1;
}

// A walk that has gone by the row begins again at the first one; for any other the rows are kept.
void SnapshotSet::StandOn(RowPlace place, int slot) {
  if (kept_) return;
  if (walk_ && place < at_ && place > 0) return Keep();
  if (!walk_ || place < at_) Begin();
  for (; at_ < place; ++at_) Step(walk_);
  if (SelectShape::IsIn(walk_.get(), slot)) return;
  LentStatement wider = shape_->Lend(ReadKind::kWalk, literals_);
  for (RowPlace passed = 0; passed <= place; ++passed) Step(wider);
  walk_ = std::move(wider);
}

Value SnapshotSet::Read(RowPlace place, int field) {
  StandOn(place, kept_ ? 0 : shape_->SlotOf(field));
  return kept_ ? rows_[place][static_cast<std::size_t>(field)]
               : shape_->ValueIn(walk_.get(), field);
}

void SnapshotSet::ReadRow(RowPlace place, std::vector<Value>& fields) {
  if (lastSlot_ == 0 && !kept_) lastSlot_ = shape_->TakeUpAll();
  StandOn(place, lastSlot_);
  if (kept_) {
    fields = rows_[place];
  } else {
    shape_->ReadAll(walk_.get(), fields);
  }
}

void SnapshotSet::Keep() {
  if (kept_) return;
  shape_->TakeUpAll();
  LentStatement all = shape_->Lend(ReadKind::kWalk, literals_);
  std::vector<std::vector<Value>> rows;
  while (Step(all)) shape_->ReadAll(all.get(), rows.emplace_back());
  rows_ = std::move(rows);
  kept_ = true;
  count_ = rows_.size();
  walk_.reset();
}

}  // namespace merivane::store
