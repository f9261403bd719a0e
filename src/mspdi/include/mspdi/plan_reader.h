// Planning XML as it comes from outside: a file becomes plain rows, checked whole, for a merge, a
// chart or an MPX file; plan_writer.h is the way back.
//
//   const FilePlan plan = ReadPlanFile(Output("plan.xml"));
//   for (const FileTask& task : plan.tasks) names.push_back(task.name);
//   if (plan.lostCharacters > 0) Tell(LostCharactersText(plan));
//   const Schedule dates = MakeSchedule(PlanOfFile(plan, today));
//
// Durations are days of the file's own length (FilePlan::minutesPerDay), lags those of
// schedule/plan.h, and one unit is all of a resource. A plan owns all that it tells, and nothing of
// the file stays open.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "mspdi/untaken.h"
#include "runtime/dates.h"
#include "runtime/new_file.h"
#include "schedule/plan.h"

namespace merivane::mspdi {

using namespace runtime;
using namespace schedule;

// Texts are Windows-1252. `line` is where the element begins, from 1.

struct FileLink {
  std::int64_t predecessor = 0;  // ID of a task of the plan
  schedule::LinkKind kind = schedule::LinkKind::kFinishToStart;
  schedule::Lag lag;
};

struct FileTask {
  std::size_t line = 0;
  std::int64_t uid = 0;  // 0: the file tells none
  std::int64_t id = 0;   // 1 to 32,767; differs from those of all other tasks
  std::string name;      // never empty
  std::int64_t level = 1;
  bool inactive = false;               // kept only above tasks that aren't
  std::optional<double> days;          // of the file's own length
  std::optional<DateTime> start = {};  // as the file has them, where they can be read
  std::optional<DateTime> finish = {};
  std::vector<FileLink> predecessors;
  std::string text1;
  std::optional<std::string> notes;  // lines end with CR LF
};

// What a resource is, as the glossary of its object tells it: a model has no other place for it.
enum class ResourceKind { kWork, kMaterial, kCost };

// A glossary taken apart. Texts are Windows-1252.
struct KindAndText {
  ResourceKind kind = ResourceKind::kWork;
  std::string unit;  // of a material: "t"; may be empty
  std::string text;  // what stands behind the first line
};

// A glossary whose first line is "Resource kind: Material (t)" or "Resource kind: Cost"; any other
// is of a resource that works, and all text.
KindAndText TakeKind(const std::string& glossary);

// The text with that line in front; just the text of a resource that works.
std::string WithKind(const KindAndText& resource);

struct FileResource {
  std::size_t line = 0;
  std::int64_t uid = 0;
  std::int64_t id = 0;  // as of a task
  std::string name;     // never empty
  std::optional<double> units;
  std::optional<std::string> notes;
  ResourceKind kind = ResourceKind::kWork;
  std::string unit;  // of a material
};

struct FileAssignment {
  std::int64_t task = 0;  // IDs of a task and a resource of the plan
  std::int64_t resource = 0;
  double units = 1;
};

struct FilePlan {
  std::string name;
  std::optional<DateTime> start;  // its day
  double minutesPerDay = 480;
  std::vector<FileTask> tasks;
  std::vector<FileResource> resources;
  std::vector<FileAssignment> assignments;
  UntakenRows untaken;
  std::size_t lostCharacters = 0;  // of these texts, which have no byte and became "?"
};

enum class TakenTasks {
  kNamedAndActive,
  kAll  // one without a name is called "Task" and its ID
};

// Reads a whole file (UTF-8, any edition, with or without a prefix of the namespace, elements in
// any order). Tasks come in the order of their IDs, or of their outline numbers where not all have
// one, and their levels count from 1 below a row of the whole plan. What it doesn't know is
// skipped, and so are rows of UID 0, level 0 or IsNull, by `taken` inactive tasks and those without
// a name, links to them, to unknown tasks and other projects, assignments without a task or
// resource of the plan.
//
// Failures: 53 no such file, 57 it can't be read on, 70 it is refused or a folder, 75 a device or
// more than 1 GB; everything else is error 321 with a description that tells the file by the last
// part of its `name`, the line and what was found: another encoding, a document type
// definition, an entity beyond the five of XML, no XML, other XML, elements nested beyond reason, a
// number, duration or lag that can't be, a UID or ID that stands twice, an ID beyond 32,767, a task
// that is linked to itself, an outline that skips a level.
FilePlan ReadPlanFile(const Output& file, TakenTasks taken = TakenTasks::kNamedAndActive);

// A sentence on the characters that became "?". REQUIRES: some did.
std::string LostCharactersText(const FilePlan& plan);

// The tasks and links of a file as a plan to schedule, in the same order, with days of eight hours.
// It begins at the file's own start, otherwise at `today`; calendars, constraints and progress stay
// behind.
schedule::Plan PlanOfFile(const FilePlan& file, const DateTime& today);
// The file's own dates of each task; empty where a task lacks them, or ends before it begins.
std::vector<schedule::StoredDates> StoredDatesOf(const FilePlan& file);

}  // namespace merivane::mspdi
