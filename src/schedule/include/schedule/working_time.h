// Working times of a calendar, and counting in them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "runtime/dates.h"

namespace merivane::schedule {

using namespace runtime;

// Tenths of a minute, the unit in which a plan's tables keep durations and lags.
using Tenths = std::int64_t;
inline constexpr Tenths kSecondsOfTenth = 6;
inline constexpr Tenths kTenthsOfMinute = 10;
inline constexpr Tenths kTenthsOfHour = 600;
inline constexpr Tenths kTenthsOfDay = 4800;  // of eight hours
inline constexpr Tenths kTenthsOfCalendarDay = 14400;

// A moment as tenths of a minute that run day and night, from Monday, 29 December 1969, 0:00.
Tenths ClockOf(const DateTime& moment);
DateTime MomentOf(Tenths clock);  // beyond the year 9999: error 6

// The day of a moment, counted from that Monday.
Tenths DayOf(const DateTime& moment);

// A stretch of work within a day, from midnight; `to` may be the next midnight.
struct Shift {
  Tenths from = 0;
  Tenths to = 0;
  bool operator==(const Shift&) const = default;
};
using Shifts = std::vector<Shift>;   // in order, without overlap; empty: no work
using Week = std::array<Shifts, 7>;  // Monday first

// Days that differ from the week, by the count of DayOf; both belong to it.
struct DayException {
  Tenths first = 0;
  Tenths last = 0;
  Shifts shifts;
};

// Counts working time from a moment long before any plan. Two calendars have the same count only
// for the same week and exceptions. Counting costs no more for moments that lie far apart.
class WorkingTime {
 public:
  // Monday to Friday, 8 to 12 and 13 to 17.
  static const WorkingTime& Standard();
  static const Week& StandardWeek();

  // REQUIRES: work in the week. Of exceptions that overlap, the first in the list has the day.
  explicit WorkingTime(Week week, const std::vector<DayException>& exceptions = {});

  // How much work lies in front of a moment.
  Tenths WorkedBy(Tenths clock) const;

  // When the work begins that has `worked` in front of it, and when the work ends that makes it
  // full: at the end of a day the two differ by the night.
  Tenths StartAt(Tenths worked) const;
  Tenths FinishAt(Tenths worked) const { return StartAt(worked - 1) + 1; }

  // The moment itself where work begins or goes on, otherwise the next at which it begins.
  Tenths NextStart(Tenths clock) const { return StartAt(WorkedBy(clock)); }
  // The moment itself where work goes on or ends, otherwise the last at which it ended.
  Tenths LastFinish(Tenths clock) const { return FinishAt(WorkedBy(clock)); }

  // Where a duration ends that begins at or behind `clock`, and where one began that ends there.
  Tenths After(Tenths clock, Tenths duration) const { return FinishAt(WorkedBy(clock) + duration); }
  Tenths Before(Tenths clock, Tenths duration) const { return StartAt(WorkedBy(clock) - duration); }

  // "Monday to Friday 8:00-12:00 and 13:00-17:00, with 2 exceptions".
  std::string Text() const;

  bool operator==(const WorkingTime& other) const;

 private:
  static constexpr std::size_t kWeek = static_cast<std::size_t>(-1);

  // Days from `first` up to the next segment: as the week has them, or all with the same shifts.
  struct Segment {
    Tenths first = 0;
    Tenths worked = 0;  // in front of it
    std::size_t exception = kWeek;
  };

  void AddSegments(const DayException& exception, std::size_t index);
  void CountWork();
  Tenths WeeksWork(Tenths day) const;
  Tenths WorkBetween(const Segment& segment, Tenths day) const;
  const Shifts& ShiftsOf(const Segment& segment, Tenths day) const;

  Week week_;
  std::array<Tenths, 8> weekWork_{};  // in front of each day of the week, and all of it
  std::vector<Shifts> exceptions_;
  std::vector<Tenths> exceptionWork_;  // of one day
  std::vector<Segment> segments_;
};

}  // namespace merivane::schedule
