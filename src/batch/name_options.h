// Options that name a file.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace merivane::batch {

// The name is trimmed as a browse button trims it; an empty one is wrong usage.
CLI::Option* AddName(CLI::App* command, const char* option, std::string& name,
                     const char* description);

}  // namespace merivane::batch
