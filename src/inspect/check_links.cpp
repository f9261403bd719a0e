#include <algorithm>
#include <array>
#include <map>
#include <span>
#include <string_view>
#include <tuple>
#include <unordered_map>
#include <unordered_set>

#include "inspect/finding.h"
#include "model_checks.h"
#include "program/model_words.h"
#include "runtime/text.h"

namespace merivane::inspect {

using namespace program;

namespace {

constexpr std::array kCardinalities = {kFanIn, kFanOut};
constexpr std::array kTypes = {kSyncAnd, kAsyncAnd, kSyncOr, kAsyncOr, kXor};

// A unit or a junction with its links.
struct Node {
  std::size_t place = 0;
  std::int32_t scenario = 0;
  const JunctionEntry* junction = nullptr;  // null: a unit
  std::size_t ways = 0;                     // in
  std::size_t waysOut = 0;
  std::vector<std::size_t> next = {};
};

class Net {
 public:
  Net(const Model& model, std::vector<Finding>& findings) : model_(model), findings_(findings) {
    for (const UnitEntry& unit : model.units) AddNode(unit.place, unit.scenario);
    for (const JunctionEntry& junction : model.junctions) {
      AddNode(junction.place, junction.scenario, &junction);
    }
    for (const LinkEntry& link : model.links) AddLink(link);
  }

  void CheckJunctions() {
    for (const Node& node : nodes_) {
      if (node.junction == nullptr) continue;
      CheckWords(node);
      if (!HasAllLinks(node)) continue;
      const std::size_t in = node.ways;
      const std::size_t out = node.waysOut;
      CheckDirection(node, in, out);
      if (in == 1 && out == 1) {
        Warn(node, "It has one way in and one way out, so that it joins nothing.",
             "Link the two ends without it.");
      } else if ((in == 0 && out <= 1) || (out == 0 && in <= 1)) {
        Warn(node,
             "It dangles: it has " + Count(in, "way") + " in and " + Count(out, "way") + " out.",
             "Add the links that are missing, or leave it out.");
      }
    }
  }

  // Each scenario has one beginning; what else nothing leads to is told.
  void CheckBeginnings() {
    std::unordered_map<std::int32_t, std::size_t> beginnings;
    std::vector<const Node*> starts;
    for (const Node& node : nodes_) {
      if (node.ways == 0 && HasAllLinks(node)) starts.push_back(&node);
    }
    std::stable_sort(starts.begin(), starts.end(), [&](const Node* a, const Node* b) {
      return a->junction != nullptr && !a->next.empty() &&
             !(b->junction != nullptr && !b->next.empty());
    });
    for (const Node* node : starts) {
      const auto [first, isNew] = beginnings.try_emplace(node->scenario, node->place);
      if (isNew || node->junction != nullptr) continue;
      Warn(*node,
           "Nothing leads to it, and its scenario begins with " +
               WithLine(model_.At(first->second)) + " already.",
           "Link it behind the unit or junction that it follows.");
    }
  }

  // Circles of junctions alone, or those with a unit among them. Depth first; a link to a node that
  // is still on the way closes a circle.
  enum class Circles { kOfAll, kOfJunctions };
  void CheckCircles(Circles circles) {
    colours_.assign(nodes_.size(), Colour::kNew);
    for (std::size_t start = 0; start < nodes_.size(); ++start) {
      if (colours_[start] == Colour::kNew &&
          (circles == Circles::kOfAll || nodes_[start].junction != nullptr)) {
        Walk(start, circles);
      }
    }
  }

 private:
  enum class Colour { kNew, kOnWay, kDone };
  struct Step {
    std::size_t node;
    std::size_t next;
  };

  static std::string Count(std::size_t count, const std::string& word) {
    return count == 0 ? "no " + word + "s" : Counted(count, word);
  }

  void Warn(const Node& node, std::string sentence, std::string advice) {
    findings_.push_back(FindingAt(Severity::kWarning, model_.At(node.place), std::move(sentence),
                                  std::move(advice)));
  }

  void AddNode(std::size_t place, std::int32_t scenario, const JunctionEntry* junction = nullptr) {
    byNumber_.emplace(model_.At(place).number, nodes_.size());
    nodes_.push_back({.place = place, .scenario = scenario, .junction = junction});
    if (!model_.At(place).isNumberKnown) unknown_.insert(scenario);
    if (junction != nullptr) ids_.insert(model_.At(place).name);
  }

