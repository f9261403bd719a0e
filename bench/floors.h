// The least work that a direction can do: the same rows by prepared statements in one transaction,
// and the same text. Each is a command of this program, so that it is measured like the program.
#pragma once

#include <string>

namespace merivane::bench {

// Inserts the rows of `from` that `into` lacks (by their row numbers), each with its columns that
// hold a value.
void InsertFloor(const std::string& from, const std::string& into);

// Reads every row of the database and writes a copy of the text.
void SelectFloor(const std::string& database, const std::string& text, const std::string& copy);

// Runs the statements on the database.
void Execute(const std::string& database, const std::string& sql);

}  // namespace merivane::bench
