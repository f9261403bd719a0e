#include "translation_steps.h"

namespace merivane {
namespace {

constexpr std::size_t kMostNoteBytes = 20000;
constexpr std::string_view kNoteHead =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1033{\\fonttbl{\\f0\\fswiss\\fprq2\\fcharset0 "
    "Arial;}} \\viewkind4\\uc1\\pard\\f0\\fs20 ";
constexpr std::string_view kNoteEnd = "\\par\\par}";

}  // namespace

void WriteRtfNote(Pass& pass, const Value& projectId) {
  Command& command = pass.rtfNote;
  command.ActiveConnection(pass.state.gMspConn.get());
  command.CommandText("update MSP_TASKS set TASK_RTF_NOTES = ? where PROJ_ID = " +
                      std::to_string(pass.state.gMspProjId) +
                      " and TASK_UID = " + Joined(projectId));
  if (!command.HasParameter()) command.AppendBinaryParameter(kMostNoteBytes);
  const std::string note = std::string(kNoteHead) + pass.glossaryText + std::string(kNoteEnd);
  command.ParameterValue(Bytes(note.begin(), note.end()));
  command.Execute();
}

}  // namespace merivane
