#include <charconv>
#include <cmath>
#include <unordered_map>
#include <utility>

#include "mspdi/plan_reader.h"

namespace merivane::mspdi {

namespace {

// The number of the process occurrence in Text1; none in a plan of another program.
std::optional<std::int64_t> OccurrenceOf(const FileTask& task) {
  std::int64_t number = 0;
  const char* end = task.text1.data() + task.text1.size();
  const auto [rest, error] = std::from_chars(task.text1.data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

schedule::PlanTask PlanTaskOf(const FileTask& task) {
  schedule::PlanTask planned;
  planned.uid = task.uid;
  planned.id = task.id;
  planned.name = task.name;
  planned.level = task.level;
  planned.duration =
      std::llround(task.days.value_or(0) * static_cast<double>(schedule::kTenthsOfDay));
  planned.occurrence = OccurrenceOf(task);
  planned.rules.inactive = task.inactive;
  return planned;
}

}  // namespace

schedule::Plan PlanOfFile(const FilePlan& file, const DateTime& today) {
  schedule::Plan plan;
  plan.name = file.name;
  plan.start = file.start.value_or(today);
  std::unordered_map<std::int64_t, std::size_t> places;
  std::vector<std::size_t> above;  // the task itself and those that it lies below
  for (const FileTask& task : file.tasks) {
    schedule::PlanTask planned = PlanTaskOf(task);
    while (!above.empty() && plan.tasks[above.back()].level >= planned.level) above.pop_back();
    if (!above.empty()) {
      planned.parent = above.back();
      plan.tasks[above.back()].summary = true;
    }
    above.push_back(plan.tasks.size());
    places.emplace(task.id, plan.tasks.size());
    plan.tasks.push_back(std::move(planned));
  }
  for (std::size_t at = 0; at < file.tasks.size(); ++at) {
    for (const FileLink& link : file.tasks[at].predecessors) {
      const auto predecessor = places.find(link.predecessor);
      if (predecessor != places.end()) {
        plan.links.push_back({predecessor->second, at, link.kind, link.lag});
      }
    }
  }
  return plan;
}

std::vector<schedule::StoredDates> StoredDatesOf(const FilePlan& file) {
  std::vector<schedule::StoredDates> dates;
  dates.reserve(file.tasks.size());
  for (const FileTask& task : file.tasks) {
    if (!task.start || !task.finish) return {};
    dates.push_back({schedule::ClockOf(*task.start), schedule::ClockOf(*task.finish)});
    if (dates.back().finish < dates.back().start) return {};
  }
  return dates;
}

}  // namespace merivane::mspdi
