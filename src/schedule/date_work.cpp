#include <algorithm>
#include <limits>
#include <vector>

#include "link_order.h"
#include "schedule/schedule.h"

namespace merivane::schedule {

namespace {

void Lower(Tenths& limit, Tenths to) { limit = std::min(limit, to); }

bool HasOwnDates(const PlanTask& task) { return task.rules.fixedStart && task.rules.fixedFinish; }

// The two passes over a plan: early moments from the front, late ones from the end.
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

DateWork::DateWork(const Plan& plan, const LinkOrder& order)
    : plan_(plan),
      order_(order),
      time_(plan.times.front()),
      start_(time_.NextStart(ClockOf(plan.start))),
      finish_(start_),
      early_(plan.tasks.size()) {}

Tenths DateWork::FinishFrom(Tenths start, const PlanTask& task) const {
  if (task.duration == 0) return start;
  return task.IsElapsed() ? start + task.duration : TimeOf(task).After(start, task.duration);
}

Tenths DateWork::StartFor(Tenths finish, const PlanTask& task) const {
  if (task.duration == 0) return finish;
  return task.IsElapsed() ? finish - task.duration : TimeOf(task).Before(finish, task.duration);
}

Tenths DateWork::LagOf(const PlanLink& link) const {
  if (!link.lag.IsPercentage()) return link.lag.amount;
  const PlanTask& task = plan_.tasks[link.predecessor];
  const Early& dates = early_[link.predecessor];
  const Tenths length =
      task.summary ? time_.WorkedBy(dates.finish) - time_.WorkedBy(dates.start) : task.duration;
  return length * link.lag.amount / 100;
}

// Where the predecessor and the lag bring a link's other end.
Tenths DateWork::Behind(const PlanLink& link) const {
  const Early& dates = early_[link.predecessor];
  const bool fromFinish = LeavesFinish(link.kind);
  const Tenths from = fromFinish ? dates.finish : dates.start;
  const Tenths lag = LagOf(link);
  if (lag == 0) return from;
  if (link.lag.IsElapsed()) return from + lag;
  return fromFinish || ReachesFinish(link.kind) ? time_.After(from, lag) : time_.Before(from, -lag);
}

Tenths DateWork::Before(Tenths limit, const PlanLink& link) const {
  const Tenths lag = LagOf(link);
  if (lag == 0) return limit;
  return link.lag.IsElapsed() ? limit - lag : time_.Before(limit, lag);
}

// A task that takes no working time of its own stays where it is put while work goes on or ends
// there.
Tenths DateWork::PointAt(const PlanTask& task, Tenths bound) const {
  const WorkingTime& time = TimeOf(task);
  return time.LastFinish(bound) == bound ? bound : time.NextStart(bound);
}

Tenths DateWork::StartByRules(const PlanTask& task, Tenths bound) const {
  const TaskRules& rules = task.rules;
  if (rules.levelingDelay.amount > 0) {
    const Tenths delay = rules.levelingDelay.amount;
    const WorkingTime& time = TimeOf(task);
    bound = rules.levelingDelay.IsElapsed() ? time.NextStart(bound) + delay
                                            : time.Before(bound, -delay);
  }
  if (!rules.constraintDate) return bound;
  const Tenths date = *rules.constraintDate;
  const bool first = plan_.settings.honorConstraints;
  switch (rules.constraint) {
    case Constraint::kMustStartOn:
      return first ? date : std::max(bound, date);
    case Constraint::kMustFinishOn:
      return first ? StartFor(date, task) : std::max(bound, StartFor(date, task));
    case Constraint::kStartNoEarlier:
      return std::max(bound, date);
    case Constraint::kFinishNoEarlier:
      return std::max(bound, StartFor(date, task));
    case Constraint::kStartNoLater:
      return first ? std::min(bound, date) : bound;
    case Constraint::kFinishNoLater:
      return first ? std::min(bound, StartFor(date, task)) : bound;
    case Constraint::kAsSoonAsPossible:
    case Constraint::kAsLateAsPossible:
      break;
  }
  return bound;
}

void DateWork::PlaceLeaf(std::size_t index, Tenths bound) {
  const PlanTask& task = plan_.tasks[index];
  const TaskRules& rules = task.rules;
  Early& dates = early_[index];
  if (HasOwnDates(task)) {
    dates.start = *rules.fixedStart;
    dates.finish = std::max(dates.start, *rules.fixedFinish);
    return;
  }
  if (rules.actualStart) {
    dates.start = *rules.actualStart;
  } else {
    bound = StartByRules(task, bound);
    const bool latest = latePass_ && rules.constraint == Constraint::kAsLateAsPossible;
    if (latest) bound = std::max(bound, late_[index].start);
    dates.start = task.duration == 0 || task.IsElapsed() ? PointAt(task, bound)
                                                         : TimeOf(task).NextStart(bound);
  }
  dates.finish = FinishFrom(dates.start, task);
  if (rules.actualFinish) {
    dates.finish = std::max(dates.start, *rules.actualFinish);
  } else if (rules.actualStart && rules.resume && *rules.resume > dates.start) {
    dates.finish = task.IsElapsed() ? *rules.resume + rules.remaining
                                    : TimeOf(task).After(*rules.resume, rules.remaining);
  }
}

// A finish that a link puts on the morning after stays there.
void DateWork::KeepReachedFinish(std::size_t index, Tenths reached) {
  const PlanTask& task = plan_.tasks[index];
  Tenths& finish = early_[index].finish;
  if (reached <= finish || task.duration == 0 || task.rules.actualFinish || HasOwnDates(task)) {
    return;
  }
  if (TimeOf(task).WorkedBy(reached) == TimeOf(task).WorkedBy(finish)) finish = reached;
}

void DateWork::Begin(std::size_t task) {
  const PlanTask& planned = plan_.tasks[task];
  Early& dates = early_[task];
  dates.begin = start_;
  Tenths reached = start_;
  for (const Wait& wait : order_.WaitsOf({task, Part::kBegin})) {
    Tenths bound = wait.link == nullptr ? early_[wait.on.task].begin : Behind(*wait.link);
    if (wait.link != nullptr && ReachesFinish(wait.link->kind)) {
      reached = std::max(reached, bound);
      bound = StartFor(bound, planned);
    }
    dates.begin = std::max(dates.begin, bound);
  }
  if (!planned.summary) {
    PlaceLeaf(task, dates.begin);
    KeepReachedFinish(task, reached);
  } else {
    dates.begin = std::max(dates.begin, StartByRules(planned, dates.begin));
  }
}

void DateWork::FirstStart(std::size_t task) {
  Tenths first = kOpen;
  for (const Wait& wait : order_.WaitsOf({task, Part::kFirstStart})) {
    first = std::min(first, early_[wait.on.task].start);
  }
  early_[task].start = first == kOpen ? early_[task].begin : first;
}

void DateWork::End(std::size_t task) {
  Early& dates = early_[task];
  Tenths held = dates.start;
  dates.finish = dates.start;
  for (const Wait& wait : order_.WaitsOf({task, Part::kEnd})) {
    if (wait.link != nullptr) {
      held = std::max(held, Behind(*wait.link));
    } else {
      dates.finish = std::max(dates.finish, early_[wait.on.task].finish);
    }
  }
  dates.stretched = held > dates.finish;
  dates.finish = std::max(dates.finish, held);
}

void DateWork::Forward() {
  for (const Piece& piece : order_.Pieces()) {
    if (piece.part == Part::kBegin) Begin(piece.task);
    if (piece.part == Part::kFirstStart) FirstStart(piece.task);
    if (piece.part == Part::kEnd) End(piece.task);
  }
  finish_ = std::max(start_, plan_.settings.finish.value_or(start_));
  for (std::size_t task = 0; task < early_.size(); ++task) {
    if (!plan_.tasks[task].rules.inactive) finish_ = std::max(finish_, early_[task].finish);
  }
}

void DateWork::LimitPredecessor(Tenths limit, const PlanLink& link) {
  Late& late = late_[link.predecessor];
  Lower(LeavesFinish(link.kind) ? late.finish : late.start, Before(limit, link));
}

void DateWork::LimitBegin(std::size_t task, Tenths start, Tenths finish) {
  if (plan_.tasks[task].rules.inactive) return;
  for (const Wait& wait : order_.WaitsOf({task, Part::kBegin})) {
    if (wait.link == nullptr) {
      Lower(late_[wait.on.task].begin, start);
    } else {
      LimitPredecessor(ReachesFinish(wait.link->kind) ? finish : start, *wait.link);
    }
  }
}

void DateWork::LimitByRules(const PlanTask& task, Late& late) const {
  const TaskRules& rules = task.rules;
  if (rules.deadline) Lower(late.finish, *rules.deadline);
  if (!rules.constraintDate) return;
  const Tenths date = *rules.constraintDate;
  if (rules.constraint == Constraint::kMustStartOn ||
      rules.constraint == Constraint::kStartNoLater) {
    Lower(late.finish, FinishFrom(date, task));
  }
  if (rules.constraint == Constraint::kMustFinishOn ||
      rules.constraint == Constraint::kFinishNoLater) {
    Lower(late.finish, date);
  }
}

void DateWork::LimitLeaf(std::size_t task) {
  const PlanTask& planned = plan_.tasks[task];
  const Early& early = early_[task];
  Late& late = late_[task];
  Lower(late.finish, finish_);
  if (planned.rules.actualFinish || HasOwnDates(planned)) {
    late.start = late.begin = early.start;
    late.finish = early.finish;
  } else {
    LimitByRules(planned, late);
    if (late.start != kOpen) Lower(late.finish, FinishFrom(late.start, planned));
    const WorkingTime& time = TimeOf(planned);
    if (time.WorkedBy(late.finish) == time.WorkedBy(early.finish)) {
      late.finish = early.finish;
    } else if (!planned.IsElapsed()) {
      late.finish = time.LastFinish(late.finish);
    }
    late.start = late.begin =
        late.finish == early.finish ? early.start : StartFor(late.finish, planned);
  }
  LimitBegin(task, late.start, late.finish);
}

// Only the tasks that make the summary's start can move it.
void DateWork::LimitFirstStart(std::size_t task) {
  for (const Wait& wait : order_.WaitsOf({task, Part::kFirstStart})) {
    if (early_[wait.on.task].start != early_[task].start) continue;
    Lower(late_[wait.on.task].start, late_[task].start);
  }
}

void DateWork::LimitEnd(std::size_t task) {
  Late& late = late_[task];
  Lower(late.finish, finish_);
  if (plan_.tasks[task].rules.deadline) Lower(late.finish, *plan_.tasks[task].rules.deadline);
  for (const Wait& wait : order_.WaitsOf({task, Part::kEnd})) {
    if (wait.link != nullptr) {
      LimitPredecessor(late.finish, *wait.link);
    } else {
      Lower(late_[wait.on.task].finish, late.finish);
    }
  }
}

void DateWork::Backward() {
  late_.assign(early_.size(), {});
  const std::vector<Piece>& pieces = order_.Pieces();
  for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) {
    const std::size_t task = piece->task;
    if (piece->part == Part::kFirstStart) {
      LimitFirstStart(task);
    } else if (piece->part == Part::kEnd) {
      LimitEnd(task);
    } else if (plan_.tasks[task].summary) {
      Late& late = late_[task];
      if (late.begin == kOpen) late.begin = early_[task].begin;
      LimitBegin(task, late.begin, late.begin);
    } else {
      LimitLeaf(task);
    }
  }
}

bool DateWork::WaitsAsLongAsPossible() const {
  return std::ranges::any_of(plan_.tasks, [](const PlanTask& task) {
    return task.rules.constraint == Constraint::kAsLateAsPossible && !task.rules.actualStart;
  });
}

void DateWork::Run() {
  Forward();
  Backward();
  if (!WaitsAsLongAsPossible()) return;
  latePass_ = true;
  Forward();
  Backward();
}

// The late finish of a summary is the last one of its tasks, which stand behind it.
Schedule DateWork::Result() const {
  Schedule result;
  result.tasks.resize(early_.size());
  constexpr Tenths kNone = std::numeric_limits<Tenths>::min();
  result.moments.resize(early_.size(), {.lateFinish = kNone});
  const Tenths origin = time_.WorkedBy(start_);
  const auto worked = [&](Tenths clock) { return time_.WorkedBy(clock) - origin; };
  for (std::size_t task = early_.size(); task-- > 0;) {
    const PlanTask& planned = plan_.tasks[task];
    const Early& early = early_[task];
    const Late& late = late_[task];
    TaskMoments& moments = result.moments[task];
    const bool spans = planned.summary && !early.stretched && moments.lateFinish != kNone;
    moments = {early.start, early.finish, late.begin, spans ? moments.lateFinish : late.finish};
    TaskDates& dates = result.tasks[task];
    dates = {worked(early.start), worked(early.finish), worked(moments.lateStart),
             worked(moments.lateFinish)};
    dates.totalSlack =
        std::min(dates.lateStart - dates.earlyStart, dates.lateFinish - dates.earlyFinish);
    dates.critical = !planned.rules.inactive && !planned.rules.actualFinish &&
                     dates.totalSlack <= plan_.settings.criticalSlack;
    if (planned.parent && !planned.rules.inactive) {
      Tenths& last = result.moments[*planned.parent].lateFinish;
      last = std::max(last, moments.lateFinish);
    }
  }
  result.whole = {start_, finish_, start_, finish_};
  result.finish = worked(finish_);
  return result;
}

}  // namespace

Schedule MakeSchedule(const Plan& plan) {
  const LinkOrder order(plan);
  DateWork work(plan, order);
  work.Run();
  return work.Result();
}

}  // namespace merivane::schedule
