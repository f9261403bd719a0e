// A plan as an MPX file, in the form that a translation writes, and the lists of predecessors in
// it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "mspdi/plan_reader.h"

namespace merivane::roundtrip {

using namespace mspdi;

struct MpxText {
  std::string text;              // Windows-1252, lines end with CR LF
  std::size_t changedTexts = 0;  // that held what MPX can't: quotes, line breaks in names
};

// `codePage`: the system's OEM code page, which the first line tells. Dates of tasks, constraints,
// progress and calendars have no place there. The kind of a resource goes into its note, and links
// keep their kinds and lags.
MpxText PlanAsMpx(const FilePlan& plan, std::int32_t codePage);

// "3", "4SS+1d": the predecessors of a task by their places in the list, between commas.
std::string PredecessorList(const FileTask& task, double minutesPerDay);

// An entry of such a list, as it comes back.
enum class RelationKind { kFinishToStart, kStartToStart, kFinishToFinish, kStartToFinish };

// The entries between the commas; one of an empty list. A comma right in front of an entry belongs
// to it.
std::vector<std::string> PredecessorEntries(const std::string& list);

// SS, FF and SF are looked for in this order, anywhere in the entry and in any case; a lag isn't
// read.
RelationKind RelationKindOf(std::string_view entry);

// The number at the front of the entry, rounded; 0 without one, error 6 beyond 16 bits.
std::int16_t PlanIdOf(std::string_view entry);

}  // namespace merivane::roundtrip
