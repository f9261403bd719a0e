// The rows of one project in a table of a plan, whichever program made the table.
#pragma once

#include <string>
#include <vector>

#include "runtime/value.h"
#include "store/connection.h"
#include "store/recordset.h"

namespace merivane::schedule {

using namespace store;

// A walk over some columns, by their place in `columns`. A column that the table lacks is Null in
// every row; a table that lacks all of them is a RunTimeError, as is a table that isn't there.
class ProjectRows {
 public:
  struct Table {
    const char* name;
    const char* projectColumn = "PROJ_ID";
    const char* order = "";  // " order by ..."; empty: in order of insertion
  };
  ProjectRows(Connection& connection, const Table& table, std::int32_t project,
              const std::vector<const char*>& columns);

  bool AtEnd() { return rows_.Eof(); }
  void Next() {
    rows_.MoveNext();
    isRead_ = false;
  }

  const Value& At(std::size_t column);     // until Next
  std::string TextAt(std::size_t column);  // empty for Null
  // `otherwise` for what is no number; error 6 names the column of one beyond 32 bits.
  std::int64_t IntegerAt(std::size_t column, std::int64_t otherwise);

 private:
  std::string table_;
  std::vector<const char*> columns_;
  std::vector<int> places_;  // of the columns in the rows; -1: lacking
  Recordset rows_;
  std::vector<Value> row_;  // the one in hand, where `isRead_`
  bool isRead_ = false;
};

}  // namespace merivane::schedule
