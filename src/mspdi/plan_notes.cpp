#include "plan_parts.h"
#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "runtime/rtf_notes.h"
#include "schedule/project_rows.h"
#include "store/interim_db.h"

namespace merivane::mspdi {

namespace {

using schedule::ProjectRows;

// Rich text is of one byte a character, also where a text holds it.
std::string BytesOf(const Value& value) {
  if (!value.IsBytes()) return FromUtf8(Joined(value));
  const Bytes& bytes = value.GetBytes();
  return {bytes.begin(), bytes.end()};
}

// By the number of the activity; none in a database without a model.
Notes ReadGlossaries(Connection& connection, std::int32_t project) {
  Notes glossaries;
  if (TableExists(&connection, "Activity_Pool") == 0) return glossaries;
  enum Column { kNum, kGlossary };
  ProjectRows rows(connection, {.name = "Activity_Pool", .projectColumn = "Msp_ProjID"}, project,
                   {"Num", "Glossary"});
  for (; !rows.AtEnd(); rows.Next()) {
    glossaries.emplace(rows.IntegerAt(kNum, 0), rows.TextAt(kGlossary));
  }
  return glossaries;
}

std::string TextOf(std::string_view rtf, std::size_t& brokenOff) {
  const PlainText plain = TextOfRtf(rtf);
  if (plain.brokeOff) ++brokenOff;
  return plain.text;
}

Notes ReadStoredNotes(Connection& connection, std::int32_t project, std::size_t& brokenOff) {
  const Notes glossaries = ReadGlossaries(connection, project);
  enum Column { kUid, kRtf, kActivity };
  ProjectRows rows(connection, {.name = "MSP_TASKS"}, project,
                   {"TASK_UID", "TASK_RTF_NOTES", "KV7_PROC_HEX"});
  Notes notes;
  for (; !rows.AtEnd(); rows.Next()) {
    const Value rtf = rows.At(kRtf);
    if (rtf.IsNull()) continue;
    const std::string note = BytesOf(rtf);
    const auto own = TextOfOwnRtfNote(note);
    const auto glossary = own ? glossaries.find(rows.IntegerAt(kActivity, 0)) : glossaries.end();
    std::string text = glossary != glossaries.end() ? glossary->second
                       : own                        ? ToUtf8(*own)
                                                    : TextOf(note, brokenOff);
    if (!text.empty()) notes.emplace(rows.IntegerAt(kUid, 0), std::move(text));
  }
  return notes;
}

Notes ReadBroughtNotes(Connection& connection, std::int32_t project) {
  enum Column { kPid, kNotes };
  ProjectRows rows(connection, {.name = "ProjectAct", .projectColumn = "Msp_ProjID"}, project,
                   {"PID", "notes"});
  Notes notes;
  for (; !rows.AtEnd(); rows.Next()) notes.emplace(rows.IntegerAt(kPid, 0), rows.TextAt(kNotes));
  return notes;
}

}  // namespace

Notes ReadTaskNotes(Connection& connection, std::int32_t project, const schedule::Plan& plan,
                    std::size_t& brokenOff) {
  return plan.broughtBack ? ReadBroughtNotes(connection, project)
                          : ReadStoredNotes(connection, project, brokenOff);
}

std::string PlainNote(const Value& rtf, std::size_t& brokenOff) {
  return TextOf(BytesOf(rtf), brokenOff);
}

}  // namespace merivane::mspdi
