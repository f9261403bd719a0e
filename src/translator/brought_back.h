// What a merge, or a plan that became a model, left in the tables of the plan.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "program/program.h"

namespace merivane::translator {

using namespace program;

// Brings the rows of the model that were copied into gMspConn up to those of the plan's tables in
// `source`, as the writers do: units and resources that came from a plan are there alone, and a
// merge leaves the ends of its links and the IDs of its junctions open.
class BroughtBack {
 public:
  BroughtBack(ModelToProject& state, Connection& source, std::int32_t project)
      : state_(state), source_(source), project_(std::to_string(project)) {}

  // Errors of either database come up.
  void TakeOver();

 private:
  void TakeUnits();
  void TakeUnit(Recordset& task);
  void NameProcesses();
  void TakeResources();
  void DropResources();
  void NumberJunctions();
  void SettleLinks();
  void SettleScenarios();
  void SettleEnd(Recordset& link, const std::string& end);
  Recordset Rows(const char* table) const;
  Recordset Row(const char* table, const char* numberColumn, const Value& number) const;

  ModelToProject& state_;
  Connection& source_;
  std::string project_;
  std::unordered_map<std::int32_t, std::string> units_;      // names by number
  std::unordered_map<std::int32_t, std::string> junctions_;  // IDs by number
};

}  // namespace merivane::translator
