// A model that stands in a database already, as what a translation begins with.
#pragma once

#include <cstdint>
#include <string>

#include "program/program.h"

namespace merivane::translator {

using namespace program;

// The project of another database whose model is translated.
struct StoredModel {
  std::string database;
  std::int32_t project = 0;
};

// Whether there is a scenario of that project. Errors of the database come up as RunTimeErrors.
bool HoldsModel(Workspace& workspace, const StoredModel& model);

// In the place of a read: brings the model as gMspProjId into gMspConn, without the marks of an
// earlier translation. Of one that was merged or built from a plan, units and resources are those
// of its plan tables, as its text has them. Errors of either database come up.
void TakeStoredModel(ModelToProject& state, const StoredModel& model);

// Behind the translation: the start date that a plan brought in, where there is one. A plan's text
// has no head for a model that has a start date before.
void TakeStartDate(ModelToProject& state, const StoredModel& model);

}  // namespace merivane::translator
