#include "shell/drivers.h"

#include "neutraltext/modGlobal.h"
#include "program/error_boxes.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::shell {

using namespace neutraltext;
using namespace translator;

bool GenerateFromText(ModelToProject& state, const std::string& textFileName,
                      const std::string& mpxFileName) {
  bool done = false;
  try {
    ReadNeutralText(state, textFileName);
    TranslateToProject(state, mpxFileName);
    CloseMspConnection(state);
    done = true;
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
  }
  ReleaseNeutralTextFile(state);
  return done;
}

void CloseMspConnection(ModelToProject& state) {
  if (!state.gMspConn) throw RunTimeError(kObjectNotSet);
  state.gMspConn->Close();
  state.gMspConn.reset();
}

}  // namespace merivane::shell
