// Elements of the schema that columns of the tables fill, in the schema's order.
#pragma once

#include <vector>

#include "element.h"
#include "runtime/conversions.h"
#include "schedule/project_rows.h"

namespace merivane::mspdi {

using namespace runtime;

// One element of a record, written by `Writer`. The column is taken first (within the bounds that
// the schema sets, for whole numbers); without a value there, `own` writes the element or leaves it
// out. An element without a column is the writer's own.
template <class Writer>
struct Field {
  const char* element;
  const char* column = nullptr;
  Kind kind = Kind::kInteger;
  void (Writer::*own)(Element&, const char*) = nullptr;
  std::int64_t least = -2147483648LL;
  std::int64_t most = 2147483647LL;
};

// Adds the columns of the fields; gives the place of the first.
template <class Writer, std::size_t kCount>
std::size_t AddColumns(const Field<Writer> (&fields)[kCount], std::vector<const char*>& columns) {
  const std::size_t first = columns.size();
  for (const auto& field : fields) {
    if (field.column != nullptr) columns.push_back(field.column);
  }
  return first;
}

inline bool LiesWithin(const Value& value, std::int64_t least, std::int64_t most) {
  if (!IsNumeric(value)) return false;
  const double number = ToDouble(value);
  return number >= static_cast<double>(least) && number <= static_cast<double>(most);
}

// True where one of the columns from `first` on holds a number other than 0.
inline bool AnyNumber(schedule::ProjectRows& rows, std::size_t first, std::size_t count) {
  for (std::size_t column = first; column < first + count; ++column) {
    const Value& value = rows.At(column);
    if (IsNumeric(value) && ToDouble(value) != 0) return true;
  }
  return false;
}

inline bool HasBounds(Kind kind) { return kind == Kind::kInteger || kind == Kind::kRateFormat; }

// `rows` is null where the tables have no row for the record; the columns of the fields begin at
// `column`.
template <class Writer, std::size_t kCount>
void WriteFields(const Field<Writer> (&fields)[kCount], Writer& writer, schedule::ProjectRows* rows,
                 std::size_t column, Element& element) {
  const Value none;
  for (const auto& field : fields) {
    if (field.column != nullptr) {
      const Value& value = rows != nullptr ? rows->At(column) : none;
      ++column;
      const bool fits = !HasBounds(field.kind) || LiesWithin(value, field.least, field.most);
      if (fits && element.Stored(field.element, field.kind, value)) continue;
    }
    if (field.own != nullptr) (writer.*field.own)(element, field.element);
  }
}

}  // namespace merivane::mspdi
