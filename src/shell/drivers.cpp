#include "shell/drivers.h"

#include "mspdi/plan_writer.h"
#include "neutraltext/modGlobal.h"
#include "program/error_boxes.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::shell {

using namespace mspdi;
using namespace neutraltext;
using namespace translator;

namespace {

void WriteXml(ModelToProject& state, const std::string& fileName) {
  if (fileName.empty()) return;
  if (!state.gMspConn) throw RunTimeError(kObjectNotSet);
  mspdi::WritePlan(*state.gMspConn, state.gMspProjId, state.desktop.Today(), fileName);
}

}  // namespace

bool GenerateFromText(ModelToProject& state, const std::string& textFileName,
                      const std::string& mpxFileName, const std::string& xmlFileName) {
  bool done = false;
  try {
    ReadNeutralText(state, textFileName);
    TranslateToProject(state, mpxFileName);
    WriteXml(state, xmlFileName);
    CloseMspConnection(state);
    done = true;
  } catch (const RunTimeError& error) {
    ShowDescription(state.desktop, error);
  } catch (const RunCancelled&) {
    ReleaseNeutralTextFile(state);
    throw;
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
