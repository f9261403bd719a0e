#include <algorithm>
#include <set>

#include "plan_parts.h"

namespace merivane::mspdi {

namespace {

using schedule::DayException;
using schedule::PlanCalendar;
using schedule::Shifts;

constexpr std::size_t kMostShifts = 5;  // of the schema
constexpr std::size_t kDaysOfWeek = 7;

// Of an exception in the list of weekdays, which the edition of 2003 reads.
constexpr std::int64_t kExceptionDay = 0;
constexpr std::int64_t kDaily = 1;  // of an exception's type

void WriteShifts(const Shifts& shifts, Element& day) {
  if (shifts.empty()) return;
  Element times = day.Child("WorkingTimes");
  for (std::size_t i = 0; i < std::min(shifts.size(), kMostShifts); ++i) {
    Element time = times.Child("WorkingTime");
    time.Time("FromTime", static_cast<int>(shifts[i].from * schedule::kSecondsOfTenth));
    time.Time("ToTime", static_cast<int>(shifts[i].to * schedule::kSecondsOfTenth));
  }
}

void WritePeriod(const DayException& exception, Element& element) {
  Element period = element.Child("TimePeriod");
  const schedule::Tenths day = schedule::kTenthsOfCalendarDay;
  period.Date("FromDate", schedule::MomentOf(exception.first * day));
  period.Date("ToDate", schedule::MomentOf((exception.last + 1) * day - schedule::kTenthsOfMinute));
}

void WriteWeekDay(std::int64_t dayType, const Shifts& shifts, const DayException* exception,
                  Element& week) {
  Element day = week.Child("WeekDay");
  day.Integer("DayType", dayType);
  day.Flag("DayWorking", !shifts.empty());
  if (exception != nullptr) WritePeriod(*exception, day);
  WriteShifts(shifts, day);
}

void WriteExceptions(const PlanCalendar& calendar, Element& element) {
  if (calendar.exceptions.empty()) return;
  Element list = element.Child("Exceptions");
  for (const DayException& exception : calendar.exceptions) {
    Element one = list.Child("Exception");
    one.Flag("EnteredByOccurrences", false);
    WritePeriod(exception, one);
    one.Integer("Occurrences", exception.last - exception.first + 1);
    one.Integer("Type", kDaily);
    one.Flag("DayWorking", !exception.shifts.empty());
    WriteShifts(exception.shifts, one);
  }
}

// Days count from Sunday, 1.
void WriteDays(const PlanCalendar& calendar, Element& element) {
  const bool any = std::ranges::any_of(calendar.week, [](const auto& day) { return !!day; });
  if (!any && calendar.exceptions.empty()) return;
  Element week = element.Child("WeekDays");
  for (std::size_t fromSunday = 0; fromSunday < kDaysOfWeek; ++fromSunday) {
    const auto& day = calendar.week[(fromSunday + kDaysOfWeek - 1) % kDaysOfWeek];
    if (day) WriteWeekDay(static_cast<std::int64_t>(fromSunday) + 1, *day, nullptr, week);
  }
  for (const DayException& exception : calendar.exceptions) {
    WriteWeekDay(kExceptionDay, exception.shifts, &exception, week);
  }
}

PlanCalendar StandardCalendar() {
  PlanCalendar calendar;
  calendar.uid = kOwnCalendar;
  calendar.name = "Standard";
  const schedule::Week& week = schedule::WorkingTime::StandardWeek();
  std::ranges::copy(week, calendar.week.begin());
  return calendar;
}

// Some editions refuse a calendar without a name, or with another's.
class CalendarNames {
 public:
  std::string Take(const PlanCalendar& calendar) {
    const std::string wanted =
        calendar.name.empty() ? "Calendar " + std::to_string(calendar.uid) : calendar.name;
    std::string name = wanted;
    for (int again = 2; !taken_.insert(name).second; ++again) {
      name = wanted + " (" + std::to_string(again) + ")";
    }
    return name;
  }

 private:
  std::set<std::string> taken_;
};

}  // namespace

void WriteCalendars(const PlanOnPaper& paper, Element& project) {
  std::vector<PlanCalendar> own;
  const auto* calendars = &paper.plan.calendars.List();
  if (calendars->empty()) {
    own.push_back(StandardCalendar());
    calendars = &own;
  }
  Element list = project.Child("Calendars");
  CalendarNames names;
  for (const PlanCalendar& calendar : *calendars) {
    Element element = list.Child("Calendar");
    element.Integer("UID", calendar.uid);
    element.Text("Name", names.Take(calendar), kLongestText);
    element.Flag("IsBaseCalendar", calendar.isBase);
    element.Integer("BaseCalendarUID", calendar.base);
    WriteDays(calendar, element);
    WriteExceptions(calendar, element);
  }
}

}  // namespace merivane::mspdi
