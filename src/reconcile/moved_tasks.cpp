#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <set>
#include <vector>

#include "reconcile/plan_content.h"

namespace merivane::reconcile {

namespace {

struct Sibling {
  std::int32_t task = 0;
  std::size_t other = 0;  // its place there
};

// The indexes of a longest row of them that ascends in the other plan.
std::set<std::size_t> Staying(const std::vector<Sibling>& siblings) {
  std::vector<std::size_t> ends;  // of the best rows of each length
  std::vector<std::size_t> before(siblings.size(), siblings.size());
  for (std::size_t at = 0; at < siblings.size(); ++at) {
    const auto end = std::ranges::lower_bound(
        ends, siblings[at].other, {}, [&](std::size_t each) { return siblings[each].other; });
    if (end != ends.begin()) before[at] = *std::prev(end);
    if (end == ends.end()) {
      ends.push_back(at);
    } else {
      *end = at;
    }
  }
  std::set<std::size_t> staying;
  for (std::size_t at = ends.back(); at < siblings.size(); at = before[at]) staying.insert(at);
  return staying;
}

void AddMoved(const std::vector<Sibling>& siblings, std::vector<MovedTask>& moved) {
  if (std::ranges::is_sorted(siblings, {}, &Sibling::other)) return;
  const std::set<std::size_t> staying = Staying(siblings);
  std::vector<Sibling> there = siblings;
  std::ranges::sort(there, {}, &Sibling::other);
  std::map<std::int32_t, std::int32_t> otherBehind;
  for (std::size_t at = 1; at < there.size(); ++at)
    otherBehind[there[at].task] = there[at - 1].task;
  for (std::size_t at = 0; at < siblings.size(); ++at) {
    const std::int32_t task = siblings[at].task;
    const std::int32_t behind = at == 0 ? 0 : siblings[at - 1].task;
    if (staying.contains(at) || behind == otherBehind[task]) continue;
    moved.push_back({task, behind, otherBehind[task]});
  }
}

}  // namespace

std::vector<MovedTask> MovedTasks(const PlanContent& plan, const PlanContent& other) {
  std::map<std::int32_t, std::map<std::size_t, Sibling>> below;  // in the order of the plan
  for (const auto& [number, task] : plan.tasks) {
    const auto there = other.tasks.find(number);
    if (there == other.tasks.end() || there->second.parent != task.parent) continue;
    below[task.parent][task.place] = {number, there->second.place};
  }
  std::vector<MovedTask> moved;
  for (const auto& [parent, tasks] : below) {
    std::vector<Sibling> siblings;
    siblings.reserve(tasks.size());
    for (const auto& [place, sibling] : tasks) siblings.push_back(sibling);
    AddMoved(siblings, moved);
  }
  return moved;
}

}  // namespace merivane::reconcile
