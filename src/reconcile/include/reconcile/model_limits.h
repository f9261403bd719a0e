// What a model can hold of a plan, whichever merge brings it there.
#pragma once

#include <cstddef>
#include <string>

namespace merivane::reconcile {

// That a translation gives.
inline constexpr std::size_t kMostLevels = 10;

// Of a resource for a task: a labor rule holds a digit. No text is the one unit.
bool HoldsUnits(const std::string& units);

// False where a line of the note would end it in a text.
bool HoldsLines(const std::string& note);

}  // namespace merivane::reconcile
