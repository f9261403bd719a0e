#include "rewiring.h"

#include <algorithm>

#include "program/model_words.h"

namespace merivane::reconcile {

using namespace program;

namespace {

enum class Way { kBack, kOn };

std::int32_t FarEnd(const ModelEdit& model, Way way, std::int32_t link) {
  const ModelRows::Link& row = model.Model().links.at(link);
  return way == Way::kBack ? row.origin : row.destination;
}

const std::vector<std::int32_t>& LinksAt(const ModelEdit& model, Way way, std::int32_t element) {
  return way == Way::kBack ? model.LinksTo(element) : model.LinksFrom(element);
}

// What a walk through junctions reaches: the junctions, and the units at its ends.
struct Reach {
  std::set<std::int32_t> junctions;
  std::set<std::int32_t> units;
};

Reach Walk(const ModelEdit& model, Way way, std::int32_t element) {
  Reach reach;
  std::vector<std::int32_t> open{element};
  while (!open.empty()) {
    const std::int32_t current = open.back();
    open.pop_back();
    for (const std::int32_t link : LinksAt(model, way, current)) {
      const std::int32_t end = FarEnd(model, way, link);
      if (model.IsUnit(end)) {
        reach.units.insert(end);
      } else if (reach.junctions.insert(end).second) {
        open.push_back(end);
      }
    }
  }
  return reach;
}

bool HasType(const ModelEdit& model, std::int32_t element, std::string_view type,
             const JunctionSide& side) {
  const auto junction = model.Model().junctions.find(element);
  return junction != model.Model().junctions.end() && junction->second.type == type &&
         junction->second.isFanOut == side.isFanOut;
}

}  // namespace

std::vector<std::int32_t> BranchesOf(const ModelEdit& model, const JunctionSide& side,
                                     std::int32_t junction) {
  const Way way = side.isFanOut ? Way::kOn : Way::kBack;
  std::vector<std::int32_t> branches;
  for (const std::int32_t link : LinksAt(model, way, junction)) {
    const std::int32_t branch = FarEnd(model, way, link);
    if (model.IsUnit(branch)) branches.push_back(branch);
  }
  return branches;
}

std::int32_t MainBranch(const ModelEdit& model, const JunctionSide& side, std::int32_t junction) {
  const Way way = side.isFanOut ? Way::kOn : Way::kBack;
  for (const std::int32_t branch : BranchesOf(model, side, junction)) {
    const auto& links = LinksAt(model, way, branch);
    if (links.empty() || !model.IsSyncAnd(FarEnd(model, way, links.front()))) return branch;
  }
  return 0;
}

std::int32_t TyingJunction(const ModelEdit& model, const JunctionSide& side, std::int32_t unit) {
  const Way toJunction = side.isFanOut ? Way::kBack : Way::kOn;
  std::set<std::int32_t> ties;
  for (const std::int32_t link : LinksAt(model, toJunction, unit)) {
    const std::int32_t junction = FarEnd(model, toJunction, link);
    const bool isTie = HasType(model, junction, kSyncAnd, side) &&
                       BranchesOf(model, side, junction).size() > 1 &&
                       MainBranch(model, side, junction) == unit;
    if (isTie) ties.insert(junction);
  }
  if (ties.size() < 2) return ties.empty() ? 0 : *ties.begin();
  const std::vector<std::int32_t>& order = model.Model().junctionOrder;
  return *std::find_if(order.rbegin(), order.rend(),
                       [&](std::int32_t junction) { return ties.contains(junction); });
}

std::set<std::int32_t> UnitsBefore(const ModelEdit& model, std::int32_t element) {
  return Walk(model, Way::kBack, element).units;
}

std::set<std::int32_t> UnitsBehind(const ModelEdit& model, std::int32_t element) {
  return Walk(model, Way::kOn, element).units;
}

void Rewiring::Cut(std::int32_t from, std::int32_t to) {
  while (CutOneLink(from, to)) {
  }
  if (UnitsBehind(model_, from).contains(to)) Detach(from, to);
}

// Takes out one link on a way between the two that carries nothing that has to stay.
bool Rewiring::CutOneLink(std::int32_t from, std::int32_t to) {
  const Reach on = Walk(model_, Way::kOn, from);
  if (!on.units.contains(to)) return false;
  const Reach back = Walk(model_, Way::kBack, to);
  std::vector<std::int32_t> starts{from};
  for (const std::int32_t junction : back.junctions) {
    if (on.junctions.contains(junction)) starts.push_back(junction);
  }
  for (const std::int32_t start : starts) {
    for (const std::int32_t link : model_.LinksFrom(start)) {
      const std::int32_t end = FarEnd(model_, Way::kOn, link);
      if ((end != to && !back.junctions.contains(end)) || !MayGo(link)) continue;
      model_.RemoveLink(link);
      return true;
    }
  }
  return false;
}

bool Rewiring::MayGo(std::int32_t link) const {
  const ModelRows::Link& row = model_.Model().links.at(link);
  const auto ends = [this](std::int32_t element, Way way) {
    return model_.IsUnit(element) ? std::set<std::int32_t>{element}
                                  : Walk(model_, way, element).units;
  };
  for (const std::int32_t before : ends(row.origin, Way::kBack)) {
    for (const std::int32_t behind : ends(row.destination, Way::kOn)) {
      if (!model_.IsSentUnit(before) || !model_.IsSentUnit(behind)) return false;
      if (wanted_.contains({before, behind})) return false;
    }
  }
  return true;
}

// Where every link carries something else too, the last ones go, and what else they carried is
// drawn again: now for units that the plan doesn't show, and with the rest of the plan for the
// others.
void Rewiring::Detach(std::int32_t from, std::int32_t to) {
  std::set<std::int32_t> unseen;
  for (const std::int32_t link : std::vector(model_.LinksTo(to))) {
    if (!model_.Model().links.contains(link)) continue;
    const std::int32_t origin = FarEnd(model_, Way::kBack, link);
    if (model_.IsUnit(origin)) continue;
    const std::set<std::int32_t> before = UnitsBefore(model_, origin);
    if (!before.contains(from)) continue;
    for (const std::int32_t unit : before) {
      if (!model_.IsSentUnit(unit)) unseen.insert(unit);
    }
    model_.RemoveLink(link);
  }
  for (const std::int32_t unit : unseen) {
    // A direct link would take the task out of the plan with the path.
    std::int32_t point = PointBefore(to);
    if (point == to) {
      point = model_.AddJunction(ScenarioOf(to), kFanIn, kAsyncAnd);
      model_.AddLink(point, to);
    }
    model_.AddLink(unit, point);
  }
}

void Rewiring::Draw(std::int32_t from, std::int32_t to) {
  const std::int32_t origin = PointBehind(from);
  model_.AddLink(origin, PointBefore(to));
}

// The unit itself where nothing comes behind it yet, or else a fan-out of it alone: one that stands
// there, or a new one in front of what comes. A branch of a "Sync. AND" stays a direct one.
std::int32_t Rewiring::PointBehind(std::int32_t unit) {
  const std::vector<std::int32_t> links = model_.LinksFrom(unit);
  for (const std::int32_t link : links) {
    const std::int32_t end = FarEnd(model_, Way::kOn, link);
    if (HasType(model_, end, kAsyncAnd, kFanOutSide) && model_.LinksTo(end).size() == 1) return end;
  }
  if (links.size() != 1 || model_.IsSyncAnd(FarEnd(model_, Way::kOn, links[0]))) return unit;
  const std::int32_t junction = model_.AddJunction(ScenarioOf(unit), kFanOut, kAsyncAnd);
  model_.SetOrigin(links[0], junction);
  model_.AddLink(unit, junction);
  return junction;
}

std::int32_t Rewiring::PointBefore(std::int32_t unit) {
  const std::vector<std::int32_t> links = model_.LinksTo(unit);
  for (const std::int32_t link : links) {
    const std::int32_t end = FarEnd(model_, Way::kBack, link);
    if (HasType(model_, end, kAsyncAnd, kFanInSide) && model_.LinksFrom(end).size() == 1)
      return end;
  }
  if (links.size() != 1 || model_.IsSyncAnd(FarEnd(model_, Way::kBack, links[0]))) return unit;
  const std::int32_t junction = model_.AddJunction(ScenarioOf(unit), kFanIn, kAsyncAnd);
  model_.SetDestination(links[0], junction);
  model_.AddLink(junction, unit);
  return junction;
}

// The one that hangs on the other leaves the junction.
void Rewiring::Untie(const JunctionSide& side, std::int32_t a, std::int32_t b) {
  const Way toJunction = side.isFanOut ? Way::kBack : Way::kOn;
  for (const auto& [unit, other] : {std::pair(a, b), std::pair(b, a)}) {
    for (const std::int32_t link : std::vector(LinksAt(model_, toJunction, unit))) {
      if (!model_.Model().links.contains(link)) continue;
      const std::int32_t junction = FarEnd(model_, toJunction, link);
      if (!HasType(model_, junction, kSyncAnd, side)) continue;
      if (MainBranch(model_, side, junction) == other) model_.RemoveLink(link);
    }
  }
}

void Rewiring::Tie(const JunctionSide& side, std::int32_t a, std::int32_t b) {
  if (TieTo(side, a, b) || TieTo(side, b, a)) return;
  const std::int32_t junction =
      model_.AddJunction(ScenarioOf(a), side.isFanOut ? kFanOut : kFanIn, kSyncAnd);
  AddBranch(side, junction, a);
  AddBranch(side, junction, b);
  if (MainBranch(model_, side, junction) != 0) return;
  model_.RemoveLink(
      model_.LinksTo(side.isFanOut ? a : junction).back());  // and the junction with it
}

void Rewiring::AddBranch(const JunctionSide& side, std::int32_t junction, std::int32_t unit) {
  if (side.isFanOut) {
    model_.AddLink(junction, unit);
  } else {
    model_.AddLink(unit, junction);
  }
}

// A task has one such junction that counts. Where what lies beyond it isn't for the other task too,
// it goes on as an asynchronous one, and a junction with nothing beyond ties its branches.
bool Rewiring::TieTo(const JunctionSide& side, std::int32_t main, std::int32_t other) {
  const std::int32_t known = TyingJunction(model_, side, main);
  if (known == 0) return false;
  const std::set<std::int32_t> beyond =
      side.isFanOut ? UnitsBefore(model_, known) : UnitsBehind(model_, known);
  const bool isForBoth = std::all_of(beyond.begin(), beyond.end(), [&](std::int32_t unit) {
    return wanted_.contains(side.isFanOut ? std::pair(unit, other) : std::pair(other, unit));
  });
  if (isForBoth) {
    AddBranch(side, known, other);
    return true;
  }
  const std::int32_t tie =
      model_.AddJunction(ScenarioOf(main), side.isFanOut ? kFanOut : kFanIn, kSyncAnd);
  for (const std::int32_t branch : BranchesOf(model_, side, known)) AddBranch(side, tie, branch);
  AddBranch(side, tie, other);
  model_.SetJunctionType(known, kAsyncAnd);
  return true;
}

}  // namespace merivane::reconcile
