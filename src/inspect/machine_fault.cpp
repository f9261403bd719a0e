#include "machine_fault.h"

#include <variant>

#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::inspect {

void ThrowMachineFault(const ScriptedDesktop& desktop) {
  for (const auto& shown : desktop.shown) {
    const auto* box = std::get_if<ScriptedDesktop::ShownMessage>(&shown);
    if (box == nullptr) continue;
    const int number = box->message.error;
    // The engine's other errors come from what a statement was made of.
    if (number == kDatabaseError || !IsMachineFault(number)) continue;
    throw RunTimeError(number, Trim(box->message.text));
  }
}

}  // namespace merivane::inspect
