// A model text as the reader took it, element by element, each with its place in the text: what a
// check looks through. Of a project's tables ModelSnapshot is what a merge changes, ModelContent
// what two models are compared by, and pictures::ProcessModel what is drawn. Texts are
// Windows-1252.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "inspect/finding.h"
#include "neutraltext/modGlobal.h"

namespace merivane::inspect {

using namespace neutraltext;

struct ElementEntry {
  ElementKind kind = ElementKind::kProcess;
  std::int32_t number = 0;
  std::string name;
  std::size_t line = 0;
  bool isNumberKnown =
      true;  // false: the text's is none, and `number` a stand-in that no other has
};

// A value that an element has not itself but took over from an earlier one.
struct CarriedValue {
  std::string label;  // "glossary"
  std::size_t from;   // index into Model::elements
};

struct ProcessEntry {
  std::size_t place;
  std::size_t glossarySize;
};

struct ObjectEntry {
  std::size_t place;
  std::string alias;
  std::string type;  // the second of the two
};

struct ScenarioEntry {
  std::size_t place;
  std::int32_t parent;  // number of the unit that it decomposes; 0 for a top scenario
  bool isParentKnown = true;
};

struct UnitEntry {
  std::size_t place = 0;
  std::int32_t scenario = 0;
  std::string duration;
  std::string laborRule;
  std::int32_t process = 0;
  bool isProcessKnown = true;
  bool hasCycleTime = false;          // an object of its own gave one
  std::vector<CarriedValue> carried;  // by its last object
};

struct ObjectUse {
  std::size_t unit;         // its place
  const std::string* name;  // of the object, in Model::objectNames
  std::size_t line;
  std::int32_t object;
  bool isKnown = true;  // false: the text holds no number
};

struct JunctionEntry {
  std::size_t place;
  std::int32_t scenario;
  std::string cardinality;
  std::string type;
};

struct JunctionFact {
  std::size_t junction;  // index into Model::junctions
  std::string name;
};

struct LinkEnd {
  std::int32_t number;
  std::string type;
  std::string name;
  bool isKnown = true;  // false: the text holds no number
};

struct LinkEntry {
  std::size_t place;
  std::int32_t scenario;
  std::string id;
  LinkEnd origin;
  LinkEnd destination;
};

struct Model {
  std::vector<ElementEntry> elements;  // of all elements with a number, in the order of the text
  std::vector<ProcessEntry> processes;
  std::vector<ObjectEntry> objects;
  std::vector<std::size_t> facts;
  std::vector<ScenarioEntry> scenarios;
  std::vector<UnitEntry> units;
  std::vector<ObjectUse> objectUses;
  std::unordered_set<std::string> objectNames;
  std::vector<JunctionEntry> junctions;
  std::vector<JunctionFact> junctionFacts;
  std::vector<LinkEntry> links;

  const ElementEntry& At(std::size_t place) const { return elements[place]; }
};

// A fan-out that a path fact can prune.
bool OffersPaths(const JunctionEntry& junction);

const char* KindName(ElementKind kind);
ElementName NameOf(const ElementEntry& place);

// A finding at an element.
Finding FindingAt(Severity severity, const ElementEntry& place, std::string sentence,
                  std::string advice);

// "unit 3 'Sand the hull' (line 12)".
std::string WithLine(const ElementEntry& place);

}  // namespace merivane::inspect
