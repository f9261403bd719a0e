// Fields of one MPX line, as the reader takes them. Fields are numbered from 1, and field 1 is the
// record number.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/desktop.h"

namespace merivane::mpx {

using namespace platform;

// The number ahead of the first comma; 0 where there is no comma or no number. Error 6 beyond 16
// bits.
std::int16_t RecordNumber(std::string_view line);

// Field `n`; empty where no comma follows it, so the last field of a line is never found here.
// Commas inside double quotes belong to the field in fields 3, 4 and 8 only; such a field comes
// with its opening quote and without its closing one. A quote that is never closed ends the search.
// A quote inside the quotes of field 3 or 4, and an empty pair there, is a name that is refused: a
// box, and the program ends.
std::string GetField(Desktop& desktop, std::string_view line, int n);

// The same for the list of predecessors: quotes count in fields 3 and 4 on the way there, and a
// quoted list comes whole and without its quotes, commas included; empty where it isn't closed.
std::string GetPredecessorField(Desktop& desktop, std::string_view line, int n);

// The text behind the last comma; empty without a comma.
std::string GetLastField(std::string_view line);

// A box and the end of the program for a task name with a double quote (a name with a comma comes
// with its opening quote), and for a resource name with a comma or a double quote.
void CheckTaskName(Desktop& desktop, const std::string& name);
void CheckResourceName(Desktop& desktop, const std::string& name);

}  // namespace merivane::mpx
