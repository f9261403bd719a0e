#include "select_shape.h"

#include <algorithm>
#include <new>

#include "index_choice.h"
#include "runtime/code_page.h"

namespace merivane::store {

namespace {

// Columns are taken up in blocks of neighbours, as a reader of one mostly asks for the next.
constexpr int kBlock = 8;

bool HasColumns(ReadKind kind) {
  return kind == ReadKind::kWalk || kind == ReadKind::kLast || kind == ReadKind::kRow;
}

}  // namespace

void StatementReturner::operator()(sqlite3_stmt* statement) const noexcept {
  owner->TakeBack(kind, statement);
}

SelectShape::SelectShape(sqlite3* database, const std::string& path, StatementParts statement,
                         TableData& table)
    : database_(database),
      path_(path),
      statement_(std::move(statement)),
      table_(table),
      hint_(IndexHint(statement_)),
      slots_(table.Schema().Columns().size(), -1) {
  if (statement_.list.empty()) {
    const bool some = statement_.columns.size() < slots_.size();
    for (const int column : statement_.columns) {
      if (some) AddSlot(column);
    }
    return;
  }
  const StatementHandle proof = PrepareStatement(
      database_, "select " + statement_.list + " from " + table_.Schema().QuotedName(), path_);
  for (int field = 0; field < sqlite3_column_count(proof.get()); ++field) {
    const char* name = sqlite3_column_name(proof.get(), field);
    if (name == nullptr) throw std::bad_alloc();
    computed_.push_back(FromUtf8(name));
  }
}

int SelectShape::FieldCount() const {
  return static_cast<int>(computed_.empty() ? statement_.columns.size() : computed_.size());
}

std::string SelectShape::FieldName(int field) const {
  if (!computed_.empty()) return computed_[static_cast<std::size_t>(field)];
  return table_.Schema().Columns()[static_cast<std::size_t>(ColumnOf(field))].name;
}

int SelectShape::FindField(std::string_view name) const {
  if (!computed_.empty()) {
    const auto found = std::find_if(computed_.begin(), computed_.end(),
                                    [&](const auto& field) { return IsSameName(field, name); });
    return found == computed_.end() ? -1 : static_cast<int>(found - computed_.begin());
  }
  const int column = table_.Schema().Find(name);
  const auto& columns = statement_.columns;
  const auto index = static_cast<std::size_t>(column);
  if (column < 0 || (index < columns.size() && columns[index] == column)) return column;
  const auto found = std::find(columns.begin(), columns.end(), column);
  return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

void SelectShape::AddSlot(int column) {
  auto& slot = slots_[static_cast<std::size_t>(column)];
  if (slot >= 0) return;
  slotColumns_.push_back(column);
  slot = static_cast<std::int16_t>(slotColumns_.size());  // behind the row number
}

int SelectShape::SlotOfColumn(int column) {
  const auto index = static_cast<std::size_t>(column);
  if (slots_[index] < 0) {
    const int end = std::min(column + kBlock, static_cast<int>(slots_.size()));
    for (int next = column; next < end; ++next) AddSlot(next);
    for (const ReadKind kind : {ReadKind::kWalk, ReadKind::kLast, ReadKind::kRow}) {
      free_[static_cast<std::size_t>(kind)].clear();
    }
  }
  return slots_[index];
}

Value SelectShape::ValueIn(sqlite3_stmt* row, int field) {
  return ColumnValue(row, SlotOf(field), FormOf(field));
}

ReadAs SelectShape::FormOf(int field) const {
  const bool isText = HasKeys() && table_.Schema().KindOf(ColumnOf(field)) == ColumnKind::kText;
  return isText ? ReadAs::kText : ReadAs::kStored;
}

int SelectShape::TakeUpAll() {
  int last = 0;
  all_.clear();
  for (int field = 0; field < FieldCount(); ++field) {
    all_.emplace_back(SlotOf(field), FormOf(field));
    last = std::max(last, all_.back().first);
  }
  return last;
}

void SelectShape::ReadAll(sqlite3_stmt* row, std::vector<Value>& fields) const {
  fields.resize(all_.size());
  auto field = fields.begin();
  for (const auto& [slot, form] : all_) {
    // Of a task most are, in one row and the next.
    sqlite3_value* value = sqlite3_column_value(row, slot);
    const bool isNull = sqlite3_value_type(value) == SQLITE_NULL;
    if (!isNull || !field->IsNull()) *field = ColumnValue(row, slot, value, form);
    ++field;
  }
}

std::string SelectShape::Columns() const {
  if (!computed_.empty()) return statement_.list;
  const bool keys = HasKeys();
  std::string columns = keys ? table_.Schema().RowId() : "";
  for (const int column : keys ? slotColumns_ : statement_.columns) {
    columns += columns.empty() ? "" : ", ";
    columns += table_.Schema().Columns()[static_cast<std::size_t>(column)].quotedName;
  }
  return columns;
}

std::string SelectShape::Where(std::string_view more) const {
  std::string where = statement_.condition.empty() ? "" : "(" + statement_.condition + ")";
  if (!where.empty() && !more.empty()) where += " and ";
  where += more;
  return where.empty() ? where : " where " + where;
}

std::string SelectShape::Sql(ReadKind kind) const {
  const std::string& rowId = table_.Schema().RowId();
  const std::string& table = table_.Schema().QuotedName();
  const std::string source = " from " + table + hint_;
  const std::string comma = statement_.order.empty() || !HasKeys() ? "" : ", ";
  const std::string order = statement_.order + comma + (HasKeys() ? rowId : "");
  const std::string between = rowId + " > ?" + std::to_string(statement_.parameters + 1) + " and " +
                              rowId + " <= ?" + std::to_string(statement_.parameters + 2);
  switch (kind) {
    case ReadKind::kWalk:
      return "select " + Columns() + source + Where("") +
             (order.empty() ? "" : " order by " + order);
    case ReadKind::kCount:
      // Of rows in any order, which another index may serve. By "count(*)" a table is walked in one
      // step, which no limit ends.
      return "select count(1) from (select " + (HasKeys() ? rowId : Columns()) +
             (hint_ == kNotIndexed ? " from " + table : source) + Where("") + ")";
    case ReadKind::kLast:
      return "select " + Columns() + source + Where(between) + " order by " +
             statement_.reversedOrder + comma + rowId + " desc limit 1";
    case ReadKind::kKeys:
      return "select " + rowId + source + Where(between) + " order by " + order;
    case ReadKind::kRow:
      break;
  }
  return "select " + Columns() + " from " + table + " where " + rowId + " = ?1";
}

StatementHandle SelectShape::Prepare(ReadKind kind) {
  try {
    return PrepareStatement(database_, Sql(kind), path_);
  } catch (const RunTimeError&) {
    if (hint_.empty()) throw;
  }
  hint_.clear();
  return PrepareStatement(database_, Sql(kind), path_);
}

bool SelectShape::FindsHeld(std::span<const Literal> literals) const {
  TableData::HeldRow* row = table_.Held();
  if (row == nullptr || !statement_.isAllEqual) return false;
  for (std::size_t term = 0; term < statement_.equalColumns.size(); ++term) {
    const int column = statement_.equalColumns[term];
    const auto literal = static_cast<std::size_t>(statement_.equalLiterals[term]);
    const auto* wanted = std::get_if<std::int64_t>(&literals[literal]);
    const Value* held = row->Find(column);
    if (wanted == nullptr || held == nullptr || !table_.Schema().IsWhole(column) ||
        !held->IsInteger() || held->Integer() != *wanted) {
      return false;
    }
  }
  return true;
}

LentStatement SelectShape::Lend(ReadKind kind, std::span<const Literal> literals) {
  table_.WriteHeld();
  auto& pool = free_[static_cast<std::size_t>(kind)];
  StatementHandle statement;
  if (pool.empty()) {
    statement = Prepare(kind);
  } else {
    statement = std::move(pool.back());
    pool.pop_back();
  }
  if (kind != ReadKind::kRow) {
    int parameter = 0;
    for (const Literal& literal : literals) Bind(statement.get(), ++parameter, literal);
  }
  return {statement.release(), {this, kind}};
}

void SelectShape::TakeBack(ReadKind kind, sqlite3_stmt* statement) noexcept {
  StatementHandle owned(statement);
  sqlite3_reset(statement);
  sqlite3_clear_bindings(statement);
  const bool narrow = HasColumns(kind) && HasKeys() &&
                      sqlite3_column_count(statement) <= static_cast<int>(slotColumns_.size());
  if (narrow) return;
  try {
    free_[static_cast<std::size_t>(kind)].push_back(std::move(owned));
  } catch (const std::bad_alloc&) {
    // Without room it is finalized, and prepared anew where it is needed again.
  }
}

}  // namespace merivane::store
