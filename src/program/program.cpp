#include "program/program.h"

namespace merivane::program {

Program::Program(Desktop& theDesktop)
    : desktop(theDesktop),
      progress(theDesktop),
      modelToProject(Direction{theDesktop, files, workspace, progress, codePage}),
      projectToModel(Direction{theDesktop, files, workspace, progress, codePage}) {
  workspace.work = &progress;
}

Program::~Program() { workspace.CommitAllQuietly(); }

}  // namespace merivane::program
