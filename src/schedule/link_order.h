// An order in which the dates of a plan can be worked out.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "schedule/plan.h"

namespace merivane::schedule {

// What is dated. A task without tasks below it is one piece, kBegin; a summary has three: what
// holds back all tasks below it, the first of their starts, and the last of their finishes.
enum class Part { kBegin = 0, kFirstStart = 1, kEnd = 2 };

struct Piece {
  std::size_t task = 0;
  Part part = Part::kBegin;
};

// What a piece waits for: another piece, through a link or through the outline.
struct Wait {
  Piece on;
  const PlanLink* link = nullptr;  // null: the outline
};

// The pieces of a plan and their waits. The plan must stay in place.
class LinkOrder {
 public:
  // Links in a circle are error 5, with the names of the tasks in it.
  explicit LinkOrder(const Plan& plan);

  // Each piece behind all those that it waits for.
  const std::vector<Piece>& Pieces() const { return order_; }
  std::span<const Wait> WaitsOf(const Piece& piece) const;

 private:
  void CollectWaits();
  void Order();
  void OrderFrom(std::size_t node);
  [[noreturn]] void TellCircle(std::size_t node) const;

  template <typename Take>
  void ForEachWait(Take take) const;

  struct Open {
    std::size_t node;
    std::size_t nextWait;
  };
  enum class State : char { kNew, kOpen, kDone };

  const Plan& plan_;
  std::vector<std::size_t> firstWait_;  // by node, one more than nodes
  std::vector<Wait> waits_;
  std::vector<Piece> order_;
  std::vector<State> states_;
  std::vector<Open> open_;
};

}  // namespace merivane::schedule
