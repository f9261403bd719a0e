#include "schedule/schedule.h"

#include "date_work.h"

namespace merivane::schedule {

Schedule MakeSchedule(const Plan& plan) {
  const LinkOrder order(plan);
  DateWork work(plan, order);
  work.Run();
  return work.Result();
}

}  // namespace merivane::schedule
