#include "schedule/project_rows.h"

#include "runtime/conversions.h"
#include "runtime/run_time_error.h"

namespace merivane::schedule {

ProjectRows::ProjectRows(Connection& connection, const Table& table, std::int32_t project,
                         const std::vector<const char*>& columns)
    : table_(table.name), columns_(columns) {
  Recordset all;
  all.OpenDynamic("select * from " + std::string(table.name), &connection);
  std::string found;
  int place = 0;
  for (const char* column : columns) {
    const bool there = all.FindField(column) >= 0;
    places_.push_back(there ? place++ : -1);
    if (there) found.append(found.empty() ? "" : ", ").append(column);
  }
  all.Close();
  rows_.OpenStatic("select " + found + " from " + table.name + " where " + table.projectColumn +
                       " = " + std::to_string(project) + table.order,
                   &connection);
}

const Value& ProjectRows::At(std::size_t column) {
  static const Value kNull;
  if (places_[column] < 0) return kNull;
  if (!isRead_) rows_.ReadRow(row_);
  isRead_ = true;
  return row_[static_cast<std::size_t>(places_[column])];
}

std::string ProjectRows::TextAt(std::size_t column) { return Joined(At(column)); }

std::int64_t ProjectRows::IntegerAt(std::size_t column, std::int64_t otherwise) {
  const Value& value = At(column);
  if (!IsNumeric(value)) return otherwise;
  const double number = ToDouble(value);
  if (!(number > -2147483648.5 && number < 2147483647.5)) {
    throw RunTimeError(kOverflow, table_ + "." + columns_[column] + " holds " + Joined(value) +
                                      ", which is beyond a whole number of 32 bits.");
  }
  return ToInt32(value);
}

}  // namespace merivane::schedule
