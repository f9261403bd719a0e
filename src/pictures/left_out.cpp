#include "left_out.h"

#include <algorithm>
#include <deque>
#include <map>
#include <set>
#include <vector>

namespace merivane::pictures {

namespace {

// One scenario of which a part was sent.
class PartlySent {
 public:
  explicit PartlySent(const ModelScenario& scenario) {
    for (const ModelJunction& junction : scenario.junctions)
      junctions_[junction.number] = &junction;
    for (const ModelUnit& unit : scenario.units) {
      if (unit.sent) sent_.insert(unit.number);
    }
    for (const ModelLink& link : scenario.links) {
      if (link.kind == FlowKind::kPrecedence) origins_[link.destination].push_back(link.origin);
    }
  }

  // The nearest junction in front of the unit that parts alternative paths, over elements that were
  // left out themselves; null without one.
  const ModelJunction* DecidedBy(std::int32_t unit) const {
    std::deque<std::int32_t> open{unit};
    std::set<std::int32_t> seen{unit};
    for (; !open.empty(); open.pop_front()) {
      const auto junction = junctions_.find(open.front());
      if (junction != junctions_.end() && !junction->second->fanIn &&
          junction->second->kind != JunctionKind::kAnd) {
        return junction->second;
      }
      const auto origins = origins_.find(open.front());
      if (origins == origins_.end()) continue;
      for (const std::int32_t origin : origins->second) {
        if (!sent_.contains(origin) && seen.insert(origin).second) open.push_back(origin);
      }
    }
    return nullptr;
  }

 private:
  std::map<std::int32_t, const ModelJunction*> junctions_;
  std::map<std::int32_t, std::vector<std::int32_t>> origins_;  // of the links into an element
  std::set<std::int32_t> sent_;
};

std::string Why(const ModelJunction* junction) {
  if (junction == nullptr) return "the paths that were taken don't come to it";
  return "junction " + junction->id + " (" + junction->type + ") takes another path";
}

}  // namespace

void TellWhyLeft(ProcessModel& model) {
  std::map<std::int32_t, bool> sent;  // of units, by number
  for (const ModelScenario& scenario : model.scenarios) {
    for (const ModelUnit& unit : scenario.units) sent[unit.number] = unit.sent;
  }
  for (ModelScenario& scenario : model.scenarios) {
    const auto isSent = [](const ModelUnit& unit) { return unit.sent; };
    const bool whole = std::none_of(scenario.units.begin(), scenario.units.end(), isSent);
    const auto parent = sent.find(scenario.parent);
    const PartlySent paths(scenario);
    for (ModelUnit& unit : scenario.units) {
      if (unit.sent) continue;
      if (!whole) {
        const ModelJunction* junction = paths.DecidedBy(unit.number);
        unit.whyLeft = Why(junction);
        if (junction != nullptr) unit.decidedBy = junction->number;
      } else if (parent != sent.end() && !parent->second) {
        unit.whyLeft = "unit " + std::to_string(scenario.parent) + " '" + scenario.parentName +
                       "', which its scenario decomposes, stays out";
      } else {
        unit.whyLeft = "another scenario was chosen in the place of '" + scenario.name + "'";
      }
    }
  }
}

}  // namespace merivane::pictures
