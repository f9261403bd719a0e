// How a merge that is tried out goes on behind what would end it.
#pragma once

#include <cstdint>

#include "program/error_boxes.h"
#include "program/program.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/conversions.h"

namespace merivane::roundtrip {

using namespace program;

// Does the step. With a listener, a failure of it is shown in its box and told at `stop`, and the
// result is False. Without one, and where the machine is to blame, it comes up.
template <typename Step>
bool GoesThrough(Desktop& desktop, MergeListener* listener, const MergeStop& stop,
                 const Step& step) {
  if (listener == nullptr) {
    step();
    return true;
  }
  try {
    step();
    return true;
  } catch (const RunTimeError& error) {
    if (IsMachineFault(error.Number())) throw;
    ShowDescription(desktop, error);
  } catch (const ProgramEnd&) {
    // Its box has told why.
  }
  listener->OnStop(stop);
  return false;
}

// Does a step for the task on which `tasks`, a set of ProjectAct, stands.
template <typename Step>
void TryTask(Desktop& desktop, MergeListener* listener, MergeStep kind, Recordset& tasks,
             const Step& step) {
  if (listener == nullptr) {
    step();
    return;
  }
  const std::int32_t task = ToInt32(tasks.Field("PID"));
  if (!listener->OnTask(kind, task)) return;
  GoesThrough(desktop, listener, {.kind = "task", .number = task, .step = kind}, step);
}

}  // namespace merivane::roundtrip
