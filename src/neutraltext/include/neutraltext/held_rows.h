// The rows of a reading that a listener kept from the database, for the database to get them once
// the text is read and somebody wants them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "neutraltext/modGlobal.h"

namespace merivane::neutraltext {

class HeldRows {
 public:
  // Tells whether a column is held.
  using IsWanted = bool (*)(std::string_view column);
  explicit HeldRows(IsWanted isWanted) : isWanted_(isWanted) {}

  // For ReaderListener::OnRow.
  void Hold(RowChange change, std::string_view table, std::span<const Cell> cells);

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
    std::string fields;  // packed, for most of a model's rows are those of its objects' uses
  };

  void Add(std::string_view column, const Value& value);
  std::string Packed();
  std::vector<Field> Unpacked(std::string_view packed) const;

  IsWanted isWanted_;
  std::deque<Row> rows_;
  std::vector<std::string_view> columns_;
  std::unordered_map<const char*, std::uint16_t> numbers_;  // by where the names stand
  std::string packed_;                                      // the row in hand
  std::unordered_map<std::string_view, std::size_t> last_;  // of each table, in rows_
};

}  // namespace merivane::neutraltext
