#include <array>
#include <map>
#include <optional>
#include <utility>

#include "difference_words.h"
#include "matching.h"
#include "model.h"
#include "model_content.h"
#include "reconcile/plan_content.h"

namespace merivane::inspect {

using namespace reconcile;

namespace {

using Entry = ModelContent::Entry;

const std::vector<Entry>& EntriesOf(const ModelContent& model, ElementKind kind) {
  static const std::vector<Entry> kNone;
  const auto entries = model.entries.find(kind);
  return entries == model.entries.end() ? kNone : entries->second;
}

std::string PhraseSentence(const std::string& word, const std::string& old,
                           const std::string& now) {
  if (now.empty()) return "It loses its " + word + " '" + old + "'.";
  if (old.empty()) return "It has the " + word + " '" + now + "' now.";
  return "Its " + word + " is '" + now + "' instead of '" + old + "'.";
}

std::string SentenceOf(const ContentField& old, const ContentField& now) {
  switch (now.form) {
    case FieldForm::kDays:
      return DaysSentence(old.text, now.text);
    case FieldForm::kCount:
      return CountSentence(old.text, now.text);
    case FieldForm::kPhrase:
      return PhraseSentence(now.word, old.text, now.text);
    case FieldForm::kText:
      break;
  }
  return (now.text.empty() ? "It loses its " : "It has another ") + std::string(now.word) + ".";
}

bool IsSame(const ContentField& a, const ContentField& b) {
  const bool isNumber = a.form == FieldForm::kDays || a.form == FieldForm::kCount;
  return isNumber ? IsSameNumber(a.text, b.text) : a.text == b.text;
}

// The first file where that has it, or else the second alone, and its number there.
enum class In { kFirst, kSecondAlone };
using Key = std::pair<In, std::int32_t>;

class ElementNames {
 public:
  explicit ElementNames(const ModelContent& model) {
    for (const auto& [kind, entries] : model.entries) {
      for (const Entry& entry : entries) names_.try_emplace({kind, entry.number}, &entry.name);
    }
  }
  bool Has(ElementKind kind, std::int32_t number) const { return names_.contains({kind, number}); }
  ElementName Of(ElementKind kind, std::int32_t number) const {
    const auto name = names_.find({kind, number});
    return {KindName(kind), number, name == names_.end() ? "" : *name->second};
  }
  // Units and junctions share their numbers.
  ElementName OfEnd(std::int32_t number) const {
    return Of(Has(ElementKind::kJunction, number) ? ElementKind::kJunction : ElementKind::kUnit,
              number);
  }

 private:
  std::map<std::pair<ElementKind, std::int32_t>, const std::string*> names_;
};

class ContentComparison {
 public:
  ContentComparison(const ModelContent& before, const ModelContent& after)
      : before_(before), after_(after), namesBefore_(before), namesAfter_(after) {}

  std::vector<MergeChange> Run() {
    for (const ElementKind kind : {ElementKind::kScenario, ElementKind::kProcess,
                                   ElementKind::kObject, ElementKind::kFact}) {
      CompareEntries(kind, Within::kModel);
    }
    CompareEntries(ElementKind::kUnit, Within::kScenario);
    CompareEntries(ElementKind::kJunction, Within::kScenario);
    CompareParents();
    CompareUses();
    CompareLinks();
    return std::move(changes_);
  }

 private:
  enum class Within { kModel, kScenario };                      // where a name is looked for
  using MatchedNumbers = std::map<std::int32_t, std::int32_t>;  // of the second file to the first

  void Add(ChangeKind kind, ElementName element, std::string sentence) {
    changes_.push_back({kind, std::move(element), std::move(sentence), {}, {}});
  }
  static ElementName NameOf(ElementKind kind, const Entry& entry) {
    return {KindName(kind), entry.number, entry.name};
  }

  std::vector<MatchItem> ItemsOf(const ModelContent& model, ElementKind kind, Within within) {
    std::vector<MatchItem> items;
    for (const Entry& entry : EntriesOf(model, kind)) {
      items.push_back({entry.number, entry.name, within == Within::kScenario ? entry.owner : 0});
    }
    return items;
  }

  void CompareEntries(ElementKind kind, Within within) {
    const auto items = ItemsOf(before_, kind, within);
    const auto others = ItemsOf(after_, kind, within);
    const Matching matching(
        items, others, [&](std::int32_t owner) { return Before(ElementKind::kScenario, owner); });
    const std::vector<Entry>& old = EntriesOf(before_, kind);
    const std::vector<Entry>& now = EntriesOf(after_, kind);
    for (std::size_t index = 0; index < now.size(); ++index) {
      const auto match = matching.OfAfter()[index];
      if (!match) {
        Add(ChangeKind::kAdded, NameOf(kind, now[index]), kIsNew);
        continue;
      }
      numbers_[kind].emplace(now[index].number, old[*match].number);
      CompareEntry(kind, old[*match], now[index]);
      if (within == Within::kScenario) CompareScenario(kind, old[*match], now[index]);
    }
    for (const std::size_t index : matching.Gone()) {
      Add(ChangeKind::kRemoved, NameOf(kind, old[index]), kIsGone);
    }
  }

  void CompareEntry(ElementKind kind, const Entry& old, const Entry& now) {
    const ElementName name = NameOf(kind, now);
    if (old.name != now.name) Add(ChangeKind::kChanged, name, NameSentence(old.name));
    for (std::size_t field = 0; field < now.fields.size(); ++field) {
      if (IsSame(old.fields[field], now.fields[field])) continue;
      Add(ChangeKind::kChanged, name, SentenceOf(old.fields[field], now.fields[field]));
    }
  }

