// Lags of links as numbers and as the text of a list of predecessors.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "schedule/working_time.h"

namespace merivane::schedule {

// Formats of durations and lags: 3 minutes, 5 hours, 7 days, 9 weeks, 11 months, 19 percent; the
// even number behind each is the same in time that runs day and night; 32 more is an estimate.
inline constexpr std::int64_t kFormatDays = 7;

struct Lag {
  Tenths amount = 0;  // tenths of a minute; of a percentage, the percents
  std::int64_t format = kFormatDays;

  bool IsElapsed() const;     // runs day and night
  bool IsPercentage() const;  // of the predecessor's duration
};

// "+2d", "-1.5eh", "+50%"; empty for no lag. A day of the plan has `minutesPerDay`, a week five
// such days, a month twenty; an unknown format counts in days.
std::string LagText(const Lag& lag, double minutesPerDay);

// The lag at the front of a text in the same form, with days of eight hours; no lag where the text
// isn't in that form.
Lag ParseLag(std::string_view text);

}  // namespace merivane::schedule
