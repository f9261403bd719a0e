// The parts of a plan's file, in the schema's order.
#pragma once

#include <string>
#include <unordered_map>
#include <unordered_set>

#include "custom_fields.h"
#include "element.h"
#include "mspdi/plan_writer.h"
#include "plan_details.h"
#include "runtime/value.h"
#include "schedule/plan.h"
#include "schedule/schedule.h"

namespace merivane::mspdi {

using namespace runtime;

using Uids = std::unordered_set<std::int64_t>;

// A plan on its way into a file.
struct PlanOnPaper {
  Connection& connection;
  std::int32_t project;
  schedule::Plan plan;
  schedule::Schedule dates;
  CustomFields fields;
  TimephasedData timephased;
  Uids materials;  // resources whose glossary says that they don't work
};

// Name, dates, settings, the declarations of custom fields, the calendars.
void WriteHead(const PlanOnPaper& paper, Element& project);

// The calendars of the tables, otherwise the standard one with the number 1.
void WriteCalendars(const PlanOnPaper& paper, Element& project);
inline constexpr std::int64_t kOwnCalendar = 1;

using Notes = std::unordered_map<std::int64_t, std::string>;  // by the task's UID

// Notes as plain text (Windows-1252). A note that Merivane wrote may be the one of a task before
// it; where the database holds the model, the glossary of the task's own activity counts instead.
// `brokenOff` counts the notes whose rich text ends before it is closed.
Notes ReadTaskNotes(Connection& connection, std::int32_t project, const schedule::Plan& plan,
                    std::size_t& brokenOff);

// The summary row of the whole, then every task.
void WriteTasks(const PlanOnPaper& paper, Element& project);

// Of the plan that is written.
Uids ReadMaterials(Connection& connection, std::int32_t project, const schedule::Plan& plan);

// The resources, whose UIDs it gives.
Uids WriteResources(const PlanOnPaper& paper, Element& project);

// The assignments of tasks to resources, both of which must be there; how many.
std::size_t WriteAssignments(const PlanOnPaper& paper, const Uids& resources, Element& project);

}  // namespace merivane::mspdi
