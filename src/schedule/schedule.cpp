#include "schedule/schedule.h"

#include <algorithm>
#include <limits>

#include "link_order.h"

namespace merivane::schedule {

namespace {

constexpr Tenths kOpen = std::numeric_limits<Tenths>::max();  // no limit yet

bool LeavesFinish(const PlanLink& link) {
  return link.kind == LinkKind::kFinishToStart || link.kind == LinkKind::kFinishToFinish;
}

bool ReachesFinish(const PlanLink& link) {
  return link.kind == LinkKind::kFinishToFinish || link.kind == LinkKind::kStartToFinish;
}

void Lower(Tenths& limit, Tenths to) { limit = std::min(limit, to); }

class DateWork {
 public:
  DateWork(const Plan& plan, const LinkOrder& order, const WorkingTime& calendar)
      : plan_(plan),
        order_(order),
        calendar_(calendar),
        early_(plan.tasks.size()),
        late_(plan.tasks.size()) {}

  void Forward();
  void Backward();
  std::vector<TaskDates> Dates() const;
  Tenths Finish() const { return finish_; }

 private:
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

  Tenths FinishFrom(Tenths start, const PlanTask& task) const;
  Tenths StartFor(Tenths finish, const PlanTask& task) const;
  Tenths LagOf(const PlanLink& link) const;
  Tenths Behind(const PlanLink& link) const;
  Tenths Before(Tenths limit, const PlanLink& link) const;

  void Begin(std::size_t task);
  void FirstStart(std::size_t task);
  void End(std::size_t task);

  void LimitLeaf(std::size_t task);
  void LimitBegin(std::size_t task, Tenths start, Tenths finish);
  void LimitFirstStart(std::size_t task);
  void LimitEnd(std::size_t task);
  void LimitPredecessor(Tenths limit, const PlanLink& link);

