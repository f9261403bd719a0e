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
      task.SetField("TASK_OUTLINE_NUM", std::to_string(++top_));
    } else if (Equal(level, 2)) {
      NumberChild(task);
    } else {
      return;
    }
    task.Update();
  }

 private:
  void NumberChild(Recordset& task) {
    const std::string previous = parentKey_;
    parentKey_ = Left(Joined(task.Field("KV7_PROCOCC_P_ORDER")), kKeyCharacters);
    Recordset parent =
        Rows(state_, "Select * from MSP_TASKS where KV7_PROCOCC_P_ORDER = '", parentKey_, "'");
    if (parent.Eof()) return;
    child_ = parentKey_ == previous ? child_ + 1 : 1;
    task.SetField("TASK_OUTLINE_NUM",
                  Joined(parent.Field("TASK_OUTLINE_NUM")) + "." + std::to_string(child_));
  }

  ModelToProject& state_;
  int top_ = 0;
  int child_ = 0;
  std::string parentKey_;
};

}  // namespace

void NumberOutline(ModelToProject& state) {
  OutlineCounter counter(state);
  Recordset tasks = Rows(state, "Select * from MSP_TASKS where TASK_UID > 0");
  for (; !tasks.Eof(); tasks.MoveNext()) counter.Number(tasks);
}

}  // namespace merivane::translator
