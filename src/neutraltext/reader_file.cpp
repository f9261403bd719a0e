#include <memory>

#include "neutraltext/modGlobal.h"
#include "own_text_lines.h"
#include "program/error_boxes.h"
#include "reader_lines.h"
#include "runtime/text.h"

namespace merivane::neutraltext {

namespace {

constexpr const char* kTitle = "IDEF3 to Project 2000";

void MakeRecordSetsNew(ModelToProject& state) {
  for (Recordset* rows :
       {&state.rsActivityPool, &state.rsObjectPool, &state.rsFactPool, &state.rsMisc,
        &state.rsScenario, &state.rsActivityInScenario, &state.rsObjectInActivity,
        &state.rsJunctions, &state.rsFactsInJunction, &state.rsLinks, &state.rsOstn}) {
    *rows = Recordset();
  }
}

// The two sets of occurrences stay alive for the translator.
void ReleaseRecordSets(ModelToProject& state) {
  for (Recordset* rows : {&state.rsActivityPool, &state.rsObjectPool, &state.rsFactPool,
                          &state.rsMisc, &state.rsScenario, &state.rsJunctions,
                          &state.rsFactsInJunction, &state.rsLinks, &state.rsOstn}) {
    *rows = Recordset();
  }
}

// False when the file ended first. The end is asked of file number 1 whatever the input's number:
// with another file open under 1 the search runs off the end of the input.
bool FindOstnList(ModelToProject& state) {
  constexpr std::int16_t kFirstFile = 1;
  while (!Holds(state.gLine, "OSTN List")) {
    if (state.files.AtEnd(kFirstFile)) return false;
    NextLine(state);
  }
  return true;
}

void ReadSections(ModelToProject& state) {
  MakeRecordSetsNew(state);
  ReadSummary(state);
  ReadProcessPool(state);
  ReadObjectPool(state);
  ReadStatePool(state);
  ReadFactPool(state);
  ReadPropertyPool(state);
  ReadRemainingPools(state);
  ReadScenarios(state);
  if (!FindOstnList(state)) {
    state.files.Close(state.gTextFile);
    return;
  }
  ReadOstnList(state);
  state.files.Close(state.gTextFile);
  ReleaseRecordSets(state);
}

}  // namespace

void ReadNeutralText(ModelToProject& state, const std::string& fileName) {
  try {
    CheckNeutralTextHeader(state, fileName);
    ReadModel(state);
  } catch (const RunTimeError& error) {
    FatalAbort(state.desktop, error);
  }
}

bool CheckNeutralTextHeader(ModelToProject& state, const std::string& fileName) {
  ReleaseNeutralTextFile(state);
  state.progress.Begin("Reading the model", CountLines(fileName));
  state.gTextFile = state.files.FreeFile();
  state.files.Reserve(state.gTextFile);
  try {
    state.files.OpenForInput(state.gTextFile, fileName);
    if (state.takesOwnText && IsOwnText(fileName)) {
      state.lineSource = std::make_unique<OwnTextLines>(state.files, state.gTextFile);
    }
    NextLine(state);
  } catch (const RunTimeError& error) {
    state.desktop.ShowMessage({.text = "cannot open the celvar input text file",
                               .icon = MessageIcon::kCritical,
                               .title = kTitle,
                               .error = error.Number()});
    state.desktop.EndProgram();
  }
  const bool valid = Holds(state.gLine, "Dunmar Neutral Text");
  if (!valid) {
    state.desktop.ShowMessage({.text = "Celvar input text file is not valid",
                               .icon = MessageIcon::kCritical,
                               .title = kTitle,
                               .error = kInvalidFileFormat});
  }
  return valid;
}

void ReadModel(ModelToProject& state) {
  try {
    ReadSections(state);
  } catch (const RunTimeError& error) {
    ReportError(state.desktop, error);
  }
}

void ReleaseNeutralTextFile(ModelToProject& state) {
  state.lineSource.reset();
  if (state.gTextFile == 0) return;
  state.files.Close(state.gTextFile);
  state.files.Release(state.gTextFile);
  state.gTextFile = 0;
}

}  // namespace merivane::neutraltext
