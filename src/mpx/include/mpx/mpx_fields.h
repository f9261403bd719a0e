// Fields of one MPX line, as the reader takes them. Fields are numbered from 1, and field 1 is the
// record number.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace merivane::mpx {

// A name that can't stand in the model, as a box tells it.
struct NameRefusal {
  std::string text;
  std::string title;
};

// The number ahead of the first comma; 0 where there is no comma or no number. Error 6 beyond 16
// bits.
std::int16_t RecordNumber(std::string_view line);

using FoundField = std::variant<std::string, NameRefusal>;

// Field `n`; empty where no comma follows it, so the last field of a line is never found here.
// Commas inside double quotes belong to the field in fields 3, 4 and 8 only; such a field comes
// with its opening quote and without its closing one. A quote that is never closed ends the search.
// A quote inside the quotes of field 3 or 4, and an empty pair there, is a name that is refused.
FoundField GetField(std::string_view line, int n);

// The same for the list of predecessors: quotes count in fields 3 and 4 on the way there, and a
// quoted list comes whole and without its quotes, commas included; empty where it isn't closed.
FoundField GetPredecessorField(std::string_view line, int n);

// The text behind the last comma; empty without a comma.
std::string GetLastField(std::string_view line);

// Refused are a task name with a double quote (a name with a comma comes with its opening quote),
// and a resource name with a comma or a double quote.
std::optional<NameRefusal> RefusalOfTaskName(const std::string& name);
std::optional<NameRefusal> RefusalOfResourceName(const std::string& name);

}  // namespace merivane::mpx
