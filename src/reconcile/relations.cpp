
#include <algorithm>

#include "rewiring.h"

namespace merivane::reconcile {

namespace {

using Pairs = Relations::Pairs;

std::pair<std::int32_t, std::int32_t> Ordered(std::int32_t a, std::int32_t b) {
  return {std::min(a, b), std::max(a, b)};
}

void AddStar(const ModelEdit& model, const JunctionSide& side, std::int32_t junction,
             Pairs& pairs) {
  const std::int32_t main = MainBranch(model, side, junction);
  if (!model.IsSentUnit(main) || TyingJunction(model, side, main) != junction) return;
  for (const std::int32_t branch : BranchesOf(model, side, junction)) {
    if (branch != main && model.IsSentUnit(branch)) pairs.insert(Ordered(main, branch));
  }
}

// What the one has and the other hasn't.
Pairs Without(const Pairs& pairs, const Pairs& others) {
  Pairs rest;
  std::set_difference(pairs.begin(), pairs.end(), others.begin(), others.end(),
                      std::inserter(rest, rest.end()));
  return rest;
}

}  // namespace

Relations RelationsOf(const ModelEdit& model) {
  Relations relations;
  for (const auto& [unit, row] : model.Model().units) {
    if (!row.sent) continue;
    for (const std::int32_t before : UnitsBefore(model, unit)) {
      if (model.IsSentUnit(before)) relations.finishToStart.emplace(before, unit);
    }
  }
  for (const auto& [number, junction] : model.Model().junctions) {
    if (!model.IsSyncAnd(number)) continue;
    AddStar(model, JunctionSide{junction.isFanOut}, number,
            junction.isFanOut ? relations.startToStart : relations.finishToFinish);
  }
  return relations;
}

// A step for one relation can undo another, as where a "Sync. AND" passes on who comes before, so
// that it takes more than one round.
void Rewire(ModelEdit& model, const Relations& wanted) {
  constexpr int kMostRounds = 6;
  Rewiring rewiring(model, wanted.finishToStart);
  for (int round = 0; round < kMostRounds; ++round) {
    Relations now = RelationsOf(model);
    if (now == wanted) return;
    for (const JunctionSide& side : {kFanOutSide, kFanInSide}) {
      const auto pairs = side.isFanOut ? &Relations::startToStart : &Relations::finishToFinish;
      for (const auto& [a, b] : Without(now.*pairs, wanted.*pairs)) rewiring.Untie(side, a, b);
    }
    for (const auto& [from, to] : Without(now.finishToStart, wanted.finishToStart)) {
      rewiring.Cut(from, to);
    }
    now = RelationsOf(model);
    for (const auto& [from, to] : Without(wanted.finishToStart, now.finishToStart)) {
      rewiring.Draw(from, to);
    }
    for (const JunctionSide& side : {kFanOutSide, kFanInSide}) {
      const auto pairs = side.isFanOut ? &Relations::startToStart : &Relations::finishToFinish;
      for (const auto& [a, b] : Without(wanted.*pairs, now.*pairs)) rewiring.Tie(side, a, b);
    }
  }
}

}  // namespace merivane::reconcile
