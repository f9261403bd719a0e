#include "outline_numbers.h"

#include <optional>
#include <unordered_map>

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
  Recordset tasks =
      Ask(state.gMspConn.get(), "Select TASK_UID, KV7_PROCOCC_P_ORDER from MSP_TASKS");
  for (; isKnown_ && !tasks.Eof(); tasks.MoveNext()) {
    isKnown_ = Equal(tasks.Field("TASK_UID"), 0) && tasks.Field("KV7_PROCOCC_P_ORDER").IsNull();
  }
}

void OutlineAhead::Number(Recordset& task) {
  const Value uid = task.Field("TASK_UID");
  isKnown_ = isKnown_ && uid.IsInteger() && uid.Integer() > 0;
  if (!isKnown_) return;
  const auto number = counter_.Next(task, [this](const std::string& key) {
    const auto parent = numbers_.find(key);
    isKnown_ = parent != numbers_.end();
    return isKnown_ ? std::optional(parent->second) : std::nullopt;
  });
  if (number) task.SetField("TASK_OUTLINE_NUM", *number);
  const Value order = task.Field("KV7_PROCOCC_P_ORDER");
  if (!order.IsNull()) {
    numbers_.try_emplace(Joined(order), Joined(task.Field("TASK_OUTLINE_NUM")));
  }
}

void OutlineAhead::TakeBack(ModelToProject& state) noexcept try {
  if (numbers_.empty()) return;
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
