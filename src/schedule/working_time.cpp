#include "schedule/working_time.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "runtime/run_time_error.h"

namespace merivane::schedule {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr Tenths kSecondsOfTenth = 6;
constexpr Tenths kTenthsOfHour = 600;
constexpr Tenths kTenthsOfCalendarDay = 24 * kTenthsOfHour;
constexpr Tenths kMorning = 8 * kTenthsOfHour;
constexpr Tenths kNoon = 12 * kTenthsOfHour;
constexpr Tenths kAfternoon = 13 * kTenthsOfHour;
constexpr Tenths kEvening = 17 * kTenthsOfHour;
constexpr Tenths kWorkingDays = 5;
constexpr Tenths kDaysOfWeek = 7;

constexpr sys_days kFirstMonday{days{-3}};  // 29 December 1969

// Quotient and remainder that hold for negative numbers too.
std::pair<Tenths, Tenths> Split(Tenths number, Tenths part) {
  const Tenths rest = (number % part + part) % part;
  return {(number - rest) / part, rest};
}

DateTime DateOf(Tenths day, Tenths timeOfDay) {
  constexpr Tenths kLastDay = 2932896 + 3;  // 31 December 9999
  if (day > kLastDay || day < -kLastDay) {
    throw RunTimeError(kOverflow, "The plan reaches beyond the year 9999.");
  }
  const year_month_day date{kFirstMonday + days{day}};
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int>(static_cast<unsigned>(date.month())),
          .day = static_cast<int>(static_cast<unsigned>(date.day())),
          .seconds = static_cast<int>(timeOfDay * kSecondsOfTenth)};
}

// Clock time and working time, both from the first Monday's midnight.
Tenths ClockOf(const DateTime& moment) {
  const sys_days date{std::chrono::year{moment.year} / moment.month / moment.day};
  return (date - kFirstMonday).count() * kTenthsOfCalendarDay + moment.seconds / kSecondsOfTenth;
}

Tenths WorkedBy(Tenths clock) {
  const auto [day, time] = Split(clock, kTenthsOfCalendarDay);
  const auto [week, weekday] = Split(day, kDaysOfWeek);
  if (weekday >= kWorkingDays) return (week + 1) * kWorkingDays * kTenthsOfDay;
  Tenths worked = 0;
  if (time >= kEvening) {
    worked = kTenthsOfDay;
  } else if (time >= kAfternoon) {
    worked = time - kAfternoon + (kNoon - kMorning);
  } else if (time >= kMorning) {
    worked = std::min(time, kNoon) - kMorning;
  }
  return (week * kWorkingDays + weekday) * kTenthsOfDay + worked;
}

DateTime MomentOf(Tenths workingDay, Tenths worked, bool finish) {
  const auto [week, weekday] = Split(workingDay, kWorkingDays);
  const Tenths half = kNoon - kMorning;
  const bool morning = finish ? worked <= half : worked < half;
  return DateOf(week * kDaysOfWeek + weekday,
                morning ? kMorning + worked : kAfternoon + worked - half);
}

}  // namespace

WorkingTime::WorkingTime(const DateTime& start)
    : origin_(WorkedBy(ClockOf(start) + (start.seconds == 0 ? kMorning : 0))) {}

DateTime WorkingTime::StartAt(Tenths offset) const {
  const auto [day, worked] = Split(origin_ + offset, kTenthsOfDay);
  return MomentOf(day, worked, false);
}

DateTime WorkingTime::FinishAt(Tenths offset) const {
  const auto [day, worked] = Split(origin_ + offset, kTenthsOfDay);
  return worked == 0 ? MomentOf(day - 1, kTenthsOfDay, true) : MomentOf(day, worked, true);
}

Tenths WorkingTime::AfterElapsed(Tenths offset, Tenths elapsed, bool fromFinish) const {
  return WorkedBy(ClockOf(fromFinish ? FinishAt(offset) : StartAt(offset)) + elapsed) - origin_;
}

Tenths WorkingTime::BeforeElapsed(Tenths offset, Tenths elapsed) const {
  return WorkedBy(ClockOf(StartAt(offset)) - elapsed) - origin_;
}

}  // namespace merivane::schedule
