#include "reconcile/model_limits.h"

#include "runtime/conversions.h"

namespace merivane::reconcile {

using namespace runtime;

bool HoldsUnits(const std::string& units) {
  if (!IsNumericText(units)) return units.empty();
  const double number = ToDouble(units);
  return number >= 0 && number <= 9 && number == static_cast<int>(number);
}

bool HoldsLines(const std::string& note) {
  return !note.starts_with("  End  ") && note.find("\n  End  ") == std::string::npos;
}

}  // namespace merivane::reconcile
