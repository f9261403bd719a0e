// Calendars of a plan as the tables MSP_CALENDARS and MSP_CALENDAR_DATA keep them.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "schedule/working_time.h"
#include "store/connection.h"

namespace merivane::schedule {

using namespace store;

inline constexpr std::int64_t kNoCalendar = -1;

struct PlanCalendar {
  std::int64_t uid = 0;
  std::int64_t base = kNoCalendar;            // UID of the calendar that it differs from
  bool isBase = true;                         // false: of one resource
  std::string name;                           // never empty of a base calendar
  std::array<std::optional<Shifts>, 7> week;  // Monday first; none: as in the base, or the standard
  std::vector<DayException> exceptions;       // in order, without overlap
};

class PlanCalendars {
 public:
  PlanCalendars() = default;
  // Those of a project; none where the database has no such tables. What can't be is left out and
  // told in `warnings`, a sentence each: hours that end before they begin or overlap, exceptions
  // without a beginning or that overlap, bases in a circle. A calendar without working time is told
  // too, and the standard one counts in its place.
  PlanCalendars(Connection& connection, std::int32_t project, std::vector<std::string>& warnings);

  const std::vector<PlanCalendar>& List() const { return calendars_; }
  const PlanCalendar* Find(std::int64_t uid) const;
  const PlanCalendar* FindBase(const std::string& name) const;

  // What a calendar and those that it is based on come to; the standard one for a calendar that
  // isn't there or never works.
  WorkingTime TimeOf(std::int64_t uid) const;

 private:
  void ReadList(Connection& connection, std::int32_t project);
  void ReadDays(Connection& connection, std::int32_t project, std::vector<std::string>& warnings);
  void CutCircles(std::vector<std::string>& warnings);
  Week WeekOf(const PlanCalendar& calendar) const;

  std::vector<PlanCalendar> calendars_;
};

}  // namespace merivane::schedule
