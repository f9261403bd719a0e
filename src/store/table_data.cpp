#include "table_data.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace merivane::store {

namespace {

// Sets of columns differ with the data, so there is no end to them.
constexpr std::size_t kMostStatements = 200;

// A row of more may be longer than a database takes, which is told where it is written.
constexpr std::size_t kMostHeld = 1 << 20;

std::size_t BytesIn(std::span<const FieldChange> changes) {
  std::size_t bytes = 0;
  for (const FieldChange& change : changes) {
    if (change.value.IsText()) bytes += change.value.Text().size();
    if (change.value.IsBytes()) bytes += change.value.GetBytes().size();
  }
  return bytes;
}

}  // namespace

std::int64_t TableData::GreatestRowId() {
  if (!greatest_) {
    greatest_ = PrepareStatement(
        database_, "select max(" + schema_.RowId() + ") from " + schema_.QuotedName(), path_);
  }
  const int step = sqlite3_step(greatest_.get());
  const std::int64_t greatest = sqlite3_column_int64(greatest_.get(), 0);
  sqlite3_reset(greatest_.get());
  if (step != SQLITE_ROW) throw DatabaseError(database_, path_);
  return greatest;
}

void TableData::BeginTransaction(std::uint64_t transaction) {
  if (lastRowIdTransaction_ == transaction) return;
  lastRowId_ = std::max(lastRowId_, GreatestRowId());
  lastRowIdTransaction_ = transaction;
}

std::int64_t TableData::NextRowId() {
  if (lastRowId_ == std::numeric_limits<std::int64_t>::max()) {
    throw RunTimeError(kDatabaseError, "The table " + schema_.Name() + " takes no more rows.");
  }
  return ++lastRowId_;
}

const std::string& TableData::NameOf(const FieldChange& change) const {
  return schema_.Columns()[static_cast<std::size_t>(change.column)].quotedName;
}

std::string TableData::InsertSql(std::span<const FieldChange> changes, std::size_t rows) const {
  if (schema_.RowIdIsColumn() && changes.empty()) {
    return "insert into " + schema_.QuotedName() + " default values";
  }
  std::string names = schema_.RowIdIsColumn() ? "" : schema_.RowId();
  std::string marks = schema_.RowIdIsColumn() ? "" : "?";
  for (const FieldChange& change : changes) {
    if (!names.empty()) {
      names += ", ";
      marks += ", ";
    }
    names += NameOf(change);
    marks += "?";
  }
  // Several need no journal of their own: a failed one costs the transaction.
  std::string sql = rows == 1 ? "insert into " : "insert or fail into ";
  sql += schema_.QuotedName() + " (" + names + ") values (" + marks + ")";
  for (std::size_t row = 1; row < rows; ++row) sql += ", (" + marks + ")";
  return sql;
}

std::string TableData::UpdateSql(std::span<const FieldChange> changes) const {
  std::string sql = "update " + schema_.QuotedName() + " set ";
  for (const FieldChange& change : changes) {
    if (&change != changes.data()) sql += ", ";
    sql += NameOf(change) + " = ?";
  }
  return sql + " where " + schema_.RowId() + " = ?";
}

void TableData::TakeKey(std::span<const FieldChange> changes) {
  key_.clear();
  for (const FieldChange& change : changes) {
    key_ += static_cast<char>(change.column & 0xFF);
    key_ += static_cast<char>(change.column >> 8);
  }
}

TableData::InsertStatements& TableData::FindInsert(std::span<const FieldChange> changes) {
  TakeKey(changes);
  const auto found = inserts_.find(key_);
  if (found != inserts_.end()) return found->second;
  if (inserts_.size() >= kMostStatements) inserts_.clear();
  InsertStatements made;
  made.one = PrepareStatement(database_, InsertSql(changes, 1), path_);
  return inserts_.emplace(key_, std::move(made)).first->second;
}

sqlite3_stmt* TableData::FindUpdate(std::span<const FieldChange> changes) {
  TakeKey(changes);
  const auto found = updates_.find(key_);
  if (found != updates_.end()) return found->second.get();
  if (updates_.size() >= kMostStatements) updates_.clear();
  StatementHandle made = PrepareStatement(database_, UpdateSql(changes), path_);
  return updates_.emplace(key_, std::move(made)).first->second.get();
}

void TableData::Run(sqlite3_stmt* statement) {
  sqlite3_step(statement);
  const int result = sqlite3_reset(statement);
  if (result != SQLITE_OK) {
    failure_ = DatabaseError(database_, path_);
    sqlite3_clear_bindings(statement);
    throw RunTimeError(*failure_);
  }
  sqlite3_clear_bindings(statement);
}

