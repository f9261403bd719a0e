// How a run ended, for the line that tells it and for opening what it wrote, and what the user can
// do about its messages.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "runtime/run_time_error.h"
#include "store/connection.h"

namespace merivane::shell {

using namespace runtime;
using namespace store;

struct RunResult {
  std::string text;  // UTF-8: "5 tasks, ...; written: a.mdb", or why nothing was written
  std::string file;  // that the run was for, UTF-8; empty: it wrote nothing
};

// "; written: " and the names, between commas.
std::string WrittenNote(const std::vector<std::string>& files);

// "5 tasks, 2 resources, 4 links, 3 assignments" of a project. A plan's own summary row is no task;
// "no" stands for a table that can't be read. Links are the model's beside the work tables.
std::string CountsOfPlan(Connection& connection, std::int32_t project);  // of the MSP_ tables
std::string CountsOfWork(Connection& connection, std::int32_t project);  // of the work tables

long CountRows(Connection& connection, const std::string& sql);

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
