// The numbers of the outline, "3" and "3.1": those of all tasks of levels 1 and 2, in the order of
// their rows.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "runtime/text.h"
#include "translation_steps.h"

namespace merivane::translator {

inline constexpr std::ptrdiff_t kOutlineKey = 5;  // characters of the order that name the parent

class OutlineCounter {
 public:
  // The number of the task that comes next. Nothing for deeper levels, and where `numberOf`, which
  // gives the number of the first task with a key, knows none.
  template <class NumberOf>
  std::optional<std::string> Next(Recordset& task, NumberOf numberOf) {
    const Value level = task.Field("TASK_OUTLINE_LEVEL");
    if (Equal(level, 1)) return std::to_string(++top_);
    if (!Equal(level, 2)) return std::nullopt;
    const std::string previous = parentKey_;
    parentKey_ = Left(Joined(task.Field("KV7_PROCOCC_P_ORDER")), kOutlineKey);
    const std::optional<std::string> parent = numberOf(parentKey_);
    if (!parent) return std::nullopt;
    child_ = parentKey_ == previous ? child_ + 1 : 1;
    return *parent + "." + std::to_string(child_);
  }

 private:
  int top_ = 0;
  int child_ = 0;
  std::string parentKey_;
};

// Numbers the tasks while their rows are added, so that no row is written twice. It stops where
// that isn't certain, and where tasks of other projects stand in the database: NumberOutline gives
// every task the number that it has by then, or doesn't have.
class OutlineAhead {
 public:
  explicit OutlineAhead(ModelToProject& state);

  void Number(Recordset& task);  // the row that is being added, with its other columns set
  // Behind each: the first row gets no number, but is read again, as a table might hold something
  // else than it was given.
  void Try(Recordset& tasks);
  // Where the work ends early, no task has a number, as far as the table can still be written.
  void TakeBack(ModelToProject& state) noexcept;

 private:
  bool isKnown_ = false;
  bool isTried_ = false;
  bool isSet_ = false;  // in a row
  Value order_;         // of the last row
  OutlineCounter counter_;
  std::unordered_map<std::string, std::string> numbers_;  // of the first task with an order
};

}  // namespace merivane::translator
