// What the links of a model say about its units, as a plan shows it, and how links are changed
// until they say what a plan wants.
#pragma once

#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "model_edit.h"

namespace merivane::reconcile {

// Pairs of units that go to the plan: predecessor and successor, and for what starts or finishes
// together the lower number first.
struct Relations {
  using Pairs = std::set<std::pair<std::int32_t, std::int32_t>>;

  Pairs finishToStart;
  Pairs startToStart;
  Pairs finishToFinish;

  bool operator==(const Relations&) const = default;
};

// By the rules of the translator: a chain of junctions passes on who comes before, and the direct
// branches of a "Sync. AND" are tied to one of them.
Relations RelationsOf(const ModelEdit& model);

// One of the two mirror images of a junction: branches behind a fan-out, in front of a fan-in.
struct JunctionSide {
  bool isFanOut = false;
};
inline constexpr JunctionSide kFanOutSide{.isFanOut = true};
inline constexpr JunctionSide kFanInSide{.isFanOut = false};

// Units at the direct branches, in the order of the links.
std::vector<std::int32_t> BranchesOf(const ModelEdit& model, const JunctionSide& side,
                                     std::int32_t junction);

// The branch that the others are tied to: the first one whose first link on its far side doesn't
// lead to another "Sync. AND". 0: none.
std::int32_t MainBranch(const ModelEdit& model, const JunctionSide& side, std::int32_t junction);

// The "Sync. AND" of this side by which the translator ties others to the unit: the last one whose
// main branch it is. 0: none.
std::int32_t TyingJunction(const ModelEdit& model, const JunctionSide& side, std::int32_t unit);

// Through chains of junctions.
std::set<std::int32_t> UnitsBefore(const ModelEdit& model, std::int32_t element);
std::set<std::int32_t> UnitsBehind(const ModelEdit& model, std::int32_t element);

// Single steps, each in the neighbourhood of two units.
class Rewiring {
 public:
  // `wanted`: what has to stay where a link carries several.
  Rewiring(ModelEdit& model, const Relations::Pairs& wanted) : model_(model), wanted_(wanted) {}

  void Cut(std::int32_t from, std::int32_t to);
  void Draw(std::int32_t from, std::int32_t to);
  // Of those that start together behind a fan-out, or finish together in front of a fan-in.
  void Untie(const JunctionSide& side, std::int32_t a, std::int32_t b);
  void Tie(const JunctionSide& side, std::int32_t a, std::int32_t b);

 private:
  bool TieTo(const JunctionSide& side, std::int32_t main, std::int32_t other);
  void AddBranch(const JunctionSide& side, std::int32_t junction, std::int32_t unit);
  bool CutOneLink(std::int32_t from, std::int32_t to);
  bool MayGo(std::int32_t link) const;
  void Detach(std::int32_t from, std::int32_t to);
  std::int32_t PointBehind(std::int32_t unit);
  std::int32_t PointBefore(std::int32_t unit);
  std::int32_t ScenarioOf(std::int32_t unit) const {
    return model_.Model().units.at(unit).scenario;
  }

  ModelEdit& model_;
  const Relations::Pairs& wanted_;
};

// Changes links and junctions where the model says something else than `wanted`, and nowhere else.
// What a model can't say stays out. REQUIRES: all pairs of `wanted` lie in one scenario each.
void Rewire(ModelEdit& model, const Relations& wanted);

}  // namespace merivane::reconcile
