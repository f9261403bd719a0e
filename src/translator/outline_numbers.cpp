#include <optional>
#include <unordered_map>

#include "runtime/text.h"
#include "translation_steps.h"

namespace merivane::translator {

namespace {

constexpr std::ptrdiff_t kKeyCharacters = 5;

class OutlineCounter {
 public:
  explicit OutlineCounter(ModelToProject& state) : state_(state) {}

  // Deeper levels keep an empty number.
  void Number(Recordset& task) {
    const Value level = task.Field("TASK_OUTLINE_LEVEL");
    if (Equal(level, 1)) {
      SetNumber(task, std::to_string(++top_));
    } else if (Equal(level, 2)) {
      NumberChild(task);
    }
  }

 private:
  void NumberChild(Recordset& task) {
    const std::string previous = parentKey_;
    parentKey_ = Left(Joined(task.Field("KV7_PROCOCC_P_ORDER")), kKeyCharacters);
    const std::optional<std::string>& parent = NumberOfParent();
    if (!parent) return;
    child_ = parentKey_ == previous ? child_ + 1 : 1;
    SetNumber(task, *parent + "." + std::to_string(child_));
  }

  // Nothing where there is no such task.
  const std::optional<std::string>& NumberOfParent() {
    const auto [known, isNew] = parents_.try_emplace(parentKey_);
    if (isNew) {
      Recordset parent =
          Ask(state_.gMspConn.get(), "Select * from MSP_TASKS where KV7_PROCOCC_P_ORDER = '",
              parentKey_, "'");
      if (!parent.Eof()) known->second = Joined(parent.Field("TASK_OUTLINE_NUM"));
    }
    return known->second;
  }

  // Earlier projects mostly have their numbers; a new one may be a known parent's.
  void SetNumber(Recordset& task, const std::string& number) {
    if (task.Field("TASK_OUTLINE_NUM") == Value(number)) return;
    task.SetField("TASK_OUTLINE_NUM", number);
    task.Update();
    if (Joined(task.Field("KV7_PROCOCC_P_ORDER")).size() <= kKeyCharacters) parents_.clear();
  }

  ModelToProject& state_;
  int top_ = 0;
  int child_ = 0;
  std::string parentKey_;
  std::unordered_map<std::string, std::optional<std::string>> parents_;  // by key
};

}  // namespace

void NumberOutline(ModelToProject& state) {
  OutlineCounter counter(state);
  Recordset tasks = Ask(state.gMspConn.get(),
                        "Select TASK_OUTLINE_LEVEL, KV7_PROCOCC_P_ORDER, TASK_OUTLINE_NUM "
                        "from MSP_TASKS where TASK_UID > 0");
  for (; !tasks.Eof(); tasks.MoveNext()) counter.Number(tasks);
}

}  // namespace merivane::translator
