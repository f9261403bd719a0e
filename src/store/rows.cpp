#include "rows.h"

namespace merivane::store {

void Rows::CheckWritable() const { throw RunTimeError(kNotUpdatable); }

int Rows::ColumnOf(int /*field*/) const { throw RunTimeError(kNotUpdatable); }

ColumnKind Rows::KindOf(int /*column*/) const { throw RunTimeError(kNotUpdatable); }

void Rows::Insert(std::span<const FieldChange> /*changes*/) { throw RunTimeError(kNotUpdatable); }

void Rows::Update(Place /*place*/, std::vector<FieldChange>& /*changes*/) {
  throw RunTimeError(kNotUpdatable);
}

void Rows::Delete(Place /*place*/) { throw RunTimeError(kNotUpdatable); }

}  // namespace merivane::store
