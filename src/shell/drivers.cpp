#include "shell/drivers.h"

#include "translator/modIDEF3ToProject.h"

namespace merivane {

bool GenerateFromText(ModelToProject& state, const std::string& textFileName,
                      const std::string& mpxFileName) {
  try {
    ReadNeutralText(state, textFileName);
    TranslateToProject(state, mpxFileName);
    CloseMspConnection(state);
    state.files.Release(state.gTextFile);
    return true;
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
    return false;
  }
}

void CloseMspConnection(ModelToProject& state) {
  if (!state.gMspConn) throw RunTimeError(kObjectNotSet);
  state.gMspConn->Close();
  state.gMspConn.reset();
}

}  // namespace merivane
