#include "xml_source.h"

#include <unordered_map>
#include <unordered_set>

#include "going_on.h"
#include "merge_statements.h"
#include "roundtrip/plan_as_mpx.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::roundtrip {

namespace {

using mspdi::FileTask;

constexpr const char* kTitle = "Project to Celvar Translator";

std::string RowOf(const char* kind, std::int64_t id, std::size_t line) {
  return std::string(kind) + " " + std::to_string(id) + " in line " + std::to_string(line);
}

std::unordered_set<std::int64_t> OccurrencesOf(ProjectToModel& state) {
  Recordset tasks =
      AskStatic(state.gInterimConn.get(),
                "Select KV7_PROCOCC_HEX from MSP_TASKS where TASK_UID > 0", AndProjId(state));
  std::unordered_set<std::int64_t> numbers;
  for (; !tasks.Eof(); tasks.MoveNext()) {
    const Value number = tasks.Field(0);
    if (!number.IsNull()) numbers.insert(ToInt32(number));
  }
  return numbers;
}

RunTimeError SecondBearer(std::int64_t number, const FileTask& first, const FileTask& second) {
  return {kInvalidFileFormat, "The field Text1 of '" + first.name + "' (" +
                                  RowOf("task", first.id, first.line) + ") and of '" + second.name +
                                  "' (" + RowOf("task", second.id, second.line) +
                                  ") holds the same number, " + std::to_string(number) +
                                  ".  Clear it at the task that is new, and merge again."};
}

}  // namespace

PlanHead XmlSource::Open() {
  state_.progress.Begin("Reading the plan", 0);
  if (!fileName_.empty()) plan_ = mspdi::ReadPlanFile(fileName_);
  CheckNames();
  if (state_.gRebuildModel == 0) CheckOccurrences();
  TellLostCharacters();
  TellUntaken();
  return {.text = plan_.name, .startDate = plan_.start ? FormatDate(*plan_.start) : std::string()};
}

void XmlSource::RefuseName(const std::string& rule, const std::string& name,
                           const RefusedRow& row) const {
  state_.desktop.ShowMessage({.text = "Merivane requires that " + rule + ".  Please change '" +
                                      name + "' (" + RowOf(row.kind, row.id, row.line) + ").",
                              .icon = MessageIcon::kCritical,
                              .title = kTitle});
  if (listener_ == nullptr) throw PlanRefused();
  listener_->OnStop({.kind = row.kind, .number = static_cast<std::int32_t>(row.id), .name = name});
}

void XmlSource::CheckNames() {
  for (auto& resource : plan_.resources) {
    const RefusedRow row{"resource", resource.id, resource.line};
    if (resource.name.find_first_of(",\"") != std::string::npos) {
      RefuseName("Resource names do not have commas or double quotes", resource.name, row);
    } else if (resource.name.find_first_of("'\r\n") != std::string::npos) {
      RefuseName("Resource names do not have apostrophes or line breaks", resource.name, row);
    }
    std::erase_if(resource.name, [](char letter) { return Holds(",\"'\r\n", {&letter, 1}); });
  }
  for (const auto& task : plan_.tasks) {
    const RefusedRow row{"task", task.id, task.line};
    if (Holds(task.name, "\"")) {
      RefuseName("Task and Resource names do not have double quotes", task.name, row);
    } else if (task.name.find_first_of("\r\n") != std::string::npos) {
      RefuseName("Task names do not have line breaks", task.name, row);
    }
  }
}

void XmlSource::CheckOccurrences() {
  const std::unordered_set<std::int64_t> known = OccurrencesOf(state_);
  std::unordered_map<std::int64_t, const FileTask*> bearers;
  bool anyKnown = false;
  for (FileTask& task : plan_.tasks) {
    if (!IsNumericText(task.text1)) continue;
    const std::int64_t number = ToInt32(task.text1);
    if (number == 0) continue;
    anyKnown = anyKnown || known.contains(number);
    const auto bearer = bearers.emplace(number, &task);
    if (bearer.second) continue;
    const FileTask& first = *bearer.first->second;
    const auto refuse = [&] { throw SecondBearer(number, first, task); };
    GoesThrough(state_.desktop, listener_,
                {.kind = "task", .number = static_cast<std::int32_t>(task.id), .name = task.name},
                refuse);
    task.text1.clear();
  }
  if (anyKnown || fileName_.empty()) return;
  throw RunTimeError(
      kInvalidFileFormat,
      "No task of the plan bears a number of this project's model in the field Text1, so a merge "
      "would add every task a second time.  Save the plan with that field, or build a new model "
      "from the plan alone (Overwrite; --overwrite).");
}

void XmlSource::TellLostCharacters() const {
  if (plan_.lostCharacters == 0) return;
  state_.desktop.ShowMessage({.text = mspdi::LostCharactersText(plan_),
                              .icon = MessageIcon::kExclamation,
                              .title = kTitle});
}

void XmlSource::TellUntaken() const {
  const std::string untaken = plan_.untaken.Text();
  if (untaken.empty()) return;
  state_.desktop.ShowMessage({.text = "A model doesn't take everything of this plan:\n" + untaken,
                              .icon = MessageIcon::kExclamation,
                              .title = kTitle});
}

void XmlSource::HandResources(WorkTables& tables) {
  tables.BeginResources();
  for (const auto& resource : plan_.resources) {
    tables.BeginResource({.id = resource.id,
                          .name = resource.name,
                          .quantity = resource.units ? Value(*resource.units) : Value()});
    const std::string note =
        mspdi::WithKind({resource.kind, resource.unit, resource.notes.value_or(std::string())});
    tables.EndResource(note.empty() ? std::nullopt : std::optional(note));
  }
  tables.EndResources();
}

void XmlSource::HandTasks(WorkTables& tables) {
  for (const FileTask& task : plan_.tasks) {
    tables.AddTask({.id = static_cast<std::int32_t>(task.id),
                    .name = task.name,
                    .duration = FixedTwo(task.days.value_or(1)),
                    .level = static_cast<std::int32_t>(task.level),
                    .predecessors = PredecessorList(task, plan_.minutesPerDay),
                    .text1 = task.text1,
                    .notes = task.notes});
  }
  for (const auto& assignment : plan_.assignments) {
    tables.AddAssignment({.task = static_cast<std::int32_t>(assignment.task),
                          .resource = assignment.resource,
                          .units = assignment.units});
  }
}

}  // namespace merivane::roundtrip
