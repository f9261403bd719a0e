// The least work that a direction can do: its source read, its rows by prepared statements in one
// transaction, its text written. What a floor writes is loaded before, so that it isn't counted.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace merivane::bench {

// One step of a floor, by the words of a command line:
//   "lines FILE"           every line of the text read
//   "select DATABASE"      every row of every table read, numbers as numbers
//   "change AFTER BEFORE"  what differs (by row numbers) written into BEFORE: rows that it lacks,
//   by
//                          one statement a table that names the columns in which any has a value;
//                          rows that are gone; of the others the columns that differ
//   "write FILE COPY"      the text of FILE written to COPY line by line
// Loads what the step needs, and returns its work.
std::function<void()> PrepareFloor(const std::vector<std::string>& step);

// Does the work of all; valgrind counts from its first instruction to its last.
void MeasuredFloor(const std::vector<std::function<void()>>& steps);

// Runs the statements on the database.
void Execute(const std::string& database, const std::string& sql);

}  // namespace merivane::bench