  const Plan& plan_;
  const LinkOrder& order_;
  const WorkingTime& calendar_;
  std::vector<Early> early_;
  std::vector<Late> late_;
  Tenths finish_ = 0;
};

Tenths DateWork::FinishFrom(Tenths start, const PlanTask& task) const {
  return task.IsElapsed() ? calendar_.AfterElapsed(start, task.duration, false)
                          : start + task.duration;
}

Tenths DateWork::StartFor(Tenths finish, const PlanTask& task) const {
  return task.IsElapsed() ? calendar_.BeforeElapsed(finish, task.duration) : finish - task.duration;
}

Tenths DateWork::LagOf(const PlanLink& link) const {
  if (!link.lag.IsPercentage()) return link.lag.amount;
  const PlanTask& task = plan_.tasks[link.predecessor];
  const Early& dates = early_[link.predecessor];
  return (task.summary ? dates.finish - dates.start : task.duration) * link.lag.amount / 100;
}

// Where the predecessor and the lag bring a link's other end.
Tenths DateWork::Behind(const PlanLink& link) const {
  const Early& dates = early_[link.predecessor];
  const bool fromFinish = LeavesFinish(link);
  const Tenths from = fromFinish ? dates.finish : dates.start;
  return link.lag.IsElapsed() ? calendar_.AfterElapsed(from, LagOf(link), fromFinish)
                              : from + LagOf(link);
}

Tenths DateWork::Before(Tenths limit, const PlanLink& link) const {
  return link.lag.IsElapsed() ? calendar_.BeforeElapsed(limit, LagOf(link)) : limit - LagOf(link);
}

void DateWork::Begin(std::size_t task) {
  const PlanTask& planned = plan_.tasks[task];
  Early& dates = early_[task];
  for (const Wait& wait : order_.WaitsOf({task, Part::kBegin})) {
    Tenths bound = wait.link == nullptr ? early_[wait.on.task].begin : Behind(*wait.link);
    if (wait.link != nullptr && ReachesFinish(*wait.link)) bound = StartFor(bound, planned);
    dates.begin = std::max(dates.begin, bound);
  }
  if (planned.summary) return;
  dates.start = dates.begin;
  dates.finish = FinishFrom(dates.begin, planned);
}

void DateWork::FirstStart(std::size_t task) {
  Tenths first = kOpen;
  for (const Wait& wait : order_.WaitsOf({task, Part::kFirstStart})) {
    first = std::min(first, early_[wait.on.task].start);
  }
  early_[task].start = first;
}

void DateWork::End(std::size_t task) {
  Early& dates = early_[task];
  Tenths held = 0;
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
  for (const Early& dates : early_) finish_ = std::max(finish_, dates.finish);
}

void DateWork::LimitPredecessor(Tenths limit, const PlanLink& link) {
  Late& late = late_[link.predecessor];
  Lower(LeavesFinish(link) ? late.finish : late.start, Before(limit, link));
}

void DateWork::LimitBegin(std::size_t task, Tenths start, Tenths finish) {
  for (const Wait& wait : order_.WaitsOf({task, Part::kBegin})) {
    if (wait.link == nullptr) {
      Lower(late_[wait.on.task].begin, start);
    } else {
      LimitPredecessor(ReachesFinish(*wait.link) ? finish : start, *wait.link);
    }
  }
}

void DateWork::LimitLeaf(std::size_t task) {
  const PlanTask& planned = plan_.tasks[task];
  Late& late = late_[task];
  Lower(late.finish, finish_);
  if (late.start != kOpen) Lower(late.finish, FinishFrom(late.start, planned));
  late.start = late.begin = StartFor(late.finish, planned);
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
  for (const Wait& wait : order_.WaitsOf({task, Part::kEnd})) {
    if (wait.link != nullptr) {
      LimitPredecessor(late.finish, *wait.link);
    } else {
      Lower(late_[wait.on.task].finish, late.finish);
    }
  }
}

void DateWork::Backward() {
  const std::vector<Piece>& pieces = order_.Pieces();
  for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) {
    const std::size_t task = piece->task;
    if (piece->part == Part::kFirstStart) {
      LimitFirstStart(task);
    } else if (piece->part == Part::kEnd) {
      LimitEnd(task);
    } else if (plan_.tasks[task].summary) {
      LimitBegin(task, late_[task].begin, late_[task].begin);
    } else {
      LimitLeaf(task);
    }
  }
}

// The late finish of a summary is the last one of its tasks, which stand behind it.
std::vector<TaskDates> DateWork::Dates() const {
  std::vector<TaskDates> dates(early_.size());
  for (std::size_t task = early_.size(); task-- > 0;) {
    const Early& early = early_[task];
    const Late& late = late_[task];
    const bool spans = plan_.tasks[task].summary && !early.stretched;
    TaskDates& found = dates[task];
    found.earlyStart = early.start;
    found.earlyFinish = early.finish;
    found.lateStart = late.begin;
    found.lateFinish = spans ? found.lateFinish : late.finish;
    found.totalSlack =
        std::min(found.lateStart - found.earlyStart, found.lateFinish - found.earlyFinish);
    found.critical = found.totalSlack <= 0;
    const auto& parent = plan_.tasks[task].parent;
    if (parent) {
      dates[*parent].lateFinish = std::max(dates[*parent].lateFinish, found.lateFinish);
    }
  }
  return dates;
}

}  // namespace

DateTime Schedule::StartOf(std::size_t task) const {
  const TaskDates& dates = tasks[task];
  return dates.earlyStart == dates.earlyFinish ? FinishOf(task)
                                               : calendar.StartAt(dates.earlyStart);
}

DateTime Schedule::FinishOf(std::size_t task) const {
  const Tenths finish = tasks[task].earlyFinish;
  return finish == 0 ? Start() : calendar.FinishAt(finish);
}

DateTime Schedule::Start() const { return calendar.StartAt(0); }

DateTime Schedule::Finish() const { return finish == 0 ? Start() : calendar.FinishAt(finish); }

Schedule MakeSchedule(const Plan& plan) {
  const LinkOrder order(plan);
  const WorkingTime calendar(plan.start);
  DateWork work(plan, order, calendar);
  work.Forward();
  work.Backward();
  return {.tasks = work.Dates(), .finish = work.Finish(), .calendar = calendar};
}

}  // namespace merivane::schedule
