#include <algorithm>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "model_edit.h"
#include "outline.h"

namespace merivane::reconcile {

namespace {

struct Sibling {
  std::int32_t number = 0;
  int worth = 0;  // of keeping its number
};

// The greatest of what was put in up to a key.
class Greatest {
 public:
  using Best = std::pair<int, std::size_t>;  // worth, index

  explicit Greatest(std::size_t keys) : tree_(keys + 1) {}

  void Put(std::size_t key, const Best& best) {
    for (std::size_t at = key + 1; at < tree_.size(); at += at & (~at + 1)) {
      if (!tree_[at] || *tree_[at] < best) tree_[at] = best;
    }
  }
  std::optional<Best> UpTo(std::size_t key) const {
    std::optional<Best> best;
    for (std::size_t at = std::min(key + 1, tree_.size() - 1); at > 0; at -= at & (~at + 1)) {
      if (tree_[at] && (!best || *best < *tree_[at])) best = tree_[at];
    }
    return best;
  }

 private:
  std::vector<std::optional<Best>> tree_;
};

class Ordering {
 public:
  Ordering(const ModelRows& model, const std::map<std::int32_t, std::size_t>& places,
           const std::set<std::int32_t>& known)
      : model_(model), places_(places), known_(known), taken_(kMostUnit + 1) {}

  std::map<std::int32_t, std::int32_t> Run() {
    GatherBelow();
    for (const auto& [parent, children] : below_) Order(children);
    return std::move(numbers_);
  }

 private:
  // By where the first task of each stands, its own or one below it: a unit that isn't in the plan
  // may have some.
  void GatherBelow() {
    std::map<std::int32_t, std::size_t> first;
    for (const auto& [unit, place] : places_) {
      std::set<std::int32_t> seen;
      for (std::int32_t at = unit; at != 0 && seen.insert(at).second; at = ParentOf(at)) {
        const auto [known, isNew] = first.emplace(at, place);
        if (isNew) continue;
        if (known->second <= place) break;
        known->second = place;
      }
    }
    for (const auto& [unit, place] : first) below_[ParentOf(unit)].emplace(place, unit);
  }

  std::int32_t ParentOf(std::int32_t unit) const {
    const auto row = model_.units.find(unit);
    if (row == model_.units.end()) return 0;
    const auto scenario = model_.scenarios.find(row->second.scenario);
    return scenario == model_.scenarios.end() ? 0 : scenario->second.parent;
  }

  void Order(const std::multimap<std::size_t, std::int32_t>& children) {
    std::vector<Sibling> siblings{{0, 0}};
    bool isInOrder = true;
    for (const auto& [place, unit] : children) {
      isInOrder = isInOrder && siblings.back().number < unit;
      siblings.push_back({unit, known_.contains(unit) || !places_.contains(unit) ? 1 : 0});
    }
    if (isInOrder) return;
    siblings.push_back({std::numeric_limits<std::int32_t>::max(), 0});
    CountFree();
    const std::vector<std::size_t> staying = Staying(siblings);
    for (std::size_t at = 1; at < staying.size(); ++at) {
      NumberBetween(siblings, staying[at - 1], staying[at]);
    }
  }

  void CountFree() {
    if (free_.empty()) {
      for (const auto& [number, row] : model_.units) Take(number);
      for (const auto& [number, row] : model_.junctions) Take(number);
      for (const auto& [number, row] : model_.links) Take(row.number);
      for (const std::int32_t number : known_) Take(number);
    }
    free_.assign(1, 0);
    for (std::size_t number = 1; number < taken_.size(); ++number) {
      free_.push_back(free_.back() + (taken_[number - 1] || number == 1 ? 0 : 1));
    }
    free_.push_back(free_.back() + (taken_.back() ? 0 : 1));
  }

  void Take(std::int32_t number) {
    last_ = std::max(last_, number);
    if (number > 0 && number <= kMostUnit) taken_[static_cast<std::size_t>(number)] = true;
  }

  // How many of the numbers that may be given lie below.
  std::int32_t FreeBelow(std::int32_t number) const {
    return free_[static_cast<std::size_t>(std::clamp(number, 0, kMostUnit + 1))];
  }

  // The most of them that ascend and leave enough free numbers for the others between them, with
  // both ends; empty: there is no way.
  std::vector<std::size_t> Staying(const std::vector<Sibling>& siblings) const {
    const std::size_t count = siblings.size();
    const auto keyOf = [&](std::size_t at) {  // of two, the difference is what has to be enough
      return static_cast<std::size_t>(FreeBelow(siblings[at].number)) + count - at;
    };
    constexpr int kNone = -1;
    std::vector<int> worth(count, kNone);
    std::vector<std::size_t> before(count, 0);
    Greatest further(count + taken_.size() + 2);
    worth[0] = 0;
    for (std::size_t at = 1; at < count; ++at) {
      if (at >= 2 && worth[at - 2] != kNone) {
        further.Put(keyOf(at - 2), {worth[at - 2], at - 2});
      }
      auto best = further.UpTo(keyOf(at) + 1);
      const bool isBehind = siblings[at - 1].number < siblings[at].number;
      if (isBehind && worth[at - 1] != kNone) {
        best = std::max(best, std::optional(Greatest::Best{worth[at - 1], at - 1}));
      }
      if (!best) continue;
      worth[at] = best->first + siblings[at].worth;
      before[at] = best->second;
    }
    std::vector<std::size_t> staying;
    if (worth.back() == kNone) return staying;
    for (std::size_t at = count - 1; at != 0; at = before[at]) staying.push_back(at);
    staying.push_back(0);
    std::ranges::reverse(staying);
    return staying;
  }

  void NumberBetween(const std::vector<Sibling>& siblings, std::size_t from, std::size_t to) {
    const auto needed = static_cast<std::int32_t>(to - from) - 1;
    std::int32_t number = siblings[from].number;
    if (to + 1 == siblings.size() && last_ <= kMostUnit - needed) {
      number = std::max(number, last_);  // behind all that was ever given
    }
    for (std::size_t at = from + 1; at < to; ++at) {
      do {
        ++number;
      } while (taken_[static_cast<std::size_t>(number)]);
      numbers_[siblings[at].number] = number;
      Take(number);
    }
  }

  const ModelRows& model_;
  const std::map<std::int32_t, std::size_t>& places_;
  const std::set<std::int32_t>& known_;
  std::map<std::int32_t, std::multimap<std::size_t, std::int32_t>> below_;
  std::vector<bool> taken_;
  std::vector<std::int32_t> free_;  // below each number
  std::int32_t last_ = 0;
  std::map<std::int32_t, std::int32_t> numbers_;
};

}  // namespace

std::map<std::int32_t, std::int32_t> NumbersInOrder(
    const ModelRows& model, const std::map<std::int32_t, std::size_t>& places,
    const std::set<std::int32_t>& known) {
  return Ordering(model, places, known).Run();
}

}  // namespace merivane::reconcile
