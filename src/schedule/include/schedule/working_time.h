// The standard calendar: Monday to Friday, 8 to 12 and 13 to 17.
#pragma once

#include <cstdint>

#include "runtime/dates.h"

namespace merivane::schedule {

using namespace runtime;

// Tenths of a minute, the unit in which a plan's tables keep durations and lags.
using Tenths = std::int64_t;
inline constexpr Tenths kTenthsOfMinute = 10;
inline constexpr Tenths kTenthsOfDay = 4800;  // of eight hours

// Counts working time from the beginning of a plan, and tells the dates that a count falls on.
// A date beyond the year 9999 is error 6.
class WorkingTime {
 public:
  // A day without a time of day begins at 8; a moment out of hours waits for the next working one.
  explicit WorkingTime(const DateTime& start);

  // When work begins that has `offset` of working time before it, and when the work ends that makes
  // it full: at the end of a day the two differ by the night.
  DateTime StartAt(Tenths offset) const;
  DateTime FinishAt(Tenths offset) const;

  // `elapsed` tenths of a minute run day and night. The offset that they reach, counted from where
  // the work up to `offset` ends or from where the work behind it begins; and the last offset from
  // which they reach no further than `offset`.
  Tenths AfterElapsed(Tenths offset, Tenths elapsed, bool fromFinish) const;
  Tenths BeforeElapsed(Tenths offset, Tenths elapsed) const;

 private:
  Tenths origin_;  // working time from the calendar's first Monday to the plan's beginning
};

}  // namespace merivane::schedule
