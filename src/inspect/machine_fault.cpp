#include "machine_fault.h"

#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::inspect {

void ThrowMachineFault(const QuietDesktop& desktop) {
  for (const Message& box : desktop.boxes) {
    const int number = box.error;
    // The engine's other errors come from what a statement was made of.
    if (number == kDatabaseError || !IsMachineFault(number)) continue;
    throw RunTimeError(number, Trim(box.text));
  }
}

}  // namespace merivane::inspect
