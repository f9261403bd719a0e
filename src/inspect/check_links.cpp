#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "model_checks.h"

namespace merivane::inspect {

namespace {

constexpr std::string_view kProcessOccurrence = "Process-Occurrence";
constexpr std::string_view kJunction = "Junction";

// A unit or a junction with its links.
struct Node {
  std::size_t place = 0;
  std::int32_t scenario = 0;
  bool isJunction = false;
  std::size_t ways = 0;  // in
  std::vector<std::size_t> next;
};

class Net {
 public:
  Net(const Model& model, std::vector<Finding>& findings) : model_(model), findings_(findings) {
    for (const Unit& unit : model.units) AddNode(unit.place, unit.scenario, false);
    for (const Junction& junction : model.junctions) {
      AddNode(junction.place, junction.scenario, true);
    }
    for (const Link& link : model.links) AddLink(link);
  }

  void CheckJunctions() {
    for (const Node& node : nodes_) {
      if (!node.isJunction) continue;
      const std::size_t in = node.ways;
      const std::size_t out = node.next.size();
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
      if (node.ways == 0) starts.push_back(&node);
    }
    std::stable_sort(starts.begin(), starts.end(), [&](const Node* a, const Node* b) {
      return a->isJunction && !a->next.empty() && !(b->isJunction && !b->next.empty());
    });
    for (const Node* node : starts) {
      const auto [first, isNew] = beginnings.try_emplace(node->scenario, node->place);
      if (isNew || node->isJunction) continue;
      Warn(*node,
           "Nothing leads to it, and its scenario begins with " +
               WithLine(model_.At(first->second)) + " already.",
           "Link it behind the unit or junction that it follows.");
    }
  }

  // Circles of junctions alone, or those with a unit among them. Depth first; a link to a node that
  // is still on the way closes a circle.
  void CheckCircles(bool ofJunctions) {
    colours_.assign(nodes_.size(), Colour::kNew);
    for (std::size_t start = 0; start < nodes_.size(); ++start) {
      if (colours_[start] == Colour::kNew && (!ofJunctions || nodes_[start].isJunction)) {
        Walk(start, ofJunctions);
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
    return (count == 0 ? "no" : std::to_string(count)) + " " + word + (count == 1 ? "" : "s");
  }

  void Warn(const Node& node, std::string sentence, std::string advice) {
    findings_.push_back(FindingAt(Severity::kWarning, model_.At(node.place), std::move(sentence),
                                  std::move(advice)));
  }

  void AddNode(std::size_t place, std::int32_t scenario, bool isJunction) {
    byNumber_.emplace(model_.At(place).number, nodes_.size());
    nodes_.push_back({place, scenario, isJunction, 0, {}});
  }

  Node* Find(const LinkEnd& end, std::int32_t scenario) {
    const auto [from, to] = byNumber_.equal_range(end.number);
    for (auto entry = from; entry != to; ++entry) {
      Node& node = nodes_[entry->second];
      if (node.scenario == scenario) return &node;
    }
    return nullptr;
  }

  void CheckEnd(const Link& link, const LinkEnd& end, const Node* node, const char* which) {
    const std::string number = std::to_string(end.number);
    const Place& place = model_.At(link.place);
    if (node == nullptr) {
      findings_.push_back(
          FindingAt(Severity::kError, place,
                    std::string("Its ") + which + " " + number +
                        " is neither a unit nor a junction of the scenario.",
                    "Let the link end at an element of its scenario, or leave it out."));
      return;
    }
    const std::string_view type = node->isJunction ? kJunction : kProcessOccurrence;
    if (end.type == type) return;
    findings_.push_back(FindingAt(Severity::kError, place,
                                  std::string("Its ") + which + " " + number + " is called '" +
                                      end.type + "', and is a '" + std::string(type) + "'.",
                                  "Write the kind of the element between the brackets."));
  }

  void AddLink(const Link& link) {
    Node* origin = Find(link.origin, link.scenario);
    Node* destination = Find(link.destination, link.scenario);
    CheckEnd(link, link.origin, origin, "origin");
    CheckEnd(link, link.destination, destination, "destination");
    if (destination != nullptr) ++destination->ways;
    if (origin == nullptr) return;
    if (destination != nullptr) {
      origin->next.push_back(static_cast<std::size_t>(destination - nodes_.data()));
    }
  }

  void Walk(std::size_t start, bool ofJunctions) {
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
      if (ofJunctions && !nodes_[to].isJunction) continue;
      if (colours_[to] == Colour::kOnWay) ReportCircle(way, to, ofJunctions);
      if (colours_[to] != Colour::kNew) continue;
      colours_[to] = Colour::kOnWay;
      way.push_back({to, 0});
    }
  }

  void ReportCircle(const std::vector<Step>& way, std::size_t closing, bool ofJunctions) {
    constexpr std::size_t kShown = 6;
    const auto begin = std::find_if(way.begin(), way.end(),
                                    [&](const Step& step) { return step.node == closing; });
    const bool junctionsOnly = std::all_of(
        begin, way.end(), [&](const Step& step) { return nodes_[step.node].isJunction; });
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
  std::unordered_set<std::size_t> reported_;  // first nodes of circles
};

}  // namespace

void CheckLinks(const Model& model, std::vector<Finding>& findings) {
  Net net(model, findings);
  net.CheckJunctions();
  net.CheckBeginnings();
  net.CheckCircles(true);
  net.CheckCircles(false);
}

}  // namespace merivane::inspect
