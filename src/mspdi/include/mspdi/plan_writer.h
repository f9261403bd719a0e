// Planning XML out of the tables of a plan; plan_reader.h is the way back.
//
//   Connection connection(workspace);
//   connection.Open(ConnectionText("plan.mdb"), OpenMode::kReadOnly);
//   const WrittenCounts counts = WritePlan(connection, 1, today, Output("plan.xml"));
//   for (const std::string& warning : counts.warnings) Tell(warning);
//   const FilePlan again = ReadPlanFile(Output("plan.xml"));
//
// The tables have durations in tenths and work in thousandths of a minute, the file has both as
// hours, minutes and seconds ("PT8H0M0S"). The file is UTF-8, with all letters of the database. The
// connection is the caller's and stays open; no row changes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "runtime/dates.h"
#include "runtime/new_file.h"
#include "store/connection.h"

namespace merivane::mspdi {

using namespace runtime;
using namespace store;

struct WrittenCounts {
  std::size_t tasks = 0;  // without the summary of the whole
  std::size_t resources = 0;
  std::size_t links = 0;
  std::size_t assignments = 0;
  std::vector<std::string> warnings;  // what can't be and was left out, a sentence each
};

// Writes the plan of a project (see schedule/plan.h for which one that is) to `output`. Dates come
// from the tables where they have them, otherwise from the schedule; `today` is the start of a plan
// that has none.
//
// Failures: links in a circle (error 5) and a plan beyond the year 9999 (6) come before the file is
// touched, what the store refuses before or in the midst of it. Then a path that is refused (70),
// is a folder (75), isn't there (76), has no room (61) or can't be written (57). What was written
// by then goes with the NewFile.
WrittenCounts WritePlan(Connection& connection, std::int32_t project, const DateTime& today,
                        const Output& output);

}  // namespace merivane::mspdi
