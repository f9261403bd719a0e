#include "program/program.h"

namespace merivane::program {

Program::Program(Desktop& theDesktop)
    : desktop(theDesktop),
      modelToProject(Direction{theDesktop, files, workspace, codePage}),
      projectToModel(Direction{theDesktop, files, workspace, codePage}) {}

Program::~Program() { workspace.CommitAllQuietly(); }

}  // namespace merivane::program
