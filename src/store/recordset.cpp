#include "store/recordset.h"

#include <algorithm>
#include <optional>

#include "engine.h"
#include "keyed_rows.h"
#include "recordset_impl.h"
#include "snapshot_rows.h"
#include "store/connection.h"

namespace merivane::store {

Recordset::Recordset() : impl_(std::make_shared<Impl>()) {}
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;

void Recordset::OpenDynamic(std::string_view sql, Connection* connection) {
  impl_->CheckNotOpen();
  impl_->Prepare(sql, connection, false);
  Open();
}

void Recordset::OpenStatic(std::string_view sql, Connection* connection) {
  impl_->CheckNotOpen();
  impl_->Prepare(sql, connection, true);
  Open();
}

void Recordset::Source(std::string_view sql) {
  impl_->CheckNotOpen();
  impl_->source = sql;
}

void Recordset::ActiveConnection(Connection* connection) {
  impl_->CheckNotOpen();
  impl_->connection = connection;
}

void Recordset::Open() {
  impl_->CheckNotOpen();
  if (impl_->connection == nullptr) throw RunTimeError(kObjectNotSet);
  if (!impl_->connection->engine_) throw RunTimeError(kConnectionInvalid);
  impl_->Open(*impl_->connection->engine_);
}

void Recordset::Close() {
  impl_->CheckOpen();
  impl_->Close();
}

bool Recordset::IsOpen() const { return impl_->rows != nullptr; }

bool Recordset::Eof() {
  impl_->Ask();
  return impl_->at == Position::kEof || impl_->at == Position::kEmpty;
}

bool Recordset::Bof() {
  impl_->Ask();
  return impl_->at == Position::kBof || impl_->at == Position::kEmpty;
}

void Recordset::MoveFirst() {
  impl_->SaveChanges();
  impl_->MoveTo(impl_->rows->First(), Position::kEmpty);
  impl_->CheckOnRow();
}

void Recordset::MoveLast() {
  impl_->SaveChanges();
  impl_->MoveTo(impl_->rows->Last(), Position::kEmpty);
  impl_->CheckOnRow();
}

void Recordset::MoveNext() {
  impl_->SaveChanges();
  impl_->Ask();
  if (impl_->at == Position::kEof || impl_->at == Position::kEmpty) {
    throw RunTimeError(kNoCurrentRecord);
  }
  Rows& rows = *impl_->rows;
  const bool before = impl_->at == Position::kBof;
  impl_->MoveTo(before ? rows.First() : rows.After(impl_->place), Position::kEof);
}

void Recordset::MovePrevious() {
  impl_->SaveChanges();
  impl_->Ask();
  if (impl_->at == Position::kBof || impl_->at == Position::kEmpty) {
    throw RunTimeError(kNoCurrentRecord);
  }
  Rows& rows = *impl_->rows;
  const bool behind = impl_->at == Position::kEof;
  impl_->MoveTo(behind ? rows.Last() : rows.Before(impl_->place), Position::kBof);
}

long Recordset::RecordCount() {
  impl_->CheckOpen();
  return impl_->isStatic ? static_cast<long>(impl_->rows->Count()) : -1;
}

int Recordset::FieldCount() {
  impl_->CheckOpen();
  return impl_->rows->FieldCount();
}

std::string Recordset::FieldName(int index) {
  impl_->CheckField(index);
  return impl_->rows->FieldName(index);
}

int Recordset::FindField(std::string_view name) {
  impl_->CheckOpen();
  return impl_->rows->FindField(name);
}

Value Recordset::Field(std::string_view name) { return Field(FindField(name)); }

Value Recordset::Field(int index) {
  impl_->CheckField(index);
  return impl_->Read(index);
}

void Recordset::SetField(std::string_view name, Value value) {
  const int field = FindField(name);
  impl_->CheckField(field);
  impl_->Change(field, std::move(value));
}

void Recordset::AddNew() {
  impl_->SaveChanges();
  impl_->rows->CheckWritable();
  impl_->adding = true;
}

void Recordset::AddNew(const std::vector<std::string>& names, const std::vector<Value>& values) {
  if (names.size() != values.size()) throw RunTimeError(kInvalidProcedureCall);
  AddNew();
  try {
    for (std::size_t i = 0; i < names.size(); ++i) SetField(names[i], values[i]);
    Update();
  } catch (...) {
    impl_->DropChanges();
    throw;
  }
}

void Recordset::Update() { impl_->SaveChanges(); }

void Recordset::Delete() {
  impl_->CheckOpen();
  impl_->rows->CheckWritable();
  impl_->DropChanges();
  impl_->CheckOnRow();
  impl_->rows->Delete(impl_->place);
}

}  // namespace merivane::store
