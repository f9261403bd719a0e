#include "model.h"

#include <utility>

#include "program/model_words.h"
#include "runtime/text.h"

namespace merivane::inspect {

using namespace program;

bool OffersPaths(const Junction& junction) {
  return junction.cardinality == kFanOut && Holds(junction.type, "OR");
}

const char* KindName(Element kind) {
  switch (kind) {
    case Element::kProcess:
      return "process";
    case Element::kObject:
      return "object";
    case Element::kFact:
    case Element::kJunctionFact:
      return "fact";
    case Element::kScenario:
      return "scenario";
    case Element::kUnit:
      return "unit";
    case Element::kObjectUse:
      return "object of a unit";
    case Element::kJunction:
      return "junction";
    case Element::kLink:
      break;
  }
  return "link";
}

ElementName NameOf(const Place& place) {
  ElementName name{KindName(place.kind), std::nullopt, place.name};
  if (place.isNumberKnown) name.number = place.number;
  return name;
}

Finding FindingAt(Severity severity, const Place& place, std::string sentence, std::string advice) {
  return {severity, place.line, NameOf(place), std::move(sentence), std::move(advice)};
}

std::string Described(const ElementName& element) {
  std::string text = element.kind;
  if (element.number) text += " " + std::to_string(*element.number);
  if (!element.name.empty()) text += " '" + element.name + "'";
  return text;
}

std::string WithLine(const Place& place) {
  return Described(NameOf(place)) + " (line " + std::to_string(place.line) + ")";
}

}  // namespace merivane::inspect
