#include "recordset_impl.h"

#include <algorithm>

#include "keyed_rows.h"
#include "snapshot_rows.h"

namespace merivane::store {

Recordset::Impl::~Impl() { Close(); }

void Recordset::Impl::CheckOpen() const {
  if (!rows) throw RunTimeError(kObjectClosed);
}

void Recordset::Impl::CheckNotOpen() const {
  if (rows) throw RunTimeError(kObjectOpen);
}

void Recordset::Impl::CheckField(int index) const {
  CheckOpen();
  if (index < 0 || index >= rows->FieldCount()) throw RunTimeError(kItemNotFound);
}

void Recordset::Impl::CheckOnRow() {
  Ask();
  if (at != Position::kRow || !rows->IsThere(place)) throw RunTimeError(kNoCurrentRecord);
}

void Recordset::Impl::Prepare(std::string_view sql, Connection* from, bool fixed) {
  source = sql;
  connection = from;
  isStatic = fixed;
}

void Recordset::Impl::Open(Engine& database) {
  std::vector<Literal> literals;
  SelectShape& shape = database.FindSelect(source, literals);
  if (shape.HasKeys()) {
    Open(database, std::make_unique<KeyedRows>(database, shape, std::move(literals), isStatic));
  } else {
    Open(database, std::make_unique<SnapshotRows>(shape, std::move(literals), database.Path()));
  }
}

void Recordset::Impl::Open(Engine& database, std::unique_ptr<Rows> list) {
  database.AddSet(*this);
  engine = &database;
  rows = std::move(list);
  at = Position::kFresh;
}

void Recordset::Impl::Close() noexcept {
  if (!rows) return;
  DropChanges();
  rows.reset();
  engine->RemoveSet(*this);
  engine = nullptr;
}

void Recordset::Impl::Ask() {
  CheckOpen();
  if (at == Position::kFresh) MoveTo(rows->First(), Position::kEmpty);
}

void Recordset::Impl::MoveTo(Place target, Position otherwise) {
  place = target;
  at = target == kNoPlace ? otherwise : Position::kRow;
}

Value Recordset::Impl::Read(int field) {
  if (adding || !changes.empty()) {
    if (const FieldChange* change = FindChange(rows->ColumnOf(field))) return change->value;
    if (adding) return {};
  }
  Ask();
  if (at != Position::kRow) throw RunTimeError(kNoCurrentRecord);
  return rows->Read(place, field);
}

void Recordset::Impl::Change(int field, Value value) {
  rows->CheckWritable();
  if (!adding) CheckOnRow();
  const int column = rows->ColumnOf(field);
  ConvertTo(rows->KindOf(column), value);
  if (FieldChange* change = FindChange(column)) {
    change->value = std::move(value);
  } else {
    changes.push_back({column, std::move(value)});
  }
}

void Recordset::Impl::SaveChanges() {
  CheckOpen();
  if (adding) {
    rows->Insert(changes);
  } else if (!changes.empty()) {
    rows->Update(place, changes);
  }
  DropChanges();
}

void Recordset::Impl::DropChanges() noexcept {
  adding = false;
  changes.clear();
}

FieldChange* Recordset::Impl::FindChange(int column) {
  const auto found = std::find_if(changes.begin(), changes.end(), [&](const FieldChange& change) {
    return change.column == column;
  });
  return found == changes.end() ? nullptr : &*found;
}

}  // namespace merivane::store
