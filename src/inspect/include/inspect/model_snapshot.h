// The model of one project in an interim database, as far as a merge changes it: what is compared
// before and after. Two whole models are compared by ModelContent. A model text with its lines is
// inspect's Model, and what is drawn is pictures::ProcessModel.
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
    bool isWritten = false;  // it stands in its scenario of the model's text
    std::int32_t scenario = 0;
    std::int32_t process = 0;                  // 0: not known
    std::optional<std::int32_t> planRow = {};  // of the plan that came in last
  };
  struct Resource {
    std::string name;
    std::string quantity;
    std::string note;                          // as compared: see ReadSnapshot
    std::optional<std::int32_t> planRow = {};  // of the plan that came in last
  };
  struct Assignment {
    std::string quantity;
    bool sent = false;  // it went to the plan
    bool cameBack = false;
  };
  using Link = std::tuple<std::int32_t, std::int32_t, std::int32_t>;  // scenario, origin, end

  std::map<std::int32_t, Unit> units;             // those that went to the plan or came from it
  std::map<std::int32_t, std::string> unitNames;  // of all units of the model
  std::map<std::int32_t, std::string> scenarios;  // number to name
  std::map<std::int32_t, std::string> junctions;  // number to kind: "Fan In, Async. AND"
  std::multiset<Link> links;
  std::map<std::int32_t, Resource> resources;                               // by object number
  std::map<std::pair<std::int32_t, std::int32_t>, Assignment> assignments;  // unit, object
};

// Notes are without quotes around them and without line ends behind them, which a way through
// a plan alone changes. Errors of the database come up as RunTimeErrors.
ModelSnapshot ReadSnapshot(Connection& connection, std::int32_t project);

enum class ChangeKind {
  kAdded,
  kChanged,
  kRemoved,
  kKept,
  kNotTaken,  // the plan says it, and the merge passes it over
  kStop,
  kDiffers,  // the merged model gives something else than the plan: MergeProof
};

// One thing that a merge changes or passes over, or what stops it.
struct MergeChange {
  ChangeKind kind = ChangeKind::kChanged;
  ElementName element;
  std::string sentence;
  std::string advice = {};                   // empty where nothing is to be done
  std::optional<std::int32_t> planRow = {};  // of the task, or of a resource, that it is about
  bool completeKeeps = false;                // of a difference: a complete merge leaves none
  std::optional<std::int32_t> unit = {};     // of a link or an assignment: one that it belongs to
};

// What became of the model, sorted by kind of element and number.
std::vector<MergeChange> ChangesBetween(const ModelSnapshot& before, const ModelSnapshot& after);

// Units and assignments that are no longer in the model, which only a complete merge takes out.
std::vector<MergeChange> TakenOutBetween(const ModelSnapshot& before, const ModelSnapshot& after);

}  // namespace merivane::inspect
