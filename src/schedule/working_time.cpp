#include "schedule/working_time.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::schedule {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr Tenths kDaysOfWeek = 7;
constexpr sys_days kFirstMonday{days{-3}};      // 29 December 1969
constexpr Tenths kLastDay = 2932896 + 3;        // 31 December 9999
constexpr Tenths kEarliestDay = -7 * 100000LL;  // a Monday before any date

// Quotient and remainder that hold for negative numbers too.
std::pair<Tenths, Tenths> Split(Tenths number, Tenths part) {
  const Tenths rest = (number % part + part) % part;
  return {(number - rest) / part, rest};
}

Tenths LengthOf(const Shifts& shifts) {
  Tenths length = 0;
  for (const Shift& shift : shifts) length += shift.to - shift.from;
  return length;
}

Tenths WorkedWithin(const Shifts& shifts, Tenths time) {
  Tenths worked = 0;
  for (const Shift& shift : shifts) {
    if (time <= shift.from) break;
    worked += std::min(time, shift.to) - shift.from;
  }
  return worked;
}

// REQUIRES: less than the length of the shifts.
Tenths TimeBehind(const Shifts& shifts, Tenths worked) {
  for (const Shift& shift : shifts) {
    if (worked < shift.to - shift.from) return shift.from + worked;
    worked -= shift.to - shift.from;
  }
  return kTenthsOfCalendarDay;
}

std::string ClockText(Tenths time) {
  const Tenths minutes = time % kTenthsOfHour / kTenthsOfMinute;
  return std::to_string(time / kTenthsOfHour) + (minutes < 10 ? ":0" : ":") +
         std::to_string(minutes);
}

std::string ShiftsText(const Shifts& shifts) {
  std::string text;
  for (std::size_t at = 0; at < shifts.size(); ++at) {
    if (at > 0) text += at + 1 == shifts.size() ? " and " : ", ";
    text += ClockText(shifts[at].from) + '-' + ClockText(shifts[at].to);
  }
  return text;
}

}  // namespace

Tenths DayOf(const DateTime& moment) {
  const sys_days date{std::chrono::year{moment.year} / moment.month / moment.day};
  return (date - kFirstMonday).count();
}

Tenths ClockOf(const DateTime& moment) {
  return DayOf(moment) * kTenthsOfCalendarDay + moment.seconds / kSecondsOfTenth;
}

DateTime MomentOf(Tenths clock) {
  const auto [day, time] = Split(clock, kTenthsOfCalendarDay);
  if (day > kLastDay || day < kEarliestDay) {
    throw RunTimeError(kOverflow, "The plan reaches beyond the year 9999.");
  }
  const year_month_day date{kFirstMonday + days{day}};
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int>(static_cast<unsigned>(date.month())),
          .day = static_cast<int>(static_cast<unsigned>(date.day())),
          .seconds = static_cast<int>(time * kSecondsOfTenth)};
}

const Week& WorkingTime::StandardWeek() {
  static const Week week = [] {
    const Shifts day = {{8 * kTenthsOfHour, 12 * kTenthsOfHour},
                        {13 * kTenthsOfHour, 17 * kTenthsOfHour}};
    return Week{day, day, day, day, day, {}, {}};
  }();
  return week;
}

const WorkingTime& WorkingTime::Standard() {
  static const WorkingTime standard(StandardWeek());
  return standard;
}

WorkingTime::WorkingTime(Week week, const std::vector<DayException>& exceptions)
    : week_(std::move(week)), segments_{{.first = kEarliestDay}} {
  for (std::size_t day = 0; day < week_.size(); ++day) {
    weekWork_[day + 1] = weekWork_[day] + LengthOf(week_[day]);
  }
  for (const DayException& exception : exceptions) {
    exceptions_.push_back(exception.shifts);
    exceptionWork_.push_back(LengthOf(exception.shifts));
    AddSegments(exception, exceptions_.size() - 1);
  }
  CountWork();
}

// The days of the exception that still belong to the week.
void WorkingTime::AddSegments(const DayException& exception, std::size_t index) {
  std::vector<Segment> cut;
  for (std::size_t i = 0; i < segments_.size(); ++i) {
    const Segment segment = segments_[i];
    const Tenths end = i + 1 < segments_.size() ? segments_[i + 1].first : kLastDay * 2;
    const Tenths from = std::max(exception.first, segment.first);
    const Tenths behind = std::min(exception.last + 1, end);
    if (segment.exception != kWeek || from >= behind) {
      cut.push_back(segment);
      continue;
    }
    if (from > segment.first) cut.push_back(segment);
    cut.push_back({.first = from, .exception = index});
    if (behind < end) cut.push_back({.first = behind});
  }
  segments_ = std::move(cut);
}

