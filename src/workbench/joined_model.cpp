#include "joined_model.h"

#include <map>
#include <set>
#include <utility>

#include "outline.h"

namespace merivane::workbench {

namespace {

using Ends = std::pair<std::int32_t, std::int32_t>;

std::set<Ends> EndsOf(const Scenario& scenario) {
  std::set<Ends> ends;
  for (const Link& link : scenario.links) ends.emplace(link.origin, link.destination);
  return ends;
}

class Joining {
 public:
  Joining(const ProcessModel& before, ProcessModel after, const ModelSnapshot& snapshotBefore,
          const ModelSnapshot& snapshotAfter)
      : before_(before),
        model_(std::move(after)),
        snapshotBefore_(snapshotBefore),
        snapshotAfter_(snapshotAfter) {}

  ProcessModel Run() {
    NoteNumbers();
    for (Scenario& scenario : model_.scenarios) AddNew(scenario);
    for (const Scenario& old : before_.scenarios) {
      Scenario* scenario = Find(old.number);
      if (scenario == nullptr) {
        model_.scenarios.push_back(old);
      } else {
        AddGone(old, *scenario);
      }
    }
    return std::move(model_);
  }

 private:
  void NoteNumbers() {
    for (Scenario& scenario : model_.scenarios) {
      for (Unit& unit : scenario.units) {
        units_.insert(unit.number);
        Rename(unit);
      }
      for (const Junction& junction : scenario.junctions) junctions_.insert(junction.number);
    }
  }

  Scenario* Find(std::int32_t number) {
    for (Scenario& scenario : model_.scenarios) {
      if (scenario.number == number) return &scenario;
    }
    return nullptr;
  }

  void Rename(Unit& unit) const {
    const auto now = snapshotAfter_.units.find(unit.number);
    if (now == snapshotAfter_.units.end()) return;
    unit.duration = now->second.duration;
    const auto old = snapshotBefore_.units.find(unit.number);
    unit.name = old == snapshotBefore_.units.end()
                    ? now->second.name
                    : NameAndBefore(now->second.name, old->second.name);
  }

  void AddNew(Scenario& scenario) {
    for (const auto& [number, made] : snapshotAfter_.units) {
      if (made.scenario != scenario.number || snapshotBefore_.units.contains(number)) continue;
      if (!units_.insert(number).second) continue;
      Unit unit;
      unit.number = number;
      unit.name = made.name;
      unit.duration = made.duration;
      scenario.units.push_back(std::move(unit));
    }
  }

  void AddGone(const Scenario& old, Scenario& scenario) const {
    const std::set<Ends> were = EndsOf(old);
    const std::set<Ends> are = EndsOf(scenario);
    for (Link& link : scenario.links) {
      if (!were.contains({link.origin, link.destination})) link.mark = Mark::kAdded;
    }
    for (const Link& link : old.links) {
      if (are.contains({link.origin, link.destination})) continue;
      scenario.links.push_back(link);
      scenario.links.back().mark = Mark::kRemoved;
    }
    for (const Unit& unit : old.units) {
      if (!units_.contains(unit.number)) scenario.units.push_back(unit);
    }
    for (const Junction& junction : old.junctions) {
      if (!junctions_.contains(junction.number)) scenario.junctions.push_back(junction);
    }
  }

  const ProcessModel& before_;
  ProcessModel model_;
  const ModelSnapshot& snapshotBefore_;
  const ModelSnapshot& snapshotAfter_;
  std::set<std::int32_t> units_;  // of the model behind the merge
  std::set<std::int32_t> junctions_;
};

}  // namespace

ProcessModel Joined(const ProcessModel& before, ProcessModel after,
                    const ModelSnapshot& snapshotBefore, const ModelSnapshot& snapshotAfter) {
  return Joining(before, std::move(after), snapshotBefore, snapshotAfter).Run();
}

}  // namespace merivane::workbench
