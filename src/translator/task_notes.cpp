#include "runtime/rtf_notes.h"
#include "runtime/run_time_error.h"
#include "translation_steps.h"
#include "translator/task_note.h"

namespace merivane::translator {

Bytes NoteOfTask(std::string_view glossary) {
  const std::string note = RtfNote(glossary);
  if (note.size() > kMostNoteBytes) {
    throw RunTimeError(kDatabaseError, "The parameter's value has " + std::to_string(note.size()) +
                                           " bytes, and its size is " +
                                           std::to_string(kMostNoteBytes) + ".");
  }
  return {note.begin(), note.end()};
}

}  // namespace merivane::translator
