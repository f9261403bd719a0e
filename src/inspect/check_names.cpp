#include <unordered_map>
#include <unordered_set>

#include "model_checks.h"
#include "runtime/conversions.h"
#include "runtime/text.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::inspect {

using namespace translator;

namespace {

void CheckApostrophe(const ElementEntry& place, const char* what, std::vector<Finding>& findings) {
  if (!Holds(place.name, "'")) return;
  findings.push_back(
      FindingAt(Severity::kError, place,
                std::string("Its ") + what + " holds an apostrophe, which ends the translation.",
                std::string("Change the ") + what + ", here and wherever it is used."));
}

std::unordered_set<std::int32_t> Decomposed(const Model& model) {
  std::unordered_set<std::int32_t> units;
  for (const ScenarioEntry& scenario : model.scenarios) units.insert(scenario.parent);
  return units;
}

// A name without the marks that are refused, which were told where it stands in the pool.
std::string Unmarked(const std::string& name) {
  std::string text = UpperCase(name);
  std::erase(text, '"');
  return text;
}

// A number that is read otherwise than it was meant.
void CheckDays(const ElementEntry& place, const std::string& duration,
               std::vector<Finding>& findings) {
  const double days = ToDouble(duration);
  if (Holds(duration, ",")) {
    findings.push_back(FindingAt(Severity::kWarning, place,
                                 "Commas don't count in its cycle time '" + duration +
                                     "'; the plan takes " + FixedTwo(days) + " days.",
                                 "Write a point in front of a fraction, and no other marks."));
  } else if (days > 0 && ToInt32(FixedTwo(days)) == 0) {
    findings.push_back(FindingAt(Severity::kNote, place,
                                 "Its cycle time '" + duration +
                                     "' is no whole day: a database keeps it as 0 days, an MPX "
                                     "file as " +
                                     FixedTwo(days) + ".",
                                 "Write whole days where the plan goes by way of a database."));
    findings.back().group = "cycle times under a day";
  } else if (days < 0) {
    findings.push_back(FindingAt(Severity::kWarning, place,
                                 "Its cycle time '" + duration +
                                     "' is negative, so that its task "
                                     "ends before it starts.",
                                 "Give it a cycle time of 0 or more days."));
  }
}

void CheckCycleTime(const Model& model, const UnitEntry& unit, std::vector<Finding>& findings) {
  const std::string& duration = unit.duration;
  if (IsNumericText(duration)) {
    CheckDays(model.At(unit.place), duration, findings);
    return;
  }
  findings.push_back(FindingAt(
      Severity::kWarning, model.At(unit.place),
      duration.empty() ? "It has no cycle time; the plan takes one day."
                       : "Its cycle time '" + duration + "' is no number; the plan takes one day.",
      "Give it a cycle time in days."));
}

}  // namespace

void CheckNames(const Model& model, std::vector<Finding>& findings) {
  std::unordered_map<std::string, const ProcessEntry*> processes;
  std::unordered_set<std::int32_t> numbers;
  bool allKnown = true;
  for (const ProcessEntry& process : model.processes) {
    const ElementEntry& place = model.At(process.place);
    processes.try_emplace(UpperCase(place.name), &process);
    processes.try_emplace(Unmarked(place.name), &process);
    numbers.insert(place.number);
    allKnown = allKnown && place.isNumberKnown;
  }
  const auto decomposed = Decomposed(model);
  std::unordered_set<const ProcessEntry*> noted;
  for (const UnitEntry& unit : model.units) {
    const ElementEntry& place = model.At(unit.place);
    CheckApostrophe(place, "name", findings);
    if (place.isNumberKnown && !decomposed.contains(place.number))
      CheckCycleTime(model, unit, findings);
    if (unit.isProcessKnown && allKnown && !numbers.contains(unit.process)) {
      findings.push_back(FindingAt(Severity::kWarning, place,
                                   "There is no process " + std::to_string(unit.process) +
                                       " in the pool; its task is told by name alone.",
                                   "Write the number of its process."));
    }
    const auto process = processes.find(UpperCase(place.name));
    if (process == processes.end() && processes.contains(Unmarked(place.name))) continue;
    if (process == processes.end()) {
      findings.push_back(FindingAt(Severity::kError, place,
                                   "No process of the pool has its name, which ends the "
                                   "translation.",
                                   "Give it the name of its process."));
      continue;
    }
    const ProcessEntry* entry = process->second;
    if (entry->glossarySize <= kLongestGlossary || !noted.insert(entry).second) continue;
    findings.push_back(
        FindingAt(Severity::kError, model.At(entry->place),
                  "Its glossary has " + std::to_string(entry->glossarySize) +
                      " characters, more than the note of a task takes, which ends "
                      "the translation.",
                  "Shorten the glossary to " + std::to_string(kLongestGlossary) + " characters."));
  }
  for (const ObjectEntry& object : model.objects) {
    CheckApostrophe(model.At(object.place), "name", findings);
  }
  for (const JunctionEntry& junction : model.junctions) {
    CheckApostrophe(model.At(junction.place), "ID", findings);
  }
}

}  // namespace merivane::inspect
