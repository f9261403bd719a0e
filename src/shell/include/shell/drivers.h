// The driver of the direction from model to plan.
#pragma once

#include <string>

#include "program/program.h"
#include "translator/stored_model.h"

namespace merivane::shell {

using namespace program;

// Reads the text, translates, writes the planning XML, closes gMspConn. True when all of it ran; a
// run-time error that comes up is shown, and the connection then stays open. A file without a name
// isn't written.
bool GenerateFromText(ModelToProject& state, const std::string& textFileName,
                      const std::string& mpxFileName, const std::string& xmlFileName = {});

// The same for the model of another database.
bool GenerateFromStoredModel(ModelToProject& state, const translator::StoredModel& model,
                             const std::string& mpxFileName, const std::string& xmlFileName);

// Closes gMspConn and drops it.
void CloseMspConnection(ModelToProject& state);

}  // namespace merivane::shell
