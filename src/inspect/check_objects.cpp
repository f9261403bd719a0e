#include <unordered_set>

#include "model_checks.h"
#include "runtime/text.h"

namespace merivane::inspect {

namespace {

// The aliases that a rule names: in each term what stands in front of "#".
std::vector<std::string> AliasesIn(const std::string& rule) {
  constexpr std::string_view kAnd = " AND ";
  std::vector<std::string> aliases;
  for (std::size_t from = 0; from < rule.size();) {
    const std::size_t end = std::min(rule.find(kAnd, from), rule.size());
    const std::string term = rule.substr(from, end - from);
    aliases.push_back(Trim(term.substr(0, term.find('#'))));
    from = end + kAnd.size();
  }
  return aliases;
}

}  // namespace

void CheckObjects(const Model& model, std::vector<Finding>& findings) {
  constexpr std::string_view kNoRule = "None";
  std::unordered_set<std::int32_t> usedNumbers;
  std::unordered_set<std::string> usedNames;
  for (const ObjectUse& use : model.objectUses) {
    usedNumbers.insert(use.object);
    usedNames.insert(use.name);
  }
  std::unordered_set<std::string> aliases;
  std::unordered_set<std::int32_t> numbers;
  for (const ObjectEntry& object : model.objects) {
    const Place& place = model.At(object.place);
    aliases.insert(object.alias);
    numbers.insert(place.number);
    if (usedNumbers.contains(place.number) || usedNames.contains(place.name)) continue;
    findings.push_back(FindingAt(Severity::kWarning, place, "No unit uses this object.",
                                 "Leave it out, or add it to the units that need it."));
  }
  for (const ObjectUse& use : model.objectUses) {
    if (numbers.contains(use.object)) continue;
    findings.push_back(FindingAt(Severity::kWarning, model.At(use.unit),
                                 "Its object " + std::to_string(use.object) + " '" + use.name +
                                     "' is not in the object pool, so that the plan doesn't have "
                                     "it.",
                                 "Write the number of an object of the pool."));
  }
  for (const Unit& unit : model.units) {
    if (unit.laborRule == kNoRule) continue;
    for (const std::string& alias : AliasesIn(unit.laborRule)) {
      if (alias.empty() || aliases.contains(alias)) continue;
      findings.push_back(FindingAt(
          Severity::kWarning, model.At(unit.place),
          "Its labor rule names '" + alias + "', which is the alias of no object.",
          "Write the alias of an object of the unit; without one, one unit of it is planned."));
    }
  }
}

}  // namespace merivane::inspect
