#include "keyed_rows.h"

#include <algorithm>

namespace merivane::store {

KeyedRows::~KeyedRows() {
  if (asked_) engine_.Unwatch(*this);
}

void KeyedRows::Ask() {
  if (asked_) return;
  asked_ = true;
  if (added_.empty()) deletesSeen_ = table_.Deletes();
  engine_.Watch(*this);
}

// ---------------------------------------------------------------- reading the list

void KeyedRows::Step() {
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

void KeyedRows::ReadRest() {
  if (!walk_ && !complete_) ReadKeys();
  while (!complete_) Step();
}

// Of an ordered set all rows, as they are read in one go once its walk has ended.
LentStatement KeyedRows::LendUnread(ReadKind kind) {
  LentStatement statement = shape_.Lend(kind, literals_);
  const int parameters = shape_.Statement().parameters;
  sqlite3_bind_int64(statement.get(), parameters + 1, IsOrdered() ? kDeleted : lastRead_);
  sqlite3_bind_int64(statement.get(), parameters + 2, limit_);
  return statement;
}

void KeyedRows::ReadKeys() {
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

void KeyedRows::EndList() {
  EndWalk();
  complete_ = true;
  if (tail_) {
    if (keys_.empty() || keys_.back() != *tail_) keys_.push_back(*tail_);
    tailPlace_ = keys_.size() - 1;
  }
  keys_.insert(keys_.end(), added_.begin(), added_.end());
  added_.clear();
}

void KeyedRows::EndWalk() {
  walk_.GiveBack();
  walkStands_ = false;
}

// ---------------------------------------------------------------- places

bool KeyedRows::Has(Place place) {
  while (place >= keys_.size() && !complete_) Step();
  return place < keys_.size();
}

Place KeyedRows::NextThere(Place place) {
  for (; Has(place); ++place) {
    if (IsThere(place)) return place;
  }
  return kNoPlace;
}

Place KeyedRows::PreviousThere(Place end) {
  while (end > 0) {
    if (IsThere(--end)) return end;
  }
  return kNoPlace;
}

Place KeyedRows::Last() {
  if (!complete_ && added_.empty()) {
    const Place tail = FindTail();
    if (tail != kNoPlace) return tail;
  }
  ReadRest();
  return PreviousThere(keys_.size());
}

Place KeyedRows::FindTail() {
  if (tail_) return IsThere(kTail) ? kTail : kNoPlace;
  Ask();
  LentStatement last = LendUnread(ReadKind::kLast);
  const int step = sqlite3_step(last.get());
  if (step != SQLITE_DONE && step != SQLITE_ROW) {
    throw DatabaseError(engine_.Database(), engine_.Path());
  }
  const std::int64_t key = sqlite3_column_int64(last.get(), 0);
  if (step == SQLITE_DONE || (!keys_.empty() && keys_.back() == key)) {
    EndList();  // no row is unread
    return kNoPlace;
  }
  tail_ = key;
  if (!IsOrdered()) limit_ = *tail_;
  row_ = std::move(last);
  rowKey_ = *tail_;
  rowWrites_ = table_.Writes();
  return kTail;
}

Place KeyedRows::After(Place place) {
  if (place == kTail) {
    if (!complete_ && added_.empty()) return kNoPlace;
    ReadRest();
    place = tailPlace_;
  }
  return NextThere(place + 1);
}

Place KeyedRows::Before(Place place) {
  if (place == kTail) {
    ReadRest();
    place = tailPlace_;
  }
  return PreviousThere(place);
}

std::size_t KeyedRows::Count() {
  ReadRest();
  return keys_.size();
}

std::int64_t& KeyedRows::KeyAt(Place place) {
  if (place != kTail) return keys_[place];
  return complete_ ? keys_[tailPlace_] : *tail_;
}

bool KeyedRows::IsThere(Place place) {
  const std::int64_t key = KeyAt(place);
  if (key == kDeleted) return false;
  if (valuesKept_ || deletesSeen_ == table_.Deletes()) return true;
  if (StandOn(key, 0)) return true;
  KeyAt(place) = kDeleted;
  return false;
}

// ---------------------------------------------------------------- values

std::string KeyedRows::FieldName(int field) const { return shape_.FieldName(field); }

Value KeyedRows::Read(Place place, int field) {
  const auto index = static_cast<std::size_t>(field);
  if (valuesKept_) {
    if (KeyAt(place) == kDeleted) throw RunTimeError(kNoCurrentRecord);
    return values_[place == kTail ? tailPlace_ : place][index];
  }
  const int column = ColumnOf(field);
  const int slot = shape_.SlotOf(column);
  return ColumnValue(StatementWith(place, slot), slot + 1, KindOf(column) == ColumnKind::kText);
}

sqlite3_stmt* KeyedRows::StatementWith(Place place, int slot) {
  const std::int64_t key = KeyAt(place);
  if (walkStands_ && keys_.back() == key && slot < walk_.Width()) return walk_.get();
  if (key == kDeleted || !StandOn(key, slot + 1)) throw RunTimeError(kNoCurrentRecord);
  return row_.get();
}

// The row's columns of that width are there to be read; false for a row deleted since.
bool KeyedRows::StandOn(std::int64_t key, int width) {
  const bool fits = row_ && row_.Width() >= width;
  if (fits && rowKey_ == key && rowWrites_ == table_.Writes()) return true;
  if (fits && row_.Kind() == ReadKind::kRow) {
    sqlite3_reset(row_.get());
  } else {
    row_.GiveBack();
    row_ = shape_.Lend(ReadKind::kRow, literals_);
  }
  sqlite3_bind_int64(row_.get(), 1, key);
  rowKey_ = kDeleted;
  const int step = sqlite3_step(row_.get());
  if (step == SQLITE_DONE) return false;
  if (step != SQLITE_ROW) {
    RunTimeError error = DatabaseError(engine_.Database(), engine_.Path());
    row_.GiveBack();
    throw error;
  }
  rowKey_ = key;
  rowWrites_ = table_.Writes();
  return true;
}

void KeyedRows::KeepValues() {
  ReadRest();
  for (const int column : shape_.Statement().columns) shape_.SlotOf(column);
  values_.resize(keys_.size());
  for (Place place = 0; place < keys_.size(); ++place) {
    if (!IsThere(place)) continue;
    for (int field = 0; field < FieldCount(); ++field) {
      values_[place].push_back(Read(place, field));
    }
  }
  valuesKept_ = true;
  row_.GiveBack();
}

// ---------------------------------------------------------------- writing

void KeyedRows::CheckWritable() const {
  if (fixed_) throw RunTimeError(kNotUpdatable);
  engine_.CheckWritable();
}

int KeyedRows::ColumnOf(int field) const {
  return shape_.Statement().columns[static_cast<std::size_t>(field)];
}

ColumnKind KeyedRows::KindOf(int column) const {
  return table_.Schema().Columns()[static_cast<std::size_t>(column)].kind;
}

void KeyedRows::BeginWrite() {
  engine_.BeginWrite();
  table_.BeginTransaction(engine_.Transaction());
}

void KeyedRows::Insert(std::span<const FieldChange> changes) {
  BeginWrite();
  const bool numbered = !table_.Schema().RowIdIsColumn();
  const std::int64_t rowId = numbered ? table_.NextRowId() : 0;
  engine_.BeforeInsert(table_, rowId);
  if (!asked_ && added_.empty()) deletesSeen_ = table_.Deletes();
  (complete_ ? keys_ : added_).push_back(table_.Insert(rowId, changes));
}

void KeyedRows::Update(Place place, std::vector<FieldChange>& changes) {
  std::erase_if(changes, [&](const FieldChange& change) {
    const int slot = shape_.SlotOf(change.column);
    return ColumnHolds(StatementWith(place, slot), slot + 1, change.value);
  });
  if (changes.empty()) return;
  const std::int64_t key = KeyAt(place);
  BeginWrite();
  engine_.BeforeUpdate(table_, key, changes);
  table_.Update(key, changes);
}

void KeyedRows::Delete(Place place) {
  if (KeyAt(place) == kDeleted) throw RunTimeError(kNoCurrentRecord);
  BeginWrite();
  engine_.BeforeDelete(table_);
  const bool seenAll = deletesSeen_ == table_.Deletes();
  table_.Delete(KeyAt(place));
  if (seenAll) deletesSeen_ = table_.Deletes();
  KeyAt(place) = kDeleted;
}

// ---------------------------------------------------------------- what others write

bool KeyedRows::IsPending(const TableData& table) const {
  return &table == &table_ && (fixed_ ? !valuesKept_ : !complete_);
}

bool KeyedRows::Uses(std::span<const FieldChange> changes) const {
  const auto& used = shape_.Statement().used;
  return std::any_of(changes.begin(), changes.end(), [&](const FieldChange& change) {
    return used[static_cast<std::size_t>(change.column)];
  });
}

void KeyedRows::BeforeInsert(const TableData& table, std::int64_t rowId) {
  if (!IsPending(table)) return;
  if (fixed_) return KeepValues();
  if (IsOrdered() || table.Schema().RowIdIsColumn()) return ReadRest();
  limit_ = std::min(limit_, rowId - 1);
  EndWalk();
}

void KeyedRows::BeforeUpdate(const TableData& table, std::optional<std::int64_t> rowId,
                             std::span<const FieldChange> changes) {
  if (!IsPending(table)) return;
  if (fixed_) return KeepValues();
  const bool known = rowId && (*rowId <= lastRead_ || *rowId > limit_ || rowId == tail_);
  if (IsOrdered() || (!known && Uses(changes))) return ReadRest();
  EndWalk();
}

void KeyedRows::BeforeDelete(const TableData& table) {
  if (!IsPending(table)) return;
  if (fixed_) return KeepValues();
  if (IsOrdered()) return ReadRest();
  EndWalk();
}

void KeyedRows::LetGo() {
  if (IsOrdered() && walk_) ReadRest();
  EndWalk();
  row_.GiveBack();
}

}  // namespace merivane::store
