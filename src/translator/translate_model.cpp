#include "mpx/mpx_format.h"
#include "program/error_boxes.h"
#include "runtime/code_page.h"
#include "translation_steps.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::translator {

using namespace mpx;

namespace {

std::int32_t SystemCodePage(const Desktop& desktop) {
  try {
    return desktop.OemCodePage();
  } catch (const RunTimeError&) {
    return kDefaultOemCodePage;
  }
}

void OpenMpx(ModelToProject& state, const std::string& mpxFileName) {
  state.mpxFileNo = state.files.FreeFile();
  state.files.OpenForOutput(state.mpxFileNo, mpxFileName);
  state.codePage = SystemCodePage(state.desktop);
  for (const std::string& line : MpxHead(state.codePage)) {
    state.files.Print(state.mpxFileNo, line);
  }
}

// A model with a start date gets no project header.
void WriteProjectHeader(Pass& pass, const std::string& mpxFileName) {
  ModelToProject& state = pass.state;
  Recordset project =
      Ask(state.gMspConn.get(), "select * from MSP_PROJECTS WHERE PROJ_ID = ", state.gMspProjId);
  if (!project.Eof() && !project.Field("KV7_PROJ_START_DATE").IsNull()) return;
  DateTime today = state.desktop.Today();
  today.seconds = 0;
  pass.PrintMpx(MpxProjectHeader(FromUtf8(mpxFileName), FormatDate(today)));
}

// The number of the text input is closed where the MPX file's might be expected: the MPX file stays
// open, and whole on the disk, until the program ends.
void EndMpx(ModelToProject& state) {
  state.files.Close(state.gTextFile);
  state.files.Flush(state.mpxFileNo);
}

void RunPass(ModelToProject& state, const std::string& mpxFileName) {
  Pass pass{.state = state, .mpxWanted = !mpxFileName.empty()};
  state.linkUID = 0;
  if (pass.mpxWanted) OpenMpx(state, mpxFileName);
  WriteProjectHeader(pass, mpxFileName);
  pass.PrintMpx(kMpxResourceFields);
  pass.PrintMpx(kMpxResourceFieldNumbers);
  state.progress.Begin("Laying out the plan", 0);
  MarkResources(pass);
  WriteResources(pass);
  BuildOutline(pass);
  SelectPathsAndNumberTasks(state);
  BuildStartRelations(state);
  BuildFinishRelations(state);
  if (state.translationListener && !state.translationListener->OnPathsTaken()) return;
  WriteTasks(pass);
  if (state.translationListener && !state.translationListener->OnTasksWritten()) return;
  state.progress.Begin("Numbering the outline", 0);
  NumberOutline(state);
  if (pass.mpxWanted) EndMpx(state);
}

}  // namespace

void TranslateToProject(ModelToProject& state, const std::string& mpxFileName) {
  try {
    RunPass(state, mpxFileName);
  } catch (const RunTimeError& error) {
    FatalAbort(state.desktop, error);
  }
}

}  // namespace merivane::translator