  Node* Find(const LinkEnd& end, std::int32_t scenario) {
    if (!end.isKnown) return nullptr;
    const auto [from, to] = byNumber_.equal_range(end.number);
    for (auto entry = from; entry != to; ++entry) {
      Node& node = nodes_[entry->second];
      if (node.scenario == scenario) return &node;
    }
    return nullptr;
  }

  void CheckEnd(const LinkEntry& link, const LinkEnd& end, const Node* node, const char* which) {
    const std::string number = std::to_string(end.number);
    const ElementEntry& place = model_.At(link.place);
    if (node == nullptr && (!end.isKnown || unknown_.contains(link.scenario))) return;
    if (node == nullptr) {
      findings_.push_back(
          FindingAt(Severity::kError, place,
                    std::string("Its ") + which + " " + number +
                        " is neither a unit nor a junction of the scenario.",
                    "Let the link end at an element of its scenario, or leave it out."));
      return;
    }
    CheckName(place, end, *node, which);
    const std::string_view type = node->junction != nullptr ? kJunction : kProcessOccurrence;
    if (end.type == type) return;
    findings_.push_back(FindingAt(Severity::kError, place,
                                  std::string("Its ") + which + " " + number + " is called '" +
                                      end.type + "', and is a '" + std::string(type) + "'.",
                                  "Write the kind of the element between the brackets."));
  }

  void CheckName(const ElementEntry& link, const LinkEnd& end, const Node& node,
                 const char* which) {
    const ElementEntry& place = model_.At(node.place);
    if (end.name.empty() || IsNameOf(end, node) || ids_.count(place.name) > 1) return;
    findings_.push_back(FindingAt(Severity::kWarning, link,
                                  std::string("Its ") + which + " is called '" + end.name +
                                      "', but its number is that of " + WithLine(place) +
                                      "; the plan goes by the number.",
                                  "Write the number and the name of the element that is meant."));
  }

  // Or of another element with that number, which was told.
  bool IsNameOf(const LinkEnd& end, const Node& node) const {
    const auto [from, to] = byNumber_.equal_range(end.number);
    return std::any_of(from, to, [&](const auto& entry) {
      const Node& other = nodes_[entry.second];
      return other.scenario == node.scenario && model_.At(other.place).name == end.name;
    });
  }

  void CheckWords(const Node& node) {
    const JunctionEntry& junction = *node.junction;
    CheckWord(node, "cardinality", junction.cardinality, kCardinalities);
    CheckWord(node, "type", junction.type, kTypes);
  }

  void CheckWord(const Node& node, const std::string& what, const std::string& word,
                 std::span<const std::string_view> known) {
    if (std::find(known.begin(), known.end(), word) != known.end()) return;
    std::string all;
    for (const std::string_view each : known)
      all += (all.empty() ? "'" : ", '") + std::string(each) + "'";
    Warn(node,
         "Its " + what + " '" + word + "' is none that the plan knows." + Suggestion(word, known),
         "Write one of " + all + ".");
  }

  // Several ways on the side that has one.
  void CheckDirection(const Node& node, std::size_t in, std::size_t out) {
    const std::string& cardinality = node.junction->cardinality;
    const bool swapped = (cardinality == kFanOut && in > 1 && out <= 1) ||
                         (cardinality == kFanIn && out > 1 && in <= 1);
    if (!swapped) return;
    Warn(node,
         "It is called '" + cardinality + "', but it has " + Count(in, "way") + " in and " +
             Count(out, "way") + " out.",
         "Write the other of the two, or turn its links round.");
  }

  // Whether none of its links is among those whose ends aren't known.
  bool HasAllLinks(const Node& node) const {
    return model_.At(node.place).isNumberKnown && !loose_.contains(node.scenario);
  }

  void CheckTwin(const LinkEntry& link) {
    const auto key = std::tuple(link.scenario, link.origin.number, link.destination.number);
    const auto [first, isNew] = pairs_.try_emplace(key, link.place);
    if (isNew) return;
    findings_.push_back(FindingAt(Severity::kWarning, model_.At(link.place),
                                  "It joins the same two elements as " +
                                      WithLine(model_.At(first->second)) +
                                      ", so that the plan has the predecessor twice.",
                                  "Leave one of the two out."));
  }

