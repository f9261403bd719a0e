#include "outline.h"

#include <optional>
#include <utility>
#include <vector>

#include "reconcile/model_limits.h"

namespace merivane::reconcile {

namespace {

// The units around a scenario, from above; with a unit's own number they sort as the plan does.
class Surroundings {
 public:
  Surroundings(const ModelRows& model, const std::function<bool(std::int32_t)>& isGone,
               const std::map<std::int32_t, std::int32_t>& numbers)
      : model_(model), isGone_(isGone), numbers_(numbers) {}

  std::int32_t NumberOf(std::int32_t unit) const {
    const auto number = numbers_.find(unit);
    return number == numbers_.end() ? unit : number->second;
  }

  // Nothing where a unit in it has no place.
  const std::optional<std::vector<std::int32_t>>& Of(std::int32_t scenario) {
    const auto [known, isNew] = known_.try_emplace(scenario);
    if (!isNew) return known->second;  // also on the way round a circle
    const auto row = model_.scenarios.find(scenario);
    if (row == model_.scenarios.end()) return known->second;
    const std::int32_t parent = row->second.parent;
    if (parent == 0) {
      known->second.emplace();
      return known->second;
    }
    const auto unit = model_.units.find(parent);
    if (unit == model_.units.end() || isGone_(parent)) return known->second;
    std::optional<std::vector<std::int32_t>> around = Of(unit->second.scenario);
    if (around && around->size() + 1 < kMostLevels) {
      around->push_back(NumberOf(parent));
      known->second = std::move(around);
    }
    return known->second;
  }

 private:
  const ModelRows& model_;
  const std::function<bool(std::int32_t)>& isGone_;
  const std::map<std::int32_t, std::int32_t>& numbers_;
  std::map<std::int32_t, std::optional<std::vector<std::int32_t>>> known_;
};

}  // namespace

std::map<std::int32_t, OutlinePlace> OutlineOf(
    const ModelRows& model, const std::function<bool(std::int32_t)>& isGone,
    const std::map<std::int32_t, std::int32_t>& numbers) {
  Surroundings surroundings(model, isGone, numbers);
  std::map<std::int32_t, OutlinePlace> outline;
  std::map<std::vector<std::int32_t>, std::int32_t> inOrder;
  for (const auto& [number, unit] : model.units) {
    if (!unit.sent || isGone(number)) continue;
    outline[number] = {};
    const auto& around = surroundings.Of(unit.scenario);
    if (!around) continue;
    std::vector<std::int32_t> order = *around;
    order.push_back(surroundings.NumberOf(number));
    inOrder.emplace(std::move(order), number);
  }
  std::vector<std::pair<std::size_t, std::int32_t>> above;  // level and number
  std::size_t place = 0;
  for (const auto& [order, number] : inOrder) {
    while (!above.empty() && above.back().first >= order.size()) above.pop_back();
    outline[number] = {above.empty() ? 0 : above.back().second, ++place};
    above.emplace_back(order.size(), number);
  }
  return outline;
}

}  // namespace merivane::reconcile
