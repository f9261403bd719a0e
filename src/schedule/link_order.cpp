#include "link_order.h"

#include <algorithm>

#include "runtime/run_time_error.h"

namespace merivane::schedule {

namespace {

constexpr std::size_t kParts = 3;

std::size_t NodeOf(const Piece& piece) {
  return piece.task * kParts + static_cast<std::size_t>(piece.part);
}

Piece PieceOf(std::size_t node) { return {node / kParts, static_cast<Part>(node % kParts)}; }

Piece PartOf(const Plan& plan, std::size_t task, Part part) {
  return {task, plan.tasks[task].summary ? part : Part::kBegin};
}

std::string Names(const std::vector<std::string>& names) {
  constexpr std::size_t kShown = 10;
  std::string text;
  for (std::size_t i = 0; i < std::min(names.size(), kShown); ++i) {
    text += (i == 0 ? "'" : ", '") + names[i] + "'";
  }
  if (names.size() > kShown) text += " and " + std::to_string(names.size() - kShown) + " more";
  return text;
}

}  // namespace

LinkOrder::LinkOrder(const Plan& plan) : plan_(plan) {
  CollectWaits();
  Order();
}

template <typename Take>
void LinkOrder::ForEachWait(Take take) const {
  for (std::size_t task = 0; task < plan_.tasks.size(); ++task) {
    const auto& parent = plan_.tasks[task].parent;
    if (!parent) continue;
    take(Piece{task, Part::kBegin}, Wait{{*parent, Part::kBegin}});
    if (plan_.tasks[task].rules.inactive) continue;
    take(Piece{*parent, Part::kFirstStart}, Wait{PartOf(plan_, task, Part::kFirstStart)});
    take(Piece{*parent, Part::kEnd}, Wait{PartOf(plan_, task, Part::kEnd)});
  }
  for (const PlanLink& link : plan_.links) {
    if (plan_.tasks[link.predecessor].rules.inactive) continue;
    const Part left = LeavesFinish(link.kind) ? Part::kEnd : Part::kFirstStart;
    const Part reached = ReachesFinish(link.kind) ? Part::kEnd : Part::kBegin;
    take(PartOf(plan_, link.successor, reached),
         Wait{PartOf(plan_, link.predecessor, left), &link});
  }
}

void LinkOrder::CollectWaits() {
  const std::size_t nodes = plan_.tasks.size() * kParts;
  firstWait_.assign(nodes + 1, 0);
  ForEachWait([&](const Piece& piece, const Wait&) { ++firstWait_[NodeOf(piece) + 1]; });
  for (std::size_t node = 0; node < nodes; ++node) firstWait_[node + 1] += firstWait_[node];
  waits_.resize(firstWait_[nodes]);
  std::vector<std::size_t> next(firstWait_.begin(), firstWait_.end() - 1);
  ForEachWait([&](const Piece& piece, const Wait& wait) { waits_[next[NodeOf(piece)]++] = wait; });
}

std::span<const Wait> LinkOrder::WaitsOf(const Piece& piece) const {
  const std::size_t node = NodeOf(piece);
  return std::span(waits_).subspan(firstWait_[node], firstWait_[node + 1] - firstWait_[node]);
}

void LinkOrder::Order() {
  states_.assign(plan_.tasks.size() * kParts, State::kNew);
  for (std::size_t task = 0; task < plan_.tasks.size(); ++task) {
    OrderFrom(NodeOf({task, Part::kBegin}));
    if (!plan_.tasks[task].summary) continue;
    OrderFrom(NodeOf({task, Part::kFirstStart}));
    OrderFrom(NodeOf({task, Part::kEnd}));
  }
}

// Goes deep without recursion: a chain of links may be as long as the plan.
void LinkOrder::OrderFrom(std::size_t node) {
  if (states_[node] == State::kDone) return;
  const auto enter = [this](std::size_t entered) {
    states_[entered] = State::kOpen;
    open_.push_back({entered, firstWait_[entered]});
  };
  enter(node);
  while (!open_.empty()) {
    Open& top = open_.back();
    if (top.nextWait == firstWait_[top.node + 1]) {
      states_[top.node] = State::kDone;
      order_.push_back(PieceOf(top.node));
      open_.pop_back();
      continue;
    }
    const std::size_t next = NodeOf(waits_[top.nextWait++].on);
    if (states_[next] == State::kOpen) TellCircle(next);
    if (states_[next] == State::kNew) enter(next);
  }
}

void LinkOrder::TellCircle(std::size_t node) const {
  std::vector<std::string> names;
  std::vector<bool> named(plan_.tasks.size());
  for (auto piece = open_.rbegin();; ++piece) {
    const std::size_t task = PieceOf(piece->node).task;
    if (!named[task]) names.push_back(plan_.tasks[task].name);
    named[task] = true;
    if (piece->node == node) break;
  }
  throw RunTimeError(kInvalidProcedureCall,
                     names.size() == 1
                         ? "The task " + Names(names) + " is linked to itself. Take that link out."
                         : "The links run in a circle through the tasks " + Names(names) +
                               ". Take one of these links out.");
}

}  // namespace merivane::schedule
