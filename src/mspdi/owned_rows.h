// Rows of a table that belong to tasks, resources or assignments, read at once.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "element.h"
#include "store/connection.h"

namespace merivane::mspdi {

using namespace store;

using Row = std::vector<Value>;

// One element that a column of a row fills, within bounds where it is a whole number.
struct RowField {
  const char* element;
  std::size_t column;
  Kind kind;
  std::int64_t least = -2147483648LL;
  std::int64_t most = 2147483647LL;
};

class OwnedRows {
 public:
  // The owner's UID is the first column. None in a database without the table or the column. Where
  // `only` is given, the rows that have a number other than 0 there.
  OwnedRows(Connection& connection, std::int32_t project, const char* table,
            const std::vector<const char*>& columns, std::optional<std::size_t> only = {});

  std::span<const Row> Of(std::int64_t owner) const;

 private:
  std::unordered_map<std::int64_t, std::vector<Row>> rows_;
};

// The fields that the row has, in their order.
void WriteRow(std::span<const RowField> fields, const Row& row, Element& element);

}  // namespace merivane::mspdi
