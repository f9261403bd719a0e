#include "mpx/mpx_format.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::mpx {

namespace {

constexpr int kEmptyFieldsOfResource = 12;  // Cost Per Use to Text1
constexpr int kEmptyFieldsOfTask = 33;      // Start to Rollup
constexpr char kLineBreak = 127;

std::string Quoted(const std::string& text) { return '"' + text + '"'; }

}  // namespace

std::string MpxResource(const Value& pid, const Value& name, const Value& quantity) {
  const std::string id = Joined(pid);
  const std::string text = Joined(name);
  const std::string units = quantity.IsNull() ? "1" : Joined(quantity);
  return "50," + id + "," + id + "," + text + "," + text + "," + units + ",10/h,15/h" +
         std::string(kEmptyFieldsOfResource, ',');
}

std::string MpxTaskRecord(const MpxTask& task, std::int32_t codePage) {
  const std::string id = Joined(task.id);
  const std::string name = Joined(task.name);
  std::string line = "70," + id + "," + id + ",";
  line += Holds(name, ",") ? Quoted(name) : name;
  line += "," + task.duration;
  line += codePage == kJapaneseCodePage ? ",," : ",Yes,";
  line += Joined(task.outlineLevel) + ",";
  line += ",";
  if (!task.predecessors.empty()) line += Quoted(task.predecessors);
  line += std::string(kEmptyFieldsOfTask, ',') + "," + Joined(task.text1);
  return line;
}

std::string MpxAssignment(const Value& pid, std::string_view units, std::string_view hours) {
  return "75," + Joined(pid) + "," + std::string(units) + "," + std::string(hours) + "h";
}

std::string MpxNote(std::string_view record, std::string_view glossary) {
  return std::string(record) + "," + MpxNoteText(glossary) + '"';
}

std::string MpxNoteText(std::string_view glossary) {
  std::string note = "\"";
  for (std::size_t position = 0; position + 1 < glossary.size(); ++position) {
    if (glossary[position] == '\r') {
      note += kLineBreak;
      ++position;
    } else {
      note += glossary[position];
    }
  }
  return note;
}

}  // namespace merivane::mpx
