// A model text as the reader took it, element by element, each with its place in the text. Texts
// are Windows-1252.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "inspect/finding.h"
#include "neutraltext/reader_listener.h"

namespace merivane::inspect {

using namespace neutraltext;

struct Place {
  Element kind = Element::kProcess;
  std::int32_t number = 0;
  std::string name;
  std::size_t line = 0;
};

// A value that an element has not itself but took over from an earlier one.
struct CarriedValue {
  std::string label;  // "glossary"
  std::size_t from;   // index into Model::places
};

struct ProcessEntry {
  std::size_t place;
  std::size_t glossarySize;
};

struct ObjectEntry {
  std::size_t place;
  std::string alias;
};

struct ScenarioEntry {
  std::size_t place;
  std::int32_t parent;  // number of the unit that it decomposes; 0 for a top scenario
};

struct Unit {
  std::size_t place;
  std::int32_t scenario;
  std::string duration;
  std::string laborRule;
  std::vector<CarriedValue> carried;  // by its last object
};

struct ObjectUse {
  std::size_t unit;  // its place
  std::int32_t object;
  std::string name;
};

struct Junction {
  std::size_t place;
  std::int32_t scenario;
  std::string cardinality;
  std::string type;
};

struct LinkEnd {
  std::int32_t number;
  std::string type;
};

struct Link {
  std::size_t place;
  std::int32_t scenario;
  std::string id;
  LinkEnd origin;
  LinkEnd destination;
};

struct Model {
  std::vector<Place> places;  // of all elements with a number, in the order of the text
  std::vector<ProcessEntry> processes;
  std::vector<ObjectEntry> objects;
  std::vector<std::size_t> facts;
  std::vector<ScenarioEntry> scenarios;
  std::vector<Unit> units;
  std::vector<ObjectUse> objectUses;
  std::vector<Junction> junctions;
  std::vector<Link> links;

  const Place& At(std::size_t place) const { return places[place]; }
};

const char* KindName(Element kind);
ElementName NameOf(const Place& place);

// A finding at an element.
Finding FindingAt(Severity severity, const Place& place, std::string sentence, std::string advice);

// "unit 3 'Sand the hull' (line 12)".
std::string WithLine(const Place& place);

}  // namespace merivane::inspect
