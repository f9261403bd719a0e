// A second sentence for messages that name no cause.
#pragma once

#include <string>

#include "runtime/run_time_error.h"

namespace merivane::shell {

using namespace runtime;

// What the user can do about a message that tells this run-time error (0: none); empty where the
// message says enough itself.
std::string MessageAdvice(int error);

// What to do with a file of Microsoft Project that bears this name (.mpd, .mpp), UTF-8; empty for
// any other name.
std::string NameAdvice(const std::string& path);

// What to do with a file (UTF-8) that couldn't be read as a plan's database: a plan file, or a
// database without the tables of Microsoft Project 2000 to 2003. Empty for any other failure.
std::string PlanFileAdvice(const std::string& path, const RunTimeError& error);

}  // namespace merivane::shell
