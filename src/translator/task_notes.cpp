#include "runtime/rtf_notes.h"
#include "runtime/run_time_error.h"
#include "translation_steps.h"
#include "translator/task_note.h"

namespace merivane::translator {

bool NoteFits(std::string_view glossary) { return glossary.size() <= kLongestGlossary; }

void RefuseNote(std::string_view glossary) {
  throw RunTimeError(kDatabaseError,
                     "The parameter's value has " + std::to_string(RtfNote(glossary).size()) +
                         " bytes, and its size is " + std::to_string(kMostNoteBytes) + ".");
}

Bytes NoteOfTask(std::string_view glossary) {
  const std::string note = RtfNote(glossary);
  return {note.begin(), note.end()};
}

}  // namespace merivane::translator
