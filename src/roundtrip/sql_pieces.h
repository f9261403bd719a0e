// Pieces of statements that restrict to the project under work.
#pragma once

#include <string>

#include "program/program.h"

namespace merivane::roundtrip {

using namespace program;

inline std::string WhereMspProjId(const ProjectToModel& state) {
  return " where Msp_ProjID = " + std::to_string(state.gInterimProjId);
}

inline std::string AndMspProjId(const ProjectToModel& state) {
  return " and Msp_ProjID = " + std::to_string(state.gInterimProjId);
}

inline std::string AndProjId(const ProjectToModel& state) {
  return " and Proj_ID = " + std::to_string(state.gInterimProjId);
}

}  // namespace merivane::roundtrip