  void CompareScenario(ElementKind kind, const Entry& old, const Entry& now) {
    if (Before(ElementKind::kScenario, now.owner) == old.owner) return;
    Add(ChangeKind::kChanged, NameOf(kind, now),
        "It stands in " + Described(namesAfter_.Of(ElementKind::kScenario, now.owner)) +
            " instead of " + Described(namesBefore_.Of(ElementKind::kScenario, old.owner)) + ".");
  }

  // The units that scenarios decompose.
  void CompareParents() {
    std::map<std::int32_t, const Entry*> old;
    for (const Entry& entry : EntriesOf(before_, ElementKind::kScenario)) {
      old.emplace(entry.number, &entry);
    }
    const auto described = [](const ElementNames& names, std::int32_t unit) {
      return unit == 0 ? std::string("nothing") : Described(names.Of(ElementKind::kUnit, unit));
    };
    for (const Entry& entry : EntriesOf(after_, ElementKind::kScenario)) {
      const auto number = Before(ElementKind::kScenario, entry.number);
      if (!number) continue;
      const std::int32_t parent = old.at(*number)->owner;
      const auto now =
          entry.owner == 0 ? std::optional(0) : Before(ElementKind::kUnit, entry.owner);
      if (now == parent) continue;
      Add(ChangeKind::kChanged, NameOf(ElementKind::kScenario, entry),
          "It decomposes " + described(namesAfter_, entry.owner) + " instead of " +
              described(namesBefore_, parent) + ".");
    }
  }

  std::optional<std::int32_t> Before(ElementKind kind, std::int32_t after) const {
    const auto numbers = numbers_.find(kind);
    if (numbers == numbers_.end()) return std::nullopt;
    const auto number = numbers->second.find(after);
    return number == numbers->second.end() ? std::nullopt : std::optional(number->second);
  }

  Key KeyOf(std::initializer_list<ElementKind> kinds, std::int32_t after) const {
    for (const ElementKind kind : kinds) {
      if (const auto number = Before(kind, after)) return {In::kFirst, *number};
    }
    return {In::kSecondAlone, after};
  }

  void CompareUses() {
    const auto named = [](const ElementNames& names, const auto& use) {
      return "Of " +
             Described({KindName(ElementKind::kObject), use.first.second, use.second.object}) +
             " for " + Described(names.Of(ElementKind::kUnit, use.first.first));
    };
    const ElementName element{KindName(ElementKind::kObjectUse), std::nullopt, ""};
    std::map<std::pair<Key, Key>,
             const std::pair<const std::pair<std::int32_t, std::int32_t>, ModelContent::Use>*>
        rest;
    for (const auto& use : before_.uses) {
      rest[{{In::kFirst, use.first.first}, {In::kFirst, use.first.second}}] = &use;
    }
    for (const auto& use : after_.uses) {
      const auto old = rest.find({KeyOf({ElementKind::kUnit}, use.first.first),
                                  KeyOf({ElementKind::kObject}, use.first.second)});
      if (old == rest.end()) {
        Add(ChangeKind::kAdded, element, named(namesAfter_, use) + ".");
        continue;
      }
      const ModelContent::Use& was = old->second->second;
      if (was.laborRule != use.second.laborRule) {
        Add(ChangeKind::kChanged, element,
            named(namesAfter_, use) + ". " +
                PhraseSentence("labor rule", was.laborRule, use.second.laborRule));
      } else if (!IsSameNumber(was.quantity, use.second.quantity)) {
        Add(ChangeKind::kChanged, element,
            named(namesAfter_, use) + ": " + use.second.quantity + " instead of " + was.quantity +
                ".");
      }
      rest.erase(old);
    }
    for (const auto& [key, use] : rest) {
      Add(ChangeKind::kRemoved, element, named(namesBefore_, *use) + ".");
    }
  }

  void CompareLinks() {
    using LinkKey = std::array<Key, 3>;
    std::multimap<LinkKey, ModelContent::Link> rest;
    for (const auto& link : before_.links) {
      const auto& [scenario, from, to] = link;
      rest.emplace(LinkKey{Key{In::kFirst, scenario}, Key{In::kFirst, from}, Key{In::kFirst, to}},
                   link);
    }
    const auto add = [this](ChangeKind kind, const ElementNames& names, const auto& link) {
      Add(kind, {KindName(ElementKind::kLink), std::nullopt, ""},
          LinkSentence(names.OfEnd(std::get<1>(link)), names.OfEnd(std::get<2>(link))));
    };
    for (const auto& link : after_.links) {
      const auto& [scenario, from, to] = link;
      const auto old = rest.find({KeyOf({ElementKind::kScenario}, scenario),
                                  KeyOf({ElementKind::kUnit, ElementKind::kJunction}, from),
                                  KeyOf({ElementKind::kUnit, ElementKind::kJunction}, to)});
      if (old != rest.end()) {
        rest.erase(old);
      } else {
        add(ChangeKind::kAdded, namesAfter_, link);
      }
    }
    for (const auto& [key, link] : rest) add(ChangeKind::kRemoved, namesBefore_, link);
  }

  const ModelContent& before_;
  const ModelContent& after_;
  ElementNames namesBefore_;
  ElementNames namesAfter_;
  std::map<ElementKind, MatchedNumbers> numbers_;
  std::vector<MergeChange> changes_;
};

}  // namespace

std::vector<MergeChange> DifferencesBetween(const ModelContent& before, const ModelContent& after) {
  return ContentComparison(before, after).Run();
}

}  // namespace merivane::inspect
