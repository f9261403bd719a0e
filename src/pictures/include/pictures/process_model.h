// A process model as its interim tables hold it, for drawing: all scenarios with the texts that a
// reader of the page wants. Of inspect, Model is a text with its lines, ModelSnapshot what a merge
// changes, and ModelContent what two models are compared by.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pictures/marks.h"
#include "store/connection.h"

namespace merivane::pictures {

using namespace store;

// Texts are Windows-1252. A list of an element comes as lines, each without the indent of the file.
struct ModelObject {
  std::int32_t number = 0;
  std::string name;
  std::string kind;      // for the simulation, or as drawn where that is empty
  std::string quantity;  // empty where the model tells none
  std::string alias;
  std::string glossary;
  std::string constraints;
};

struct ModelFact {
  std::int32_t number = 0;
  std::string name;
  std::string glossary;
};

struct ModelUnit {
  std::int32_t number = 0;
  std::string name;
  std::string reference;
  std::string duration;  // in days, as the model has it
  std::string laborRule;
  std::string glossary;  // of its process
  std::string facts;
  std::string constraints;
  std::vector<std::string> objects;          // names
  std::vector<std::int32_t> decompositions;  // numbers of scenarios
  bool sent = true;                          // false: it stays out of the plan
  std::string whyLeft;                       // then why: "junction J1 (XOR) takes another path"
  std::int32_t decidedBy = 0;                // number of that junction; 0: none decides it
  Mark mark = Mark::kNone;                   // as it is drawn; so below
};

enum class JunctionKind { kAnd, kOr, kXor };

struct ModelJunction {
  std::int32_t number = 0;
  std::string id;    // "J1"
  std::string type;  // as the model has it
  JunctionKind kind = JunctionKind::kAnd;
  bool synchronous = false;
  bool fanIn = false;
  std::string facts;
  Mark mark = Mark::kNone;
};

enum class FlowKind { kPrecedence, kRelation, kObjectFlow };

struct ModelLink {
  std::int32_t origin = 0;  // number of a unit or a junction
  std::int32_t destination = 0;
  FlowKind kind = FlowKind::kPrecedence;
  std::string id = {};  // "12", as the paths of facts name it
  Mark mark = Mark::kNone;
};

struct ModelScenario {
  std::int32_t number = 0;
  std::string name;
  std::int32_t parent = 0;  // number of the unit that it decomposes; 0: none
  std::string parentName;
  std::string description;
  std::string constraints;
  std::vector<ModelUnit> units;
  std::vector<ModelJunction> junctions;
  std::vector<ModelLink> links;
};

struct ProcessModel {
  std::string name;
  std::string author;
  std::string description;
  std::string constraintPool;
  std::vector<ModelScenario> scenarios;  // each behind the one that it decomposes a unit of
  std::vector<ModelObject> objects;
  std::vector<ModelFact> facts;
};

// Everything of one project. Errors of the database come up as RunTimeErrors.
ProcessModel ReadProcessModel(Connection& connection, std::int32_t project);

}  // namespace merivane::pictures
