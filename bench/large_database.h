// A database of many projects (0.5 GB), and what a command on one of them costs there.
#pragma once

#include <string>

namespace merivane::bench {

// Prints a table: each command of the program in a database with 300 other projects of 1,000 tasks.
void MeasureLargeDatabase(const std::string& program);

}  // namespace merivane::bench
