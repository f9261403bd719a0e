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

// Changes links and junctions where the model says something else than `wanted`, and nowhere else.
// What a model can't say stays out. REQUIRES: all pairs of `wanted` lie in one scenario each.
void Rewire(ModelEdit& model, const Relations& wanted);

}  // namespace merivane::reconcile
