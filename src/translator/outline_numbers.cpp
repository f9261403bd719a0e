#include "outline_numbers.h"

#include <optional>
#include <unordered_map>
#include <utility>

#include "translation_steps.h"

namespace merivane::translator {

namespace {

// Gives the tasks that stand in the database their numbers.
class OutlineNumbering {
 public:
  explicit OutlineNumbering(ModelToProject& state) : state_(state) {}

  void Number(Recordset& task) {
    const auto number =
        counter_.Next(task, [this](const std::string& key) { return NumberOf(key); });
    if (number) SetNumber(task, *number);
  }

 private:
  const std::optional<std::string>& NumberOf(const std::string& key) {
    const auto [known, isNew] = known_.try_emplace(key);
    if (isNew) {
      Recordset parent = Ask(state_.gMspConn.get(),
                             "Select * from MSP_TASKS where KV7_PROCOCC_P_ORDER = '", key, "'");
      if (!parent.Eof()) known->second = Joined(parent.Field("TASK_OUTLINE_NUM"));
    }
    return known->second;
  }

  // Most tasks have their numbers; a new one may be a known parent's.
  void SetNumber(Recordset& task, const std::string& number) {
    if (task.Field("TASK_OUTLINE_NUM") == Value(number)) return;
    task.SetField("TASK_OUTLINE_NUM", number);
    task.Update();
    if (Joined(task.Field("KV7_PROCOCC_P_ORDER")).size() <= kOutlineKey) known_.clear();
  }

  ModelToProject& state_;
  OutlineCounter counter_;
  std::unordered_map<std::string, std::optional<std::string>> known_;  // by key
};

}  // namespace

OutlineAhead::OutlineAhead(ModelToProject& state) {
  try {
    Recordset tasks = Ask(state.gMspConn.get(),
                          "Select TASK_UID, KV7_PROCOCC_P_ORDER, TASK_OUTLINE_NUM from MSP_TASKS");
    for (isKnown_ = true; isKnown_ && !tasks.Eof(); tasks.MoveNext()) {
      isKnown_ = Equal(tasks.Field("TASK_UID"), 0) && tasks.Field("KV7_PROCOCC_P_ORDER").IsNull();
    }
  } catch (const RunTimeError&) {
    isKnown_ = false;  // what is wrong is told where it stops the work
  }
}

void OutlineAhead::Number(Recordset& task) {
  if (!isKnown_) return;
  const Value uid = task.Field("TASK_UID");
  isKnown_ = uid.IsInteger() && uid.Integer() > 0;
  if (!isKnown_) return;
  const auto number = counter_.Next(task, [this](const std::string& key) {
    const auto parent = numbers_.find(key);
    isKnown_ = parent != numbers_.end();
    return isKnown_ ? std::optional(parent->second) : std::nullopt;
  });
  if (number && isTried_) {
    task.SetField("TASK_OUTLINE_NUM", *number);
    isSet_ = true;
  }
  order_ = task.Field("KV7_PROCOCC_P_ORDER");
  if (!order_.IsNull()) numbers_.try_emplace(Joined(order_), number.value_or(""));
}

void OutlineAhead::Try(Recordset& tasks) {
  if (!isKnown_ || std::exchange(isTried_, true)) return;
  tasks.MoveLast();
  isKnown_ =
      tasks.Field("TASK_OUTLINE_NUM").IsNull() && tasks.Field("KV7_PROCOCC_P_ORDER") == order_;
}

void OutlineAhead::TakeBack(ModelToProject& state) noexcept try {
  if (!isSet_) return;
  Recordset tasks = Ask(state.gMspConn.get(), "Select * from MSP_TASKS where TASK_UID > 0");
  for (; !tasks.Eof(); tasks.MoveNext()) {
    tasks.SetField("TASK_OUTLINE_NUM", Value());
    tasks.Update();
  }
} catch (...) {
  // What ended the work is told.
}

void NumberOutline(ModelToProject& state) {
  OutlineNumbering numbering(state);
  Recordset tasks = Ask(state.gMspConn.get(),
                        "Select TASK_OUTLINE_LEVEL, KV7_PROCOCC_P_ORDER, TASK_OUTLINE_NUM "
                        "from MSP_TASKS where TASK_UID > 0");
  for (; !tasks.Eof(); tasks.MoveNext()) numbering.Number(tasks);
}

}  // namespace merivane::translator
