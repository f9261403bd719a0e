#include "dynamic_set.h"

#include <algorithm>

namespace merivane::store {

DynamicSet::~DynamicSet() {
  if (asked_) engine_.Unwatch(*this);
}

void DynamicSet::Ask() {
  if (asked_) return;
  asked_ = true;
  if (added_.empty()) deletesSeen_ = table_.Deletes();
  engine_.Watch(*this);
}

// ---------------------------------------------------------------- reading the list

void DynamicSet::Step() {
  const bool fresh = !asked_;
  Ask();
  if (!walk_) {
    if (!fresh || !added_.empty()) return ReadKeys();
    walk_ = shape_.Lend(ReadKind::kWalk, literals_);
  }
  walkStands_ = false;
  const int step = sqlite3_step(walk_.get());
  if (step == SQLITE_ROW) {
    lastRead_ = sqlite3_column_int64(walk_.get(), 0);
    keys_.push_back(lastRead_);
    walkStands_ = true;
    if (lastRead_ == tail_) EndList();
  } else if (step == SQLITE_DONE) {
    EndList();
  } else {
    RunTimeError error = DatabaseError(engine_.Database(), engine_.Path());
    EndWalk();
    throw error;
  }
}

void DynamicSet::ReadRest() {
  if (!walk_ && !complete_) ReadKeys();
  while (!complete_) Step();
}

// Of an ordered set all rows, as they are read in one go once its walk has ended.
LentStatement DynamicSet::LendUnread(ReadKind kind) {
  LentStatement statement = shape_.Lend(kind, literals_);
  const int parameters = shape_.Statement().parameters;
  sqlite3_bind_int64(statement.get(), parameters + 1, IsOrdered() ? kDeleted : lastRead_);
  sqlite3_bind_int64(statement.get(), parameters + 2, limit_);
  return statement;
}

void DynamicSet::ReadKeys() {
  Ask();
  if (IsOrdered()) keys_.clear();
  const LentStatement keys = LendUnread(ReadKind::kKeys);
  // Rows that this set has added stand at the list's end, whatever the statement says of them.
  std::vector<std::int64_t> added = added_;
  std::sort(added.begin(), added.end());
  int step = SQLITE_ROW;
  while ((step = sqlite3_step(keys.get())) == SQLITE_ROW) {
    lastRead_ = sqlite3_column_int64(keys.get(), 0);
    if (!std::binary_search(added.begin(), added.end(), lastRead_)) keys_.push_back(lastRead_);
  }
  if (step != SQLITE_DONE) throw DatabaseError(engine_.Database(), engine_.Path());
  EndList();
}

void DynamicSet::EndList() {
  EndWalk();
  complete_ = true;
  if (tail_) {
    if (keys_.empty() || keys_.back() != *tail_) keys_.push_back(*tail_);
    tailPlace_ = keys_.size() - 1;
  }
  keys_.insert(keys_.end(), added_.begin(), added_.end());
  added_.clear();
}

void DynamicSet::EndWalk() {
  walk_.reset();
  walkStands_ = false;
}

// ---------------------------------------------------------------- places

bool DynamicSet::Has(RowPlace place) {
  while (place >= keys_.size() && !complete_) Step();
  return place < keys_.size();
}

RowPlace DynamicSet::NextThere(RowPlace place) {
  for (; Has(place); ++place) {
    if (IsThere(place)) return place;
  }
  return kNoRow;
}

RowPlace DynamicSet::PreviousThere(RowPlace end) {
  while (end > 0) {
    if (IsThere(--end)) return end;
  }
  return kNoRow;
}

RowPlace DynamicSet::Last() {
  if (!complete_ && added_.empty()) {
    const RowPlace tail = FindTail();
    if (tail != kNoRow) return tail;
  }
  ReadRest();
  return PreviousThere(keys_.size());
}

RowPlace DynamicSet::FindTail() {
  if (tail_) return IsThere(kTail) ? kTail : kNoRow;
  if (!asked_ && !IsOrdered() && shape_.FindsHeld(literals_)) {
    tail_ = limit_ = table_.Held()->rowId;
    Ask();
    return kTail;
  }
  Ask();
  LentStatement last = LendUnread(ReadKind::kLast);
  const int step = sqlite3_step(last.get());
  if (step != SQLITE_DONE && step != SQLITE_ROW) {
    throw DatabaseError(engine_.Database(), engine_.Path());
  }
  const std::int64_t key = sqlite3_column_int64(last.get(), 0);
  if (step == SQLITE_DONE || (!keys_.empty() && keys_.back() == key)) {
    EndList();  // no row is unread
    return kNoRow;
  }
  tail_ = key;
  if (!IsOrdered()) limit_ = *tail_;
  row_ = std::move(last);
  rowKey_ = *tail_;
  rowWrites_ = table_.Writes();
  return kTail;
}

RowPlace DynamicSet::After(RowPlace place) {
  if (place == kTail) {
    if (!complete_ && added_.empty()) return kNoRow;
    ReadRest();
    place = tailPlace_;
  }
  return NextThere(place + 1);
}

RowPlace DynamicSet::Before(RowPlace place) {
  if (place == kTail) {
    ReadRest();
    place = tailPlace_;
  }
  return PreviousThere(place);
}

std::int64_t& DynamicSet::KeyAt(RowPlace place) {
  if (place != kTail) return keys_[place];
  return complete_ ? keys_[tailPlace_] : *tail_;
}

bool DynamicSet::IsThere(RowPlace place) {
  const std::int64_t key = KeyAt(place);
  if (key == kDeleted) return false;
  if (deletesSeen_ == table_.Deletes()) return true;
  if (StandOn(key, 0)) return true;
  KeyAt(place) = kDeleted;
  return false;
}

// ---------------------------------------------------------------- values

Value DynamicSet::Read(RowPlace place, int field) {
  return shape_.ValueIn(RowWith(place, shape_.SlotOf(field)), field);
}

void DynamicSet::ReadRow(RowPlace place, std::vector<Value>& fields) {
  if (lastSlot_ == 0) lastSlot_ = shape_.TakeUpAll();
  shape_.ReadAll(RowWith(place, lastSlot_), fields);
}

sqlite3_stmt* DynamicSet::RowWith(RowPlace place, int slot) {
  const std::int64_t key = KeyAt(place);
  if (walkStands_ && keys_.back() == key && SelectShape::IsIn(walk_.get(), slot)) {
    return walk_.get();
  }
  if (key == kDeleted || !StandOn(key, slot)) throw RunTimeError(kNoCurrentRecord);
  return row_.get();
}

// The row's value at that slot is there to be read; false for a row deleted since.
bool DynamicSet::StandOn(std::int64_t key, int slot) {
  table_.WriteHeld();
  const bool fits = row_ && SelectShape::IsIn(row_.get(), slot);
  if (fits && rowKey_ == key && rowWrites_ == table_.Writes()) return true;
  if (fits && row_.get_deleter().kind == ReadKind::kRow) {
    sqlite3_reset(row_.get());
  } else {
    row_.reset();
    row_ = shape_.Lend(ReadKind::kRow, literals_);
  }
  sqlite3_bind_int64(row_.get(), 1, key);
  rowKey_ = kDeleted;
  const int step = sqlite3_step(row_.get());
  if (step == SQLITE_DONE) return false;
  if (step != SQLITE_ROW) {
    RunTimeError error = DatabaseError(engine_.Database(), engine_.Path());
    row_.reset();
    throw error;
  }
  rowKey_ = key;
  rowWrites_ = table_.Writes();
  return true;
}

// ---------------------------------------------------------------- writing

void DynamicSet::BeginWrite() {
  engine_.BeginWrite();
  table_.BeginTransaction(engine_.Transaction());
}

void DynamicSet::Insert(std::vector<FieldChange>& changes) {
  BeginWrite();
  const bool numbered = !table_.Schema().RowIdIsColumn();
  const std::int64_t rowId = numbered ? table_.NextRowId() : 0;
  engine_.BeforeInsert(table_, rowId);
  if (!asked_ && added_.empty()) deletesSeen_ = table_.Deletes();
  (complete_ ? keys_ : added_).push_back(table_.Insert(rowId, changes));
}

void DynamicSet::Update(RowPlace place, std::vector<FieldChange>& changes) {
  const std::int64_t key = KeyAt(place);
  if (!table_.IsHeld(key)) {
    std::erase_if(changes, [&](const FieldChange& change) {
      const int slot = shape_.SlotOfColumn(change.column);
      return ColumnHolds(RowWith(place, slot), slot, change.value);
    });
    if (changes.empty()) return;
  }
  BeginWrite();
  engine_.BeforeUpdate(table_, key, changes);
  table_.Update(key, changes);
}

void DynamicSet::Delete(RowPlace place) {
  if (KeyAt(place) == kDeleted) throw RunTimeError(kNoCurrentRecord);
  BeginWrite();
  engine_.BeforeDelete(table_);
  const bool seenAll = deletesSeen_ == table_.Deletes();
  table_.Delete(KeyAt(place));
  if (seenAll) deletesSeen_ = table_.Deletes();
  KeyAt(place) = kDeleted;
}

// ---------------------------------------------------------------- what others write

bool DynamicSet::Uses(std::span<const FieldChange> changes) const {
  const auto& used = shape_.Statement().used;
  return std::any_of(changes.begin(), changes.end(), [&](const FieldChange& change) {
    return used[static_cast<std::size_t>(change.column)];
  });
}

void DynamicSet::BeforeInsert(const TableData& table, std::int64_t rowId) {
  if (!IsPending(table)) return;
  if (IsOrdered() || table.Schema().RowIdIsColumn()) return ReadRest();
  limit_ = std::min(limit_, rowId - 1);
  EndWalk();
}

void DynamicSet::BeforeUpdate(const TableData& table, std::int64_t rowId,
                              std::span<const FieldChange> changes) {
  if (!IsPending(table)) return;
  const bool known = rowId <= lastRead_ || rowId > limit_ || rowId == tail_;
  if (IsOrdered() || (!known && Uses(changes))) return ReadRest();
  EndWalk();
}

void DynamicSet::BeforeDelete(const TableData& table) {
  if (!IsPending(table)) return;
  if (IsOrdered()) return ReadRest();
  EndWalk();
}

void DynamicSet::LetGo() {
  if (IsOrdered() && walk_) ReadRest();
  EndWalk();
  row_.reset();
}

}  // namespace merivane::store
