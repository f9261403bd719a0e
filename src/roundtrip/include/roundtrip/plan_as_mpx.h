// A plan as an MPX file, in the form that a translation writes.
#pragma once

#include <cstdint>
#include <string>

#include "mspdi/plan_reader.h"

namespace merivane::roundtrip {

using namespace mspdi;

struct MpxText {
  std::string text;              // Windows-1252, lines end with CR LF
  std::size_t changedTexts = 0;  // that held what MPX can't: quotes, line breaks in names
};

// `codePage`: the system's OEM code page, which the first line tells. Dates, constraints, progress,
// calendars and the kinds of resources have no place there; links keep their kinds and lags.
MpxText PlanAsMpx(const FilePlan& plan, std::int32_t codePage);

// "3", "4SS+1d": the predecessors of a task by their places in the list, between commas.
std::string PredecessorList(const FileTask& task, double minutesPerDay);

}  // namespace merivane::roundtrip
