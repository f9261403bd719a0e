// What a model can hold of a plan, whichever merge brings it there.
#pragma once

#include <cstddef>
#include <string>

namespace merivane::reconcile {

// The name of a task, or what stands in its place: up to 250 characters of one line, with curved
// quotes, since straight ones end a name in the statements that look for it.
std::string HoldableName(std::string name);

// That a translation gives.
inline constexpr std::size_t kMostLevels = 10;

// A labor rule, as the reader takes it from a text.
inline constexpr std::size_t kLongestRule = 25;

// Of a resource for a task: a labor rule holds a digit. No text is the one unit.
bool HoldsUnits(const std::string& units);

// False where a line of the note would end it in a text.
bool HoldsLines(const std::string& note);

}  // namespace merivane::reconcile