std::int64_t TableData::Insert(std::int64_t rowId, std::vector<FieldChange>& changes) {
  if (!HasRoomToHold()) WriteHeld();
  ++writes_;
  const std::size_t bytes = BytesIn(changes);
  if (schema_.TakesAnyRow() && bytes <= kMostHeld) {
    heldBytes_ = bytes + (heldRows_ > 0 ? heldBytes_ : 0);
    HeldRow& row = held_[heldRows_++];
    row.rowId = rowId;
    row.changes.swap(changes);
    return rowId;
  }
  WriteHeld();
  InsertNow(rowId, changes);
  return schema_.RowIdIsColumn() ? sqlite3_last_insert_rowid(database_) : rowId;
}

// Of one set of columns, where those between the first and the last are.
bool TableData::AreAlike(std::span<const HeldRow> rows) {
  const auto columnOf = [](const FieldChange& change) { return change.column; };
  return std::ranges::equal(rows.front().changes, rows.back().changes, {}, columnOf, columnOf);
}

bool TableData::HasRoomToHold() const {
  return heldRows_ == 0 || (heldRows_ < kTogether && heldBytes_ <= kMostHeld &&
                            AreAlike(std::span(held_).first(heldRows_)));
}

int TableData::BindRow(sqlite3_stmt* insert, int parameter, std::int64_t rowId,
                       std::span<const FieldChange> changes) const {
  if (!schema_.RowIdIsColumn()) sqlite3_bind_int64(insert, ++parameter, rowId);
  for (const FieldChange& change : changes) Bind(insert, ++parameter, change.value);
  return parameter;
}

void TableData::InsertNow(std::int64_t rowId, std::span<const FieldChange> changes) {
  InsertStatements& inserts = FindInsert(changes);
  ++inserts.written;
  BindRow(inserts.one.get(), 0, rowId, changes);
  Run(inserts.one.get());
}

void TableData::WriteHeldRows() {
  constexpr std::size_t kFew = 64;  // a statement for several pays where many follow
  const std::span<const HeldRow> rows = std::span(held_).first(std::exchange(heldRows_, 0));
  if (rows.size() == kTogether && AreAlike(rows)) {
    InsertStatements& inserts = FindInsert(rows.front().changes);
    if (inserts.written >= kFew) return InsertTogether(inserts, rows);
  }
  for (const HeldRow& row : rows) InsertNow(row.rowId, row.changes);
}

void TableData::InsertTogether(InsertStatements& inserts, std::span<const HeldRow> rows) {
  if (!inserts.several) {
    const std::string sql = InsertSql(rows.front().changes, rows.size());
    inserts.several = PrepareStatement(database_, sql, path_);
  }
  int parameter = 0;
  for (const HeldRow& row : rows) {
    parameter = BindRow(inserts.several.get(), parameter, row.rowId, row.changes);
  }
  Run(inserts.several.get());
}

Value* TableData::HeldRow::Find(int column) {
  const auto found = std::find_if(changes.begin(), changes.end(), [&](const FieldChange& change) {
    return change.column == column;
  });
  return found == changes.end() ? nullptr : &found->value;
}

void TableData::Update(std::int64_t rowId, std::span<const FieldChange> changes) {
  ++writes_;
  if (IsHeld(rowId) && (heldBytes_ += BytesIn(changes)) <= kMostHeld) {
    HeldRow& row = *Held();
    for (const FieldChange& change : changes) {
      if (Value* held = row.Find(change.column)) {
        *held = change.value;
      } else {
        row.changes.push_back(change);
      }
    }
    return;
  }
  WriteHeld();
  sqlite3_stmt* update = FindUpdate(changes);
  int parameter = 0;
  for (const FieldChange& change : changes) Bind(update, ++parameter, change.value);
  sqlite3_bind_int64(update, ++parameter, rowId);
  Run(update);
  if (sqlite3_changes(database_) == 0) throw RunTimeError(kNoCurrentRecord);
}

void TableData::Delete(std::int64_t rowId) {
  ++writes_;
  WriteHeld();
  if (!delete_) {
    delete_ = PrepareStatement(
        database_, "delete from " + schema_.QuotedName() + " where " + schema_.RowId() + " = ?",
        path_);
  }
  sqlite3_bind_int64(delete_.get(), 1, rowId);
  Run(delete_.get());
  ++deletes_;
  if (sqlite3_changes(database_) == 0) throw RunTimeError(kNoCurrentRecord);
}

}  // namespace merivane::store
