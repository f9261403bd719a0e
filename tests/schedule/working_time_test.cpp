#include "schedule/working_time.h"

#include <gtest/gtest.h>

#include "runtime/run_time_error.h"
#include "schedule/plan.h"

namespace merivane::test {

using namespace schedule;

namespace {

TEST(WorkingTime, DatesSkipNightsAndWeekends) {
  const WorkingTime& time = WorkingTime::Standard();
  const auto shown = [](Tenths clock) { return FormatDate(MomentOf(clock)); };
  const Tenths friday = ClockOf({2026, 1, 9, 8 * 3600});
  EXPECT_EQ(shown(time.NextStart(ClockOf({2026, 1, 9, 0}))), "1/9/2026 8:00:00 AM");
  EXPECT_EQ(shown(time.After(friday, 2400)), "1/9/2026 12:00:00 PM");
  EXPECT_EQ(shown(time.NextStart(time.After(friday, 2400))), "1/9/2026 1:00:00 PM");
  EXPECT_EQ(shown(time.After(friday, 4800)), "1/9/2026 5:00:00 PM");
  EXPECT_EQ(shown(time.NextStart(time.After(friday, 4800))), "1/12/2026 8:00:00 AM");
  EXPECT_EQ(shown(time.After(friday, 4800 * 200)), "10/15/2026 5:00:00 PM");
  EXPECT_EQ(shown(time.Before(friday, 2400)), "1/8/2026 1:00:00 PM");
  EXPECT_EQ(shown(time.Before(ClockOf({1899, 12, 31, 0}), -48)), "1/1/1900 8:04:48 AM");
  EXPECT_THROW(MomentOf(time.After(friday, 4800LL * 366 * 8000)), RunTimeError);
}

TEST(WorkingTime, TellsItselfInWords) {
  Week week = WorkingTime::StandardWeek();
  EXPECT_EQ(WorkingTime(week).Text(), "Monday to Friday 8:00-12:00 and 13:00-17:00");
  const Shifts night = {{0, 90 * kTenthsOfMinute}, {20 * 600, kTenthsOfCalendarDay}};
  week[2] = {};
  week[5] = week[6] = night;
  EXPECT_EQ(WorkingTime(week, {{.first = 20000, .last = 20001, .shifts = {}}}).Text(),
            "Monday and Tuesday 8:00-12:00 and 13:00-17:00; Thursday and Friday 8:00-12:00 and "
            "13:00-17:00; Saturday and Sunday 0:00-1:30 and 20:00-24:00, with 1 exception");
}

// Against a count day by day, through exceptions that lie one in another.
TEST(WorkingTime, ExceptionsTakeTheirDays) {
  const Tenths first = DayOf({2026, 1, 7, 0});
  const Shifts morning = {{6 * 600, 10 * 600}};
  const WorkingTime time(WorkingTime::StandardWeek(), {{first, first, {}},
                                                       {first - 1, first + 1, morning},
                                                       {first + 3, first + 4, morning},
                                                       {first + 12, first + 40, {}}});
  const Tenths hours[] = {8, 4, 0, 4, 8, 4, 4, 8, 8, 8, 8, 8, 0, 0};
  Tenths clock = (first - 2) * kTenthsOfCalendarDay;
  Tenths worked = time.WorkedBy(clock);
  for (const Tenths ofDay : hours) {
    EXPECT_EQ(time.WorkedBy(clock), worked) << FormatDate(MomentOf(clock));
    for (const Tenths offset : {1, 1200, 2399}) {
      if (offset >= ofDay * 600) continue;
      EXPECT_EQ(time.WorkedBy(time.StartAt(worked + offset)), worked + offset);
      EXPECT_EQ(time.StartAt(worked + offset) / kTenthsOfCalendarDay, clock / kTenthsOfCalendarDay);
    }
    worked += ofDay * 600;
    clock += kTenthsOfCalendarDay;
  }
  EXPECT_EQ(FormatDate(MomentOf(time.StartAt(worked))), "2/17/2026 8:00:00 AM");
}

}  // namespace
}  // namespace merivane::test
