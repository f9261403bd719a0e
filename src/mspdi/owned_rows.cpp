#include "owned_rows.h"

#include "runtime/conversions.h"
#include "schedule/project_rows.h"
#include "store/interim_db.h"
#include "stored_fields.h"

namespace merivane::mspdi {

OwnedRows::OwnedRows(Connection& connection, std::int32_t project, const char* table,
                     const std::vector<const char*>& columns, std::optional<std::size_t> only) {
  if (TableExists(&connection, table) == 0) return;
  schedule::ProjectRows rows(connection, {.name = table}, project, columns);
  for (; !rows.AtEnd(); rows.Next()) {
    const Value owner = rows.At(0);
    if (!IsNumeric(owner)) continue;
    const std::int32_t uid = ToInt32(owner);
    if (only && !AnyNumber(rows, *only, 1)) continue;
    Row row;
    row.reserve(columns.size());
    for (std::size_t column = 0; column < columns.size(); ++column) row.push_back(rows.At(column));
    rows_[uid].push_back(std::move(row));
  }
}

std::span<const Row> OwnedRows::Of(std::int64_t owner) const {
  const auto found = rows_.find(owner);
  return found == rows_.end() ? std::span<const Row>() : std::span<const Row>(found->second);
}

void WriteRow(std::span<const RowField> fields, const Row& row, Element& element) {
  for (const RowField& field : fields) {
    const Value& value = row[field.column];
    if (HasBounds(field.kind) && !LiesWithin(value, field.least, field.most)) continue;
    element.Stored(field.element, field.kind, value);
  }
}

}  // namespace merivane::mspdi
