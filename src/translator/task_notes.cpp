#include "runtime/rtf_notes.h"
#include "translation_steps.h"
#include "translator/task_note.h"

namespace merivane::translator {

void WriteRtfNote(Pass& pass, const Value& projectId) {
  Command& command = pass.rtfNote;
  command.ActiveConnection(pass.state.gMspConn.get());
  command.CommandText("update MSP_TASKS set TASK_RTF_NOTES = ? where PROJ_ID = " +
                      std::to_string(pass.state.gMspProjId) +
                      " and TASK_UID = " + Joined(projectId));
  if (!command.HasParameter()) command.AppendBinaryParameter(kMostNoteBytes);
  const std::string note = RtfNote(pass.glossaryText);
  command.ParameterValue(Bytes(note.begin(), note.end()));
  command.Execute();
}

}  // namespace merivane::translator
