// The model as a complete merge sees it, by the numbers that its changes name, and what is to
// become of its rows. What is compared before and after is inspect::ModelSnapshot, what is drawn
// pictures::ProcessModel.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "runtime/value.h"
#include "store/connection.h"

namespace merivane::reconcile {

using namespace runtime;
using namespace store;

// Elements by their numbers, texts in Windows-1252. `sent`: it goes to the plan.
struct ModelRows {
  struct Unit {
    std::int32_t scenario = 0;
    std::int32_t process = 0;
    std::string name;
    std::string laborRule;
    bool sent = false;
  };
  struct Process {
    std::string name;
    std::string note;  // as NoteText
  };
  struct Scenario {
    std::int32_t parent = 0;  // the unit that it decomposes; 0: none
    bool sent = false;
  };
  struct Junction {
    std::int32_t scenario = 0;
    bool isFanOut = false;
    std::string type;
    std::string id;
  };
  struct Link {
    std::int32_t number = 0;
    std::int32_t scenario = 0;
    std::int32_t origin = 0;
    std::int32_t destination = 0;
  };
  struct Object {
    std::string name;
    std::string alias;
    bool sent = false;
  };

  std::map<std::int32_t, Unit> units;
  std::map<std::int32_t, Process> processes;
  std::map<std::int32_t, Scenario> scenarios;
  std::map<std::int32_t, Junction> junctions;
  std::vector<std::int32_t> junctionOrder;  // of their rows: one of several of a task counts
  // By their numbers; a second one of a number, which another scenario may have, by a number of its
  // own above kSecondLinks.
  std::map<std::int32_t, Link> links;
  std::vector<std::int32_t> linkOrder;  // of their rows, which tells branches apart
  std::map<std::int32_t, Object> objects;
  std::vector<std::pair<std::int32_t, std::int32_t>> uses;  // unit, object
};

constexpr std::int32_t kSecondLinks = 100000;

// Of a model that was translated. Errors of the database come up.
ModelRows ReadModelRows(Connection& connection, std::int32_t project);

// One change of the interim tables. `key`: the columns, with numbers, that tell the rows apart.
struct TableChange {
  enum class Kind { kAdd, kCopy, kSet, kRemove };
  using Key = std::vector<std::pair<const char*, std::int32_t>>;
  using Fields = std::vector<std::pair<const char*, Value>>;

  Kind kind = Kind::kSet;
  const char* table = "";
  Key key;
  Fields fields;  // of a copy: what it has otherwise
};

// The one place that writes. Errors of the database come up.
void ApplyChanges(Connection& connection, std::int32_t project,
                  const std::vector<TableChange>& changes);

}  // namespace merivane::reconcile
