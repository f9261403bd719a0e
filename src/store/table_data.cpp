#include "table_data.h"

#include <algorithm>
#include <limits>

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

std::string TableData::InsertSql(std::span<const FieldChange> changes) const {
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
  return "insert into " + schema_.QuotedName() + " (" + names + ") values (" + marks + ")";
}

std::string TableData::UpdateSql(std::span<const FieldChange> changes) const {
  std::string sql = "update " + schema_.QuotedName() + " set ";
  for (const FieldChange& change : changes) {
    if (&change != changes.data()) sql += ", ";
    sql += NameOf(change) + " = ?";
  }
  return sql + " where " + schema_.RowId() + " = ?";
}

sqlite3_stmt* TableData::Find(Write write, std::span<const FieldChange> changes) {
  Statements& cache = write == Write::kInsert ? inserts_ : updates_;
  key_.clear();
  for (const FieldChange& change : changes) {
    key_ += static_cast<char>(change.column & 0xFF);
    key_ += static_cast<char>(change.column >> 8);
  }
  const auto found = cache.find(key_);
  if (found != cache.end()) return found->second.get();
  if (cache.size() >= kMostStatements) cache.clear();
  const std::string sql = write == Write::kInsert ? InsertSql(changes) : UpdateSql(changes);
  return cache.emplace(key_, PrepareStatement(database_, sql, path_)).first->second.get();
}

void TableData::Run(sqlite3_stmt* statement) {
  sqlite3_step(statement);
  const int result = sqlite3_reset(statement);
  if (result != SQLITE_OK) {
    RunTimeError error = DatabaseError(database_, path_);
    sqlite3_clear_bindings(statement);
    throw error;
  }
  sqlite3_clear_bindings(statement);
}

std::int64_t TableData::Insert(std::int64_t rowId, std::vector<FieldChange>& changes) {
  WriteHeld();
  ++writes_;
  heldBytes_ = BytesIn(changes);
  if (schema_.TakesAnyRow() && heldBytes_ <= kMostHeld) {
    held_.rowId = rowId;
    held_.changes.swap(changes);
    isHeld_ = true;
    return rowId;
  }
  InsertNow(rowId, changes);
  return schema_.RowIdIsColumn() ? sqlite3_last_insert_rowid(database_) : rowId;
}

void TableData::InsertNow(std::int64_t rowId, std::span<const FieldChange> changes) {
  sqlite3_stmt* insert = Find(Write::kInsert, changes);
  int parameter = 0;
  if (!schema_.RowIdIsColumn()) sqlite3_bind_int64(insert, ++parameter, rowId);
  for (const FieldChange& change : changes) Bind(insert, ++parameter, change.value);
  Run(insert);
}

void TableData::WriteHeldRow() {
  isHeld_ = false;
  InsertNow(held_.rowId, held_.changes);
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
    for (const FieldChange& change : changes) {
      if (Value* held = held_.Find(change.column)) {
        *held = change.value;
      } else {
        held_.changes.push_back(change);
      }
    }
    return;
  }
  WriteHeld();
  sqlite3_stmt* update = Find(Write::kUpdate, changes);
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
