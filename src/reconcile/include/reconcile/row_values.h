// What a row of a database that may come from another program tells, and how values of two such
// rows are held together.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "runtime/value.h"

namespace merivane::reconcile {

using namespace runtime;

// Any column may hold Null, or in a database of another program a text: such a row tells less, and
// stops nothing.
std::optional<std::int32_t> NumberIn(const Value& value);

// A note without the quotes around it, of which each way through an MPX file may leave one more,
// and without the line ends behind it.
std::string NoteText(std::string text);

// Numbers by their value; `whenBlank` is that of a text that is none: a duration that isn't given
// is the plan's one day.
bool IsSameNumber(const std::string& a, const std::string& b, double whenBlank);

}  // namespace merivane::reconcile
