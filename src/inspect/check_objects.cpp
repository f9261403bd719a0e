#include <algorithm>
#include <array>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "inspect/finding.h"
#include "model_checks.h"
#include "program/model_words.h"
#include "reconcile/model_limits.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::inspect {

using namespace program;

namespace {

struct Term {
  std::string alias;
  std::string units;  // what stands behind "#"
};

// The terms of a rule, each an alias, "#" and a digit.
std::vector<Term> TermsOf(const std::string& rule) {
  constexpr std::string_view kAnd = " AND ";
  std::vector<Term> terms;
  for (std::size_t from = 0; from < rule.size();) {
    const std::size_t end = std::min(rule.find(kAnd, from), rule.size());
    const std::string term = rule.substr(from, end - from);
    const std::size_t mark = std::min(term.find('#'), term.size());
    terms.push_back(
        {Trim(term.substr(0, mark)), Trim(term.substr(std::min(mark + 1, term.size())))});
    from = end + kAnd.size();
  }
  return terms;
}

constexpr std::array kResourceTypes = {kSharedResource, kDedicatedResource, kTransport};

class Objects {
 public:
  Objects(const Model& model, std::vector<Finding>& findings) : model_(model), findings_(findings) {
    for (const ObjectEntry& object : model.objects) {
      const ElementEntry& place = model.At(object.place);
      aliases_.insert(object.alias);
      byNumber_.try_emplace(place.number, &object);
      names_.insert(place.name);
      if (!place.isNumberKnown) unnumbered_.insert(place.name);
    }
  }

  void CheckPool() {
    std::unordered_set<std::int32_t> usedNumbers;
    for (const ObjectUse& use : model_.objectUses) usedNumbers.insert(use.object);
    for (const ObjectEntry& object : model_.objects) {
      const ElementEntry& place = model_.At(object.place);
      const std::string suggestion = Suggestion(object.type, kResourceTypes);
      if (!suggestion.empty()) {
        Warn(place,
             "Its type '" + object.type + "' is no resource, so that the plan doesn't have it." +
                 suggestion,
             "Write the type as it stands there.");
      }
      if (usedNumbers.contains(place.number) || model_.objectNames.contains(place.name)) continue;
      Warn(place, "No unit uses this object.",
           "Leave it out, or add it to the units that need it.");
    }
  }

  void CheckUses() {
    for (const ObjectUse& use : model_.objectUses) {
      if (!use.isKnown || unnumbered_.contains(*use.name)) continue;
      const auto object = byNumber_.find(use.object);
      if (object != byNumber_.end() && names_.contains(*use.name)) continue;
      const ElementEntry& unit = model_.At(use.unit);
      const std::string what = "Its object " + std::to_string(use.object) + " '" + *use.name + "'";
      if (object == byNumber_.end()) {
        Warn(unit, what + " is not in the object pool, so that the plan doesn't have it.",
             "Write the number of an object of the pool.");
      } else {
        Warn(unit,
             what + " bears no name of the object pool, where " + std::to_string(use.object) +
                 " is '" + model_.At(object->second->place).name +
                 "'; the plan goes by the name, and doesn't have it.",
             "Write the name of the object as it stands in the pool.");
      }
    }
  }

  void CheckRules() {
    constexpr std::string_view kNoRule = "None";
    for (const UnitEntry& unit : model_.units) {
      if (unit.laborRule == kNoRule || unit.laborRule.empty()) continue;
      std::vector<Term> terms = TermsOf(unit.laborRule);
      const bool isCut = unit.laborRule.size() >= reconcile::kLongestRule;  // told there
      if (isCut) terms.pop_back();
      for (const Term& term : terms) CheckTerm(model_.At(unit.place), term);
    }
  }

 private:
  void Warn(const ElementEntry& place, std::string sentence, std::string advice) {
    findings_.push_back(
        FindingAt(Severity::kWarning, place, std::move(sentence), std::move(advice)));
  }

  void CheckTerm(const ElementEntry& unit, const Term& term) {
    if (term.alias.empty()) return;
    if (!aliases_.contains(term.alias)) {
      Warn(unit, "Its labor rule names '" + term.alias + "', which is the alias of no object.",
           "Write the alias of an object of the unit; without one, one unit of it is planned.");
      return;
    }
    const bool isDigit = term.units.size() == 1 && IsNumericText(term.units);
    if (isDigit) return;
    const std::string first = term.units.substr(0, 1);
    Warn(unit,
         "Its labor rule asks for '" + term.units + "' of '" + term.alias + "'; the plan takes " +
             (IsNumericText(first) ? first : "1") + ".",
         "Write one digit behind 'ALIAS#'.");
  }

  const Model& model_;
  std::vector<Finding>& findings_;
  std::unordered_set<std::string> aliases_;
  std::unordered_set<std::string> names_;
  std::unordered_set<std::string> unnumbered_;  // names of objects whose number isn't known
  std::unordered_map<std::int32_t, const ObjectEntry*> byNumber_;
};

}  // namespace

void CheckObjects(const Model& model, std::vector<Finding>& findings) {
  Objects objects(model, findings);
  objects.CheckPool();
  objects.CheckUses();
  objects.CheckRules();
}

}  // namespace merivane::inspect
