#include "reconcile/model_limits.h"

#include <algorithm>

#include "runtime/conversions.h"

namespace merivane::reconcile {

using namespace runtime;

std::string HoldableName(std::string name) {
  constexpr std::size_t kLongestName = 250;
  std::replace(name.begin(), name.end(), '"', '\x94');
  std::replace(name.begin(), name.end(), '\'', '\x92');
  for (char& letter : name) {
    if (letter == '\r' || letter == '\n') letter = ' ';
  }
  if (name.size() > kLongestName) name.resize(kLongestName);
  return name;
}

bool HoldsUnits(const std::string& units) {
  if (!IsNumericText(units)) return units.empty();
  const double number = ToDouble(units);
  return number >= 0 && number <= 9 && number == static_cast<int>(number);
}

bool HoldsLines(const std::string& note) {
  return !note.starts_with("  End  ") && note.find("\n  End  ") == std::string::npos;
}

}  // namespace merivane::reconcile
