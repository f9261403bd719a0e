// The rows of a reading that a listener kept from the database, for the database to get them once
// the text is read and somebody wants them.
#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "neutraltext/modGlobal.h"

namespace merivane::neutraltext {

class HeldRows {
 public:
  // For ReaderListener::OnRow.
  void Take(RowChange change, std::string_view table, std::span<const Cell> cells);

  // Adds the rows under the project's number in the order of the text, as they ended up, and
  // forgets them. A value that its column can't hold is reported as the reader reports it, and the
  // rows behind it are left out.
  void StoreIn(ModelToProject& state);

 private:
  struct Field {
    std::string_view column;
    Value value;
  };
  struct Row {
    std::string_view table;
    std::vector<Field> fields;
  };

  std::deque<Row> rows_;
  std::unordered_map<std::string_view, std::size_t> last_;  // of each table, in rows_
};

}  // namespace merivane::neutraltext
