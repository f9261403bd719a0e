// The plan's rows as the merge sees them: read once, so that no task costs a walk from the start.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

// The rows of ProjectAct in the plan's order, told apart by their place from 0.
class PlanOutline {
 public:
  // Walks the whole set, which is left behind its last row.
  void Read(Recordset& tasks);

  std::size_t Size() const { return rows_.size(); }

  // Nothing where the column is Null, which is neither above nor below any level.
  std::optional<std::int64_t> Level(std::size_t row) const { return rows_[row].level; }

  // The occurrence number of the row's task, as far as the merge has got.
  const Value& Text1(std::size_t row) const { return rows_[row].text1; }
  void SetText1(std::size_t row, Value text1) { rows_[row].text1 = std::move(text1); }

  // The way back to the row in the set that was read.
  std::size_t Bookmark(std::size_t row) const { return rows_[row].bookmark; }

  // The nearest row in front of the first row with this PID that doesn't lie as deep or deeper.
  // Error 3021 where there is none.
  std::size_t ParentOf(const Value& pid) const;

 private:
  struct Row {
    std::size_t bookmark = 0;
    std::optional<std::int64_t> level;
    Value text1;
    std::optional<std::size_t> parent;
  };
  std::vector<Row> rows_;
  std::unordered_map<std::int64_t, std::size_t> firstRowOf_;
};

// Text1 as it goes into a statement: a task without a number counts as number 0.
std::string OccurrenceText(const Value& text1);

}  // namespace merivane::roundtrip
