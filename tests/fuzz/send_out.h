// A model goes out as a plan; its user takes the first scenario wherever one is asked for.
#pragma once

#include "neutraltext/modGlobal.h"
#include "platform/quiet_desktop.h"
#include "store/interim_db.h"
#include "translator/modIDEF3ToProject.h"
#include "translator/multi.h"

namespace merivane::fuzz {

using namespace neutraltext;
using namespace program;
using namespace translator;

template <typename Action>
void InProgram(Action action) {
  QuietDesktop desktop;
  desktop.onModalForm = [](ModalForm& form) { dynamic_cast<multi&>(form).Choose(0); };
  Program program(desktop);
  action(program);
}

// The database stays open as gMspConn.
inline ModelToProject& SendOut(Program& program, const std::string& model,
                               const std::string& database, const std::string& plan) {
  ModelToProject& state = program.modelToProject;
  state.gMspProjId = 1;
  OpenInterimDb(program.workspace, state.gMspConn, false, database);
  ReadNeutralText(state, model);
  TranslateToProject(state, plan);
  return state;
}

}  // namespace merivane::fuzz
