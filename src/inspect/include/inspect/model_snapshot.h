// The model of one project in an interim database, as far as a merge changes it.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "inspect/finding.h"
#include "store/connection.h"

namespace merivane::inspect {

using namespace store;

// Texts are Windows-1252.
struct ModelSnapshot {
  struct Unit {
    std::string name;
    std::string duration;  // days; as stored
    std::string note;      // as compared: see ReadSnapshot
    bool sent = false;     // it went to the plan
    bool cameBack = false;
  };
  struct Resource {
    std::string name;
    std::string quantity;
    std::string note;  // as compared: see ReadSnapshot
  };
  struct Assignment {
    std::string quantity;
    bool sent = false;  // it went to the plan
    bool cameBack = false;
  };
  using Link = std::tuple<std::int32_t, std::int32_t, std::int32_t>;  // scenario, origin, end

  std::map<std::int32_t, Unit> units;
  std::map<std::int32_t, std::string> junctions;  // number to kind: "Fan In, Async. AND"
  std::multiset<Link> links;
  std::map<std::int32_t, Resource> resources;                               // by object number
  std::map<std::pair<std::int32_t, std::int32_t>, Assignment> assignments;  // unit, object
};

// Notes are without quotes around them and without line ends behind them, which a way through
// a plan alone changes. Errors of the database come up as RunTimeErrors.
ModelSnapshot ReadSnapshot(Connection& connection, std::int32_t project);

enum class ChangeKind { kAdded, kChanged, kRemoved, kKept, kStop };

// One thing that a merge changes, or what stops it.
struct MergeChange {
  ChangeKind kind = ChangeKind::kChanged;
  ElementName element;
  std::string sentence;
  std::string advice = {};                   // of a stop
  std::optional<std::int32_t> planRow = {};  // of a stop: the number of the task in the plan
};

// What became of the model, sorted by kind of element and number.
std::vector<MergeChange> ChangesBetween(const ModelSnapshot& before, const ModelSnapshot& after);

}  // namespace merivane::inspect
