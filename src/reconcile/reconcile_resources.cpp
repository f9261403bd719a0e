#include <algorithm>
#include <utility>

#include "reconcile/model_limits.h"
#include "reconcile/plan_content.h"
#include "reconciliation.h"
#include "runtime/text.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::reconcile {

namespace {

// As the reader takes them from a text.
constexpr std::size_t kLongestName = 248;
constexpr std::size_t kLongestQuantity = 10;

struct Term {
  std::string alias;
  std::string units;
};

bool Says(const std::string& rule, const std::vector<Term>& terms) {
  return std::all_of(terms.begin(), terms.end(), [&](const Term& term) {
    return IsSameNumber(translator::UnitsInRule(rule, term.alias), term.units);
  });
}

std::string RuleOf(const std::vector<Term>& terms, bool withOnes) {
  std::string rule;
  for (const Term& term : terms) {
    const bool isOne = IsSameNumber(term.units, "1");
    if (isOne && !withOnes) continue;
    if (!rule.empty()) rule += " AND ";
    rule += term.alias + "#" + (isOne ? "1" : std::to_string(ToInt32(Value(term.units))));
  }
  return Left(rule, kLongestRule);
}

// Behind which resource that both plans have, and as which one there; the numbers of the rows may
// be others in each program.
using PlaceInList = std::pair<std::string, int>;

// Of the resources that the other plan doesn't have.
std::map<PlaceInList, std::string> PlacesOfOthers(const PlanContent& plan,
                                                  const PlanContent& other) {
  std::map<std::int32_t, std::string> inOrder;
  for (const auto& [name, resource] : plan.resources) {
    if (resource.row) inOrder[*resource.row] = name;
  }
  std::map<PlaceInList, std::string> places;
  PlaceInList place;
  for (const auto& [row, name] : inOrder) {
    if (other.resources.contains(name)) {
      place = {name, 0};
    } else {
      places[place] = name;
      ++place.second;
    }
  }
  return places;
}

}  // namespace

void Reconciliation::TellResource(const std::string& name, std::string sentence,
                                  std::string advice) {
  const auto resource = wanted_.resources.find(name);
  const bool isThere = resource != wanted_.resources.end();
  remarks_.push_back({isThere ? resource->second.row : std::nullopt, "resource", name,
                      std::move(sentence), std::move(advice)});
}

// A program keeps the UIDs of the file that it opened, or counts anew.
bool Reconciliation::KnowsUids() const {
  bool isAnyKnown = false;
  for (const auto& [name, resource] : wanted_.resources) {
    const auto given = given_.resources.find(name);
    if (given == given_.resources.end()) continue;
    if (!resource.uid || resource.uid != given->second.row) return false;
    isAnyKnown = true;
  }
  return isAnyKnown;
}

// The earlier names of those with a new one: by the UID, or where the UIDs are others, of the one
// that is gone from the place.
std::map<std::string, std::string> Reconciliation::RenamedResources() const {
  std::map<std::string, std::string> renamed;
  const std::map<PlaceInList, std::string> gone = PlacesOfOthers(given_, wanted_);
  if (!KnowsUids()) {
    for (const auto& [place, name] : PlacesOfOthers(wanted_, given_)) {
      const auto before = gone.find(place);
      if (before != gone.end()) renamed[name] = before->second;
    }
    return renamed;
  }
  std::map<std::int64_t, std::string> goneByUid;
  for (const auto& [place, name] : gone) goneByUid[*given_.resources.at(name).row] = name;
  for (const auto& [name, resource] : wanted_.resources) {
    const auto before = goneByUid.find(resource.uid.value_or(0));
    if (before != goneByUid.end() && !given_.resources.contains(name)) {
      renamed[name] = before->second;
    }
  }
  return renamed;
}

void Reconciliation::MatchResources() {
  for (const auto& [name, row] : wanted_.namesakes) {
    if (given_.namesakes.contains(name)) continue;
    remarks_.push_back({row, "resource", name,
                        "Another one has its name; a model holds one of a name.",
                        "Give it a name of its own."});
  }
  const std::map<std::string, std::string> renamed = RenamedResources();
  std::map<std::string, std::int32_t>& objects = objectBefore_;
  for (const auto& [number, object] : edit_.Model().objects) {
    if (object.sent) objects.emplace(object.name, number);
  }
  for (const auto& [name, resource] : wanted_.resources) {
    const auto known = objects.find(name);
    if (given_.resources.contains(name) && known != objects.end()) {
      objectOf_[name] = known->second;
      continue;
    }
    if (name.empty() || name.size() > kLongestName ||
        name.find_first_of(",\"'\r\n") != std::string::npos) {
      TellResource(name, "A model can't hold its name, so it stays out.",
                   "Give it one without commas, quotes and line breaks.");
      continue;
    }
    const auto earlier = renamed.find(name);
    if (earlier != renamed.end() && objects.contains(earlier->second)) {
      objectOf_[name] = objects.at(earlier->second);
      edit_.NameObject(objectOf_[name], name);
    } else {
      objectOf_[name] = edit_.AddObject(name);
    }
  }
}

