#include "model.h"

#include <utility>

#include "program/model_words.h"
#include "runtime/text.h"

namespace merivane::inspect {

using namespace program;

bool OffersPaths(const JunctionEntry& junction) {
  return junction.cardinality == kFanOut && Holds(junction.type, "OR");
}

const char* KindName(ElementKind kind) {
  switch (kind) {
    case ElementKind::kProcess:
      return "process";
    case ElementKind::kObject:
      return "object";
    case ElementKind::kFact:
    case ElementKind::kJunctionFact:
      return "fact";
    case ElementKind::kScenario:
      return "scenario";
    case ElementKind::kUnit:
      return "unit";
    case ElementKind::kObjectUse:
      return "object of a unit";
    case ElementKind::kJunction:
      return "junction";
    case ElementKind::kLink:
      break;
  }
  return "link";
}

ElementName NameOf(const ElementEntry& place) {
  ElementName name{KindName(place.kind), std::nullopt, place.name};
  if (place.isNumberKnown) name.number = place.number;
  return name;
}

Finding FindingAt(Severity severity, const ElementEntry& place, std::string sentence,
                  std::string advice) {
  return {severity, place.line, NameOf(place), std::move(sentence), std::move(advice)};
}

std::string Described(const ElementName& element) {
  std::string text = element.kind;
  if (element.number) text += " " + std::to_string(*element.number);
  if (!element.name.empty()) text += " '" + element.name + "'";
  return text;
}

std::string WithLine(const ElementEntry& place) {
  return Described(NameOf(place)) + " (line " + std::to_string(place.line) + ")";
}

}  // namespace merivane::inspect
