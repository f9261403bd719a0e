#include <functional>

#include "mspdi/plan_writer.h"
#include "neutraltext/modGlobal.h"
#include "program/error_boxes.h"
#include "shell/frmIDEF3ToProject.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::shell {

using namespace mspdi;
using namespace neutraltext;
using namespace translator;

namespace {

void WriteXml(ModelToProject& state, const std::string& fileName) {
  if (fileName.empty()) return;
  if (!state.gMspConn) throw RunTimeError(kObjectNotSet);
  mspdi::WritePlan(*state.gMspConn, state.gMspProjId, state.desktop.Today(),
                   state.files.OutputOf(fileName));
}

bool Generated(ModelToProject& state, const std::function<void()>& steps) {
  bool done = false;
  try {
    steps();
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

}  // namespace

bool GenerateFromText(ModelToProject& state, const std::string& textFileName,
                      const std::string& mpxFileName, const std::string& xmlFileName) {
  return Generated(state, [&] {
    ReadNeutralText(state, textFileName);
    TranslateToProject(state, mpxFileName);
    WriteXml(state, xmlFileName);
  });
}

bool GenerateFromStoredModel(ModelToProject& state, const StoredModel& model,
                             const std::string& mpxFileName, const std::string& xmlFileName) {
  return Generated(state, [&] {
    if (!state.gMspConn) throw RunTimeError(kObjectNotSet);
    TakeStoredModel(state, model);
    TranslateToProject(state, mpxFileName);
    TakeStartDate(state, model);
    WriteXml(state, xmlFileName);
  });
}

void CloseMspConnection(ModelToProject& state) {
  if (!state.gMspConn) throw RunTimeError(kObjectNotSet);
  state.gMspConn->Close();
  state.gMspConn.reset();
}

}  // namespace merivane::shell
