// How a run ended, for the line that tells it and for opening what it wrote.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "store/connection.h"

namespace merivane::shell {

using namespace store;

struct RunResult {
  std::string text;  // UTF-8: "5 tasks, ...; written: a.mdb", or why nothing was written
  std::string file;  // that the run was for, UTF-8; empty: it wrote nothing
};

// "; written: " and the names, between commas.
std::string WrittenNote(const std::vector<std::string>& files);

// "5 tasks, 2 resources, 4 links, 3 assignments" of a project. A plan's own summary row is no task;
// "no" stands for a table that can't be read.
std::string CountsOfPlan(Connection& connection, std::int32_t project);  // of the MSP_ tables
std::string CountsOfWork(Connection& connection, std::int32_t project);  // of the work tables

long CountRows(Connection& connection, const std::string& sql);

}  // namespace merivane::shell