  void AddLink(const LinkEntry& link) {
    Node* origin = Find(link.origin, link.scenario);
    Node* destination = Find(link.destination, link.scenario);
    if (!link.origin.isKnown || !link.destination.isKnown) {
      loose_.insert(link.scenario);
    } else {
      CheckTwin(link);
    }
    CheckEnd(link, link.origin, origin, "origin");
    CheckEnd(link, link.destination, destination, "destination");
    if (destination != nullptr) ++destination->ways;
    if (origin == nullptr) return;
    ++origin->waysOut;
    if (destination != nullptr) {
      origin->next.push_back(static_cast<std::size_t>(destination - nodes_.data()));
    }
  }

  void Walk(std::size_t start, Circles circles) {
    std::vector<Step> way = {{start, 0}};
    colours_[start] = Colour::kOnWay;
    while (!way.empty()) {
      Step& step = way.back();
      if (step.next == nodes_[step.node].next.size()) {
        colours_[step.node] = Colour::kDone;
        way.pop_back();
        continue;
      }
      const std::size_t to = nodes_[step.node].next[step.next++];
      if (circles == Circles::kOfJunctions && nodes_[to].junction == nullptr) continue;
      if (colours_[to] == Colour::kOnWay) ReportCircle(way, to, circles);
      if (colours_[to] != Colour::kNew) continue;
      colours_[to] = Colour::kOnWay;
      way.push_back({to, 0});
    }
  }

  void ReportCircle(const std::vector<Step>& way, std::size_t closing, Circles circles) {
    constexpr std::size_t kShown = 6;
    const auto begin = std::find_if(way.begin(), way.end(),
                                    [&](const Step& step) { return step.node == closing; });
    const bool junctionsOnly = std::all_of(
        begin, way.end(), [&](const Step& step) { return nodes_[step.node].junction != nullptr; });
    const bool ofJunctions = circles == Circles::kOfJunctions;
    if (junctionsOnly != ofJunctions) return;
    std::string names;
    std::size_t first = closing;
    std::size_t shown = 0;
    for (auto step = begin; step != way.end(); ++step) {
      const Node& node = nodes_[step->node];
      first = std::min(first, step->node,
                       [&](std::size_t a, std::size_t b) { return LineOf(a) < LineOf(b); });
      if (++shown <= kShown) {
        names += (names.empty() ? "" : ", ") + Described(NameOf(model_.At(node.place)));
      }
    }
    if (!reported_.insert(first).second) return;
    if (shown > kShown) names += " and " + std::to_string(shown - kShown) + " more";
    findings_.push_back(FindingAt(
        ofJunctions ? Severity::kError : Severity::kWarning, model_.At(nodes_[first].place),
        ofJunctions
            ? "It is part of a circle of junctions, which ends the translation: " + names + "."
            : "It is part of a circle of links, so that its tasks wait for each other: " + names +
                  ".",
        "Take out the link that leads back."));
  }

  std::size_t LineOf(std::size_t node) const { return model_.At(nodes_[node].place).line; }

  const Model& model_;
  std::vector<Finding>& findings_;
  std::vector<Node> nodes_;
  std::unordered_multimap<std::int32_t, std::size_t> byNumber_;
  std::vector<Colour> colours_;
  std::unordered_multiset<std::string> ids_;  // of junctions
  std::unordered_set<std::int32_t> unknown_;  // scenarios with an element of no known number
  std::unordered_set<std::int32_t> loose_;    // scenarios with a link whose end isn't known
  std::map<std::tuple<std::int32_t, std::int32_t, std::int32_t>, std::size_t> pairs_;
  std::unordered_set<std::size_t> reported_;  // first nodes of circles
};

}  // namespace

void CheckLinks(const Model& model, std::vector<Finding>& findings) {
  Net net(model, findings);
  net.CheckJunctions();
  net.CheckBeginnings();
  net.CheckCircles(Net::Circles::kOfJunctions);
  net.CheckCircles(Net::Circles::kOfAll);
}

}  // namespace merivane::inspect