void Reconciliation::TakeResources() {
  const std::map<std::int32_t, ModelRows::Object> before = edit_.Model().objects;
  MatchResources();
  std::set<std::int32_t> kept;
  for (const auto& [name, object] : objectOf_) {
    kept.insert(object);
    const PlanContent::Resource& resource = wanted_.resources.at(name);
    const auto earlier = before.find(object);
    const auto given = earlier == before.end() ? given_.resources.end()
                                               : given_.resources.find(earlier->second.name);
    const bool isNew = given == given_.resources.end();
    if (isNew || !IsSameNumber(resource.quantity, given->second.quantity)) {
      if (resource.quantity.size() <= kLongestQuantity && IsNumericText(resource.quantity)) {
        edit_.SetObject(object, "Quantity", Value(ToDouble(resource.quantity)));
      } else if (!resource.quantity.empty()) {
        TellResource(name, "A model can't hold its quantity.", "Give it one of up to 10 digits.");
      }
    }
    const std::string note = isNew ? "" : given->second.note;
    if (resource.note == note) continue;
    if (!HoldsLines(resource.note)) {
      TellResource(name, "Its note has a line that would end it in a text.", "Change that line.");
    } else {
      edit_.SetObject(object, "Glossary",
                      resource.note.empty() ? Value() : Value(resource.note + "\r\n"));
    }
  }
  for (const auto& [number, object] : before) {
    const bool isGone = object.sent && given_.resources.contains(object.name) &&
                        !kept.contains(number) && !wanted_.resources.contains(object.name);
    if (isGone) edit_.RemoveObject(number);
  }
}

void Reconciliation::TakeAssignments() {
  std::set<std::int32_t> units = decomposedBefore_;
  for (const PlanContent* plan : {&std::as_const(wanted_), &given_}) {
    for (const auto& [key, amount] : plan->assignments) units.insert(key.first);
  }
  const std::set<std::int32_t> decomposed = edit_.DecomposedUnits();
  for (const std::int32_t unit : units) {
    if (wanted_.tasks.contains(unit)) TakeAssignmentsOf(unit, decomposed);
  }
}

// What the plan would show of a unit that nothing stands below any more.
std::map<std::int32_t, std::string> Reconciliation::AmountsInModel(std::int32_t unit) const {
  const ModelRows& model = edit_.Model();
  std::map<std::int32_t, std::string> amounts;
  for (const auto& [user, object] : model.uses) {
    if (user != unit) continue;
    const ModelRows::Object& row = model.objects.at(object);
    if (!row.sent || row.alias.empty()) continue;
    amounts[object] = translator::UnitsInRule(model.units.at(unit).laborRule, row.alias);
  }
  return amounts;
}

std::map<std::int32_t, std::string> Reconciliation::AmountsOf(
    const PlanContent& plan, const std::map<std::string, std::int32_t>& objects,
    std::int32_t unit) const {
  std::map<std::int32_t, std::string> amounts;
  for (auto row = plan.assignments.lower_bound({unit, ""});
       row != plan.assignments.end() && row->first.first == unit; ++row) {
    const auto object = objects.find(row->first.second);
    if (object != objects.end()) amounts[object->second] = row->second;
  }
  return amounts;
}

// Where the plan assigns otherwise than the model, and nowhere else.
void Reconciliation::TakeAssignmentsOf(std::int32_t unit,
                                       const std::set<std::int32_t>& decomposed) {
  auto amounts = AmountsOf(wanted_, objectOf_, unit);
  if (decomposed.contains(unit)) {
    if (amounts.empty()) return;
    Tell(unit,
         "It has resources itself and tasks below it; a model gives resources to the tasks below "
         "only.",
         "Assign them there.");
    return;
  }
  const auto before = decomposedBefore_.contains(unit) ? AmountsInModel(unit)
                                                       : AmountsOf(given_, objectBefore_, unit);
  const auto isSame = [](const auto& a, const auto& b) {
    return a.first == b.first && IsSameNumber(a.second, b.second);
  };
  if (std::equal(before.begin(), before.end(), amounts.begin(), amounts.end(), isSame)) return;
  for (const auto& [object, amount] : before) {
    if (!amounts.contains(object)) edit_.RemoveUse(unit, object);
  }
  for (auto each = amounts.begin(); each != amounts.end();) {
    const ModelRows::Object& object = edit_.Model().objects.at(each->first);
    if (!before.contains(each->first) && object.alias.empty()) {
      Tell(unit,
           "Resource '" + object.name +
               "' has no alias in the model, without which it is assigned to nothing.",
           "Give it one in the model.");
      each = amounts.erase(each);
      continue;
    }
    if (!before.contains(each->first)) edit_.AddUse(unit, each->first);
    ++each;
  }
  SettleRule(unit, amounts);
}

// An alias that begins another one has to stand in front of it, so the short ones come first.
void Reconciliation::SettleRule(std::int32_t unit,
                                const std::map<std::int32_t, std::string>& units) {
  std::vector<Term> terms;
  for (const auto& [object, amount] : units) {
    const ModelRows::Object& row = edit_.Model().objects.at(object);
    if (!HoldsUnits(amount)) {
      Tell(unit,
           "It has " + amount + " units of resource '" + row.name +
               "'; a model holds whole "
               "ones up to 9.",
           "Change the units.");
      continue;
    }
    terms.push_back({row.alias, amount});
  }
  const std::string before = edit_.Model().units.at(unit).laborRule;
  if (Says(before, terms)) return;
  std::stable_sort(terms.begin(), terms.end(),
                   [](const Term& a, const Term& b) { return a.alias.size() < b.alias.size(); });
  for (const bool withOnes : {true, false}) {
    const std::string rule = RuleOf(terms, withOnes);
    if (!Says(rule, terms)) continue;
    edit_.SetLaborRule(unit, rule);
    return;
  }
  Tell(unit, "The units of its resources don't fit into a labor rule of 25 characters.",
       "Set them in the model.");
}

}  // namespace merivane::reconcile
