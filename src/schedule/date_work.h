// The two passes over a plan: early moments from the front, late ones from the end.
#pragma once

#include <limits>
#include <vector>

#include "link_order.h"
#include "schedule/schedule.h"

namespace merivane::schedule {

class DateWork {
 public:
  // Both must stay in place.
  DateWork(const Plan& plan, const LinkOrder& order);

  void Run();
  Schedule Result() const;

 private:
  static constexpr Tenths kOpen = std::numeric_limits<Tenths>::max();  // no limit yet

  struct Early {
    Tenths begin = 0;  // of a summary: what holds its tasks back
    Tenths start = 0;
    Tenths finish = 0;
    bool stretched = false;  // of a summary: a link holds its finish back beyond its tasks
  };
  struct Late {  // of a summary: `begin` is the latest start that holds up none of its tasks
    Tenths begin = kOpen;
    Tenths start = kOpen;
    Tenths finish = kOpen;
  };

  const WorkingTime& TimeOf(const PlanTask& task) const { return plan_.times[task.calendar]; }
  Tenths FinishFrom(Tenths start, const PlanTask& task) const;
  Tenths StartFor(Tenths finish, const PlanTask& task) const;
  Tenths LagOf(const PlanLink& link) const;
  Tenths Behind(const PlanLink& link) const;
  Tenths Before(Tenths limit, const PlanLink& link) const;

  void Forward();
  void Begin(std::size_t task);
  void PlaceLeaf(std::size_t task, Tenths bound);
  Tenths StartByRules(const PlanTask& task, Tenths bound) const;
  Tenths PointAt(const PlanTask& task, Tenths bound) const;
  void KeepReachedFinish(std::size_t index, Tenths reached);
  void FirstStart(std::size_t task);
  void End(std::size_t task);

  void Backward();
  void LimitLeaf(std::size_t task);
  void LimitByRules(const PlanTask& task, Late& late) const;
  void LimitBegin(std::size_t task, Tenths start, Tenths finish);
  void LimitFirstStart(std::size_t task);
  void LimitEnd(std::size_t task);
  void LimitPredecessor(Tenths limit, const PlanLink& link);

  bool WaitsAsLongAsPossible() const;

  const Plan& plan_;
  const LinkOrder& order_;
  const WorkingTime& time_;  // the project's
  Tenths start_;
  Tenths finish_;
  std::vector<Early> early_;
  std::vector<Late> late_;
  bool latePass_ = false;  // the late moments are known
};

}  // namespace merivane::schedule
