// What a row of a database that may come from another program tells.
#pragma once

#include <cstdint>
#include <optional>

#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "runtime/value.h"

namespace merivane::inspect {

using namespace runtime;

// Any column may hold Null, or in a database of another program a text: such a row tells less, and
// stops nothing.
inline std::optional<std::int32_t> NumberIn(const Value& value) try {
  return value.IsNull() ? std::nullopt : std::optional(ToInt32(value));
} catch (const RunTimeError&) {
  return std::nullopt;
}

}  // namespace merivane::inspect
