#include "schedule/calendars.h"

#include <algorithm>
#include <set>

#include "runtime/text.h"
#include "schedule/project_rows.h"
#include "store/interim_db.h"

namespace merivane::schedule {

namespace {

constexpr std::int64_t kException = 0;  // of CD_DAY_OR_EXCEPTION; 1 to 7 are days from Sunday
constexpr std::int64_t kDaysOfWeek = 7;
constexpr std::int64_t kAsInBase = 2;  // of CD_WORKING

enum Column { kCalendar, kDay, kWorking, kFromDate, kToDate, kFirstTime };

std::string NameOf(const PlanCalendar& calendar) {
  return calendar.name.empty() ? "of number " + std::to_string(calendar.uid)
                               : "'" + calendar.name + "'";
}

std::optional<Tenths> TimeAt(ProjectRows& rows, std::size_t column) {
  const std::string text = rows.TextAt(column);
  if (text.empty()) return std::nullopt;
  auto moment = ParseDate(text);
  if (!moment) moment = ParseDate("1/1/2000 " + text);
  if (!moment) return std::nullopt;
  return ClockOf(*moment) - DayOf(*moment) * kTenthsOfCalendarDay;
}

// Midnight as an end is the next one. False where some of the hours can't be; they are left out.
bool ReadShifts(ProjectRows& rows, Shifts& shifts) {
  constexpr std::size_t kMost = 5;
  bool sound = true;
  for (std::size_t i = 0; i < kMost; ++i) {
    const auto from = TimeAt(rows, kFirstTime + 2 * i);
    auto to = TimeAt(rows, kFirstTime + 2 * i + 1);
    if (!from && !to) continue;
    if (to && *to == 0) to = kTenthsOfCalendarDay;
    if (!from || !to || *to <= *from) {
      sound = false;
    } else {
      shifts.push_back({*from, *to});
    }
  }
  std::ranges::sort(shifts, {}, &Shift::from);
  const auto overlaps = [](const Shift& one, const Shift& next) { return next.from < one.to; };
  for (auto at = std::ranges::adjacent_find(shifts, overlaps); at != shifts.end();
       at = std::ranges::adjacent_find(shifts, overlaps)) {
    shifts.erase(at + 1);
    sound = false;
  }
  return sound;
}

// The days that none of the exceptions read before has; false where that isn't all.
bool AddException(std::vector<DayException>& exceptions, DayException added) {
  const auto overlapping = std::ranges::find_if(exceptions, [&](const DayException& one) {
    return one.first <= added.last && added.first <= one.last;
  });
  if (overlapping != exceptions.end()) return false;
  exceptions.push_back(std::move(added));
  return true;
}

}  // namespace

PlanCalendars::PlanCalendars(Connection& connection, std::int32_t project,
                             std::vector<std::string>& warnings) {
  if (TableExists(&connection, "MSP_CALENDARS") == 0) return;
  ReadList(connection, project);
  if (calendars_.empty()) return;
  if (TableExists(&connection, "MSP_CALENDAR_DATA") != 0) ReadDays(connection, project, warnings);
  CutCircles(warnings);
  for (const PlanCalendar& calendar : calendars_) {
    const Week week = WeekOf(calendar);
    if (std::ranges::any_of(week, [](const Shifts& day) { return !day.empty(); })) continue;
    warnings.push_back("The calendar " + NameOf(calendar) +
                       " has no working time; what follows it is counted on the standard one.");
  }
}

void PlanCalendars::ReadList(Connection& connection, std::int32_t project) {
  enum ListColumn { kUid, kBase, kIsBase, kName };
  ProjectRows rows(connection, {.name = "MSP_CALENDARS"}, project,
                   {"CAL_UID", "CAL_BASE_UID", "CAL_IS_BASE_CAL", "CAL_NAME"});
  std::set<std::int64_t> seen;
  for (; !rows.AtEnd(); rows.Next()) {
    PlanCalendar calendar;
    calendar.uid = rows.IntegerAt(kUid, 0);
    if (calendar.uid <= 0 || !seen.insert(calendar.uid).second) continue;
    calendar.isBase = rows.IntegerAt(kIsBase, 0) != 0;
    calendar.base = calendar.isBase ? kNoCalendar : rows.IntegerAt(kBase, kNoCalendar);
    calendar.name = rows.TextAt(kName);
    if (calendar.isBase && calendar.name.empty()) {
      calendar.name = "Calendar " + std::to_string(calendar.uid);
    }
    calendars_.push_back(std::move(calendar));
  }
}

void PlanCalendars::ReadDays(Connection& connection, std::int32_t project,
                             std::vector<std::string>& warnings) {
  ProjectRows rows(connection, {.name = "MSP_CALENDAR_DATA"}, project,
                   {"CAL_UID", "CD_DAY_OR_EXCEPTION", "CD_WORKING", "CD_FROM_DATE", "CD_TO_DATE",
                    "CD_FROM_TIME1", "CD_TO_TIME1", "CD_FROM_TIME2", "CD_TO_TIME2", "CD_FROM_TIME3",
                    "CD_TO_TIME3", "CD_FROM_TIME4", "CD_TO_TIME4", "CD_FROM_TIME5", "CD_TO_TIME5"});
  for (; !rows.AtEnd(); rows.Next()) {
    const auto calendar =
        std::ranges::find(calendars_, rows.IntegerAt(kCalendar, 0), &PlanCalendar::uid);
    const std::int64_t day = rows.IntegerAt(kDay, -1);
    const std::int64_t working = rows.IntegerAt(kWorking, 0);
    if (calendar == calendars_.end() || day < kException || day > kDaysOfWeek) continue;
    if (working == kAsInBase) continue;
    Shifts shifts;
    if (working != 0 && !ReadShifts(rows, shifts)) {
      warnings.push_back("The calendar " + NameOf(*calendar) +
                         " has hours that overlap or end before they begin; they are left out.");
    }
    if (day != kException) {
      calendar->week[static_cast<std::size_t>((day + 5) % kDaysOfWeek)] = std::move(shifts);
      continue;
    }
    const auto from = ParseDate(rows.TextAt(kFromDate));
    const auto to = ParseDate(rows.TextAt(kToDate));
    if (!from) {
      warnings.push_back("The calendar " + NameOf(*calendar) +
                         " has an exception without a date; it is left out.");
      continue;
    }
    DayException exception{DayOf(*from), DayOf(to.value_or(*from)), std::move(shifts)};
    exception.last = std::max(exception.first, exception.last);
    if (!AddException(calendar->exceptions, std::move(exception))) {
      warnings.push_back("The calendar " + NameOf(*calendar) +
                         " has exceptions that overlap; of the one from " + FormatDate(*from) +
                         " on nothing is taken.");
    }
  }
  for (PlanCalendar& calendar : calendars_) {
    std::ranges::sort(calendar.exceptions, {}, &DayException::first);
  }
}

void PlanCalendars::CutCircles(std::vector<std::string>& warnings) {
  for (PlanCalendar& calendar : calendars_) {
    std::set<std::int64_t> passed = {calendar.uid};
    for (const PlanCalendar* at = Find(calendar.base); at != nullptr; at = Find(at->base)) {
      if (passed.insert(at->uid).second) continue;
      warnings.push_back("The calendar " + NameOf(calendar) +
                         " is based on itself; that is left out.");
      calendar.base = kNoCalendar;
      break;
    }
  }
}

const PlanCalendar* PlanCalendars::Find(std::int64_t uid) const {
  const auto found = std::ranges::find(calendars_, uid, &PlanCalendar::uid);
  return found == calendars_.end() ? nullptr : &*found;
}

const PlanCalendar* PlanCalendars::FindBase(const std::string& name) const {
  const auto found = std::ranges::find_if(calendars_, [&](const PlanCalendar& calendar) {
    return calendar.isBase && EqualNoCase(calendar.name, name);
  });
  return found == calendars_.end() ? nullptr : &*found;
}

Week PlanCalendars::WeekOf(const PlanCalendar& calendar) const {
  const PlanCalendar* base = Find(calendar.base);
  const bool stands = base == nullptr;
  Week week = stands ? Week() : WeekOf(*base);
  for (std::size_t day = 0; day < week.size(); ++day) {
    if (calendar.week[day]) {
      week[day] = *calendar.week[day];
    } else if (stands) {
      week[day] = WorkingTime::StandardWeek()[day];
    }
  }
  return week;
}

WorkingTime PlanCalendars::TimeOf(std::int64_t uid) const {
  const PlanCalendar* calendar = Find(uid);
  if (calendar == nullptr) return WorkingTime::Standard();
  Week week = WeekOf(*calendar);
  if (std::ranges::all_of(week, &Shifts::empty)) return WorkingTime::Standard();
  std::vector<DayException> exceptions;  // a calendar's own go before those of its base
  for (; calendar != nullptr; calendar = Find(calendar->base)) {
    exceptions.insert(exceptions.end(), calendar->exceptions.begin(), calendar->exceptions.end());
  }
  return WorkingTime(std::move(week), exceptions);
}

}  // namespace merivane::schedule
