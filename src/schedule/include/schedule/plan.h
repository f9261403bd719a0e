// A plan as its tables hold it: tasks in the order of the list, and the links between them with
// their lags.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "runtime/dates.h"
#include "schedule/calendars.h"
#include "schedule/working_time.h"
#include "store/connection.h"

namespace merivane::schedule {

using namespace store;

// Numbers of TASK_CONSTRAINT_TYPE.
enum class Constraint {
  kAsSoonAsPossible = 0,
  kAsLateAsPossible = 1,
  kMustStartOn = 2,
  kMustFinishOn = 3,
  kStartNoEarlier = 4,
  kStartNoLater = 5,
  kFinishNoEarlier = 6,
  kFinishNoLater = 7
};

// Formats of durations and lags: 3 minutes, 5 hours, 7 days, 9 weeks, 11 months, 19 percent; the
// even number behind each is the same in time that runs day and night; 32 more is an estimate.
inline constexpr std::int64_t kFormatDays = 7;

struct Lag {
  Tenths amount = 0;  // tenths of a minute; of a percentage, the percents
  std::int64_t format = kFormatDays;

  bool IsElapsed() const;     // runs day and night
  bool IsPercentage() const;  // of the predecessor's duration
};

// "+2d", "-1.5eh", "+50%"; empty for no lag. A day of the plan has `minutesPerDay`, a week five
// such days, a month twenty; an unknown format counts in days.
std::string LagText(const Lag& lag, double minutesPerDay);

// The lag at the front of a text in the same form, with days of eight hours; no lag where the text
// isn't in that form.
Lag ParseLag(std::string_view text);

// What else than links and outline says when a task is done. Moments are those of ClockOf.
struct TaskRules {
  Constraint constraint = Constraint::kAsSoonAsPossible;
  std::optional<Tenths> constraintDate;  // a constraint that needs one doesn't count without it
  std::optional<Tenths> deadline;
  std::optional<Tenths> actualStart;  // where work has begun
  std::optional<Tenths> actualFinish;
  std::optional<Tenths> resume;  // where the rest of a task that has begun goes on
  Tenths remaining = 0;          // its length
  Lag levelingDelay;
  std::optional<Tenths> fixedStart;  // both: of a task whose dates are its own
  std::optional<Tenths> fixedFinish;
  bool inactive = false;  // it has dates, and nothing else heeds it
  bool external = false;  // it stands for a task of another project
};

struct PlanTask {
  std::int64_t uid = 0;  // differs from those of all other tasks
  std::int64_t id = 0;   // its place in the list
  std::string name;
  std::int64_t level = 1;                  // of the outline, as the table has it
  std::optional<std::size_t> parent = {};  // index of the summary task right above it
  bool summary = false;                    // tasks lie below it
  Tenths duration = 0;                     // never negative; of a summary as the table has it
  std::int64_t durationFormat = kFormatDays;
  std::optional<std::int64_t> occurrence = {};  // number of the process occurrence it stands for
  std::size_t calendar = 0;                     // index in Plan::times
  TaskRules rules = {};

  bool IsElapsed() const { return Lag{duration, durationFormat}.IsElapsed(); }
};

// Numbers of MSP_LINKS.
enum class LinkKind {
  kFinishToFinish = 0,
  kFinishToStart = 1,
  kStartToFinish = 2,
  kStartToStart = 3
};

const char* KindText(LinkKind kind);  // "FF", "FS", "SF", "SS"
// The predecessor's finish, or else its start.
constexpr bool LeavesFinish(LinkKind kind) {
  return kind == LinkKind::kFinishToStart || kind == LinkKind::kFinishToFinish;
}
// The successor's finish, or else its start.
constexpr bool ReachesFinish(LinkKind kind) {
  return kind == LinkKind::kStartToFinish || kind == LinkKind::kFinishToFinish;
}
// An entry of a task's list of predecessors: "3", "4SS+1d".
std::string PredecessorText(std::int64_t predecessor, LinkKind kind, const Lag& lag,
                            double minutesPerDay);

struct PlanLink {
  std::size_t predecessor = 0;  // indices of tasks
  std::size_t successor = 0;
  LinkKind kind = LinkKind::kFinishToStart;
  Lag lag = {};
};

struct PlanSettings {
  std::int64_t calendar = kNoCalendar;  // UID; none: the standard one
  std::int64_t minutesPerDay = 480;     // of durations in days
  std::int64_t minutesPerWeek = 2400;
  bool honorConstraints = true;  // before links
  Tenths criticalSlack = 0;      // up to this slack a task is critical
  std::optional<Tenths> finish;  // where the plan is made backwards from its end
};

struct Plan {
  std::string name;
  DateTime start;
  std::vector<PlanTask> tasks;
  std::vector<PlanLink> links;  // in the order of the table, or of the tasks' lists
  bool broughtBack = false;     // it is what an MPX or XML file brought back
  std::vector<WorkingTime> times = {WorkingTime::Standard()};  // the project's; those of tasks
  PlanSettings settings = {};
  PlanCalendars calendars = {};
  std::vector<std::string> warnings = {};  // what the tables hold that can't be, a sentence each
};

// Reads a project of a database of Merivane or of another program: the plan that a file last
// brought back into it, as the work tables keep it, otherwise the one of the MSP_ tables. The start
// is the project's own, otherwise the model's, otherwise `today`. Left out: rows of UID 0 and
// below, and in the work tables of level 0 (summaries of the whole), rows without a place in the
// list, blank rows, a UID's second row, links of other projects, of tasks that aren't there and of
// unknown kinds. A failure is the store's RunTimeError, or error 6 for a number beyond 32 bits.
//
// Calendars, constraints and progress are those of the MSP_ tables; a plan that was brought back
// has none. A task's working time is that of its own calendar where it differs from the project's,
// otherwise the one that all its resources share, otherwise the project's.
//
// A duration is the model's own (hundredths of a day) where the table's whole days come from it;
// otherwise the table's.
Plan ReadPlan(Connection& connection, std::int32_t project, const DateTime& today);

// Moments of ClockOf.
struct StoredDates {
  Tenths start = 0;
  Tenths finish = 0;
};

// The dates that the program has worked out which made the tables, of each task of the plan. Empty
// where a task lacks them, as in a plan of ours, and of a plan that was brought back.
std::vector<StoredDates> ReadStoredDates(Connection& connection, std::int32_t project,
                                         const Plan& plan);

}  // namespace merivane::schedule
