// Notes of tasks and resources as plain text (Windows-1252).
#pragma once

#include <string>
#include <unordered_map>

#include "runtime/value.h"
#include "schedule/plan.h"

namespace merivane::mspdi {

using namespace runtime;
using namespace store;
using namespace schedule;

using Notes = std::unordered_map<std::int64_t, std::string>;  // by the task's UID

// A note that Merivane wrote may be the one of a task before it; where the database holds the
// model, the glossary of the task's own activity counts instead.
// `brokenOff` counts the notes whose rich text ends before it is closed.
Notes ReadTaskNotes(Connection& connection, std::int32_t project, const schedule::Plan& plan,
                    std::size_t& brokenOff);

// The readable text of a column of rich text; empty for Null.
std::string PlainNote(const Value& rtf, std::size_t& brokenOff);

}  // namespace merivane::mspdi