void WorkingTime::CountWork() {
  for (std::size_t i = 1; i < segments_.size(); ++i) {
    segments_[i].worked =
        segments_[i - 1].worked + WorkBetween(segments_[i - 1], segments_[i].first);
  }
}

Tenths WorkingTime::WeeksWork(Tenths day) const {
  const Tenths counted = day - kEarliestDay;
  return counted / kDaysOfWeek * weekWork_.back() +
         weekWork_[static_cast<std::size_t>(counted % kDaysOfWeek)];
}

// From the segment's beginning to the beginning of a day in it or right behind.
Tenths WorkingTime::WorkBetween(const Segment& segment, Tenths day) const {
  return segment.exception == kWeek ? WeeksWork(day) - WeeksWork(segment.first)
                                    : (day - segment.first) * exceptionWork_[segment.exception];
}

const Shifts& WorkingTime::ShiftsOf(const Segment& segment, Tenths day) const {
  return segment.exception == kWeek
             ? week_[static_cast<std::size_t>((day - kEarliestDay) % kDaysOfWeek)]
             : exceptions_[segment.exception];
}

Tenths WorkingTime::WorkedBy(Tenths clock) const {
  const auto [day, time] = Split(clock, kTenthsOfCalendarDay);
  if (day > kLastDay || day < kEarliestDay) {
    throw RunTimeError(kOverflow, "The plan reaches beyond the year 9999.");
  }
  const auto behind = std::ranges::upper_bound(segments_, day, {}, &Segment::first);
  const Segment& segment = *(behind - 1);
  return segment.worked + WorkBetween(segment, day) + WorkedWithin(ShiftsOf(segment, day), time);
}

Tenths WorkingTime::StartAt(Tenths worked) const {
  const auto behind =
      std::ranges::upper_bound(segments_, std::max<Tenths>(worked, 0), {}, &Segment::worked);
  const Segment& segment = *(behind - 1);
  Tenths rest = worked - segment.worked;
  Tenths day = segment.first;
  if (segment.exception == kWeek) {
    const auto [weeks, ofWeek] = Split(rest + WeeksWork(segment.first), weekWork_.back());
    const auto next = std::upper_bound(weekWork_.begin(), weekWork_.end() - 1, ofWeek);
    const auto weekday = next - weekWork_.begin() - 1;
    day = kEarliestDay + weeks * kDaysOfWeek + weekday;
    rest = ofWeek - weekWork_[static_cast<std::size_t>(weekday)];
  } else {
    const auto [whole, ofDay] = Split(rest, exceptionWork_[segment.exception]);
    day += whole;
    rest = ofDay;
  }
  return day * kTenthsOfCalendarDay + TimeBehind(ShiftsOf(segment, day), rest);
}

std::string WorkingTime::Text() const {
  constexpr std::array kDays{"Monday", "Tuesday",  "Wednesday", "Thursday",
                             "Friday", "Saturday", "Sunday"};
  std::string text;
  for (std::size_t day = 0; day < week_.size();) {
    const std::size_t first = day;
    while (day < week_.size() && week_[day] == week_[first]) ++day;
    if (week_[first].empty()) continue;
    text += (text.empty() ? "" : "; ") + std::string(kDays[first]);
    if (day - first > 1) text += (day - first > 2 ? " to " : " and ") + std::string(kDays[day - 1]);
    text += ' ' + ShiftsText(week_[first]);
  }
  const std::size_t count = exceptions_.size();
  if (count > 0) text += ", with " + Counted(count, "exception");
  return text;
}

bool WorkingTime::operator==(const WorkingTime& other) const {
  const auto same = [&](const Segment& one, const Segment& two) {
    return one.first == two.first && one.worked == two.worked &&
           (one.exception == kWeek) == (two.exception == kWeek) &&
           (one.exception == kWeek ||
            exceptions_[one.exception] == other.exceptions_[two.exception]);
  };
  return week_ == other.week_ && std::ranges::equal(segments_, other.segments_, same);
}

}  // namespace merivane::schedule
