#include "roundtrip/plan_as_mpx.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string_view>
#include <vector>

#include "mpx/mpx_format.h"
#include "runtime/conversions.h"
#include "runtime/text.h"

namespace merivane::roundtrip {

using namespace mpx;

namespace {

constexpr double kHoursOfDay = 8;

class MpxWriter {
 public:
  MpxWriter(const FilePlan& plan, std::int32_t codePage) : plan_(plan), codePage_(codePage) {}

  MpxText Write() {
    for (const std::string& line : MpxHead(codePage_)) Print(line);
    std::string title = Name(plan_.name);
    std::replace(title.begin(), title.end(), ',', ' ');
    DateTime day = plan_.start.value_or(DateTime{});
    day.seconds = 0;
    Print(MpxProjectHeader(title, plan_.start ? FormatDate(day) : ""));
    Print(kMpxResourceFields);
    Print(kMpxResourceFieldNumbers);
    for (const FileResource& resource : plan_.resources) PrintResource(resource);
    Print(kMpxTaskFields);
    Print(kMpxTaskFieldNumbers);
    std::map<std::int64_t, std::vector<const FileAssignment*>> assignments;
    for (const FileAssignment& each : plan_.assignments) assignments[each.task].push_back(&each);
    for (const FileTask& task : plan_.tasks) {
      PrintTask(task);
      for (const FileAssignment* each : assignments[task.id]) PrintAssignment(*each, task);
    }
    return std::move(result_);
  }

 private:
  void Print(std::string_view line) { result_.text.append(line).append("\r\n"); }

  // Without what would end a field.
  std::string Plain(std::string text, std::string_view ends) {
    const std::string given = text;
    for (char& letter : text) {
      if (ends.find(letter) != std::string_view::npos) letter = letter == '"' ? '\'' : ' ';
    }
    if (text != given) ++result_.changedTexts;
    return text;
  }
  std::string Name(const std::string& name) { return Plain(name, "\"\r\n"); }

  void PrintNote(std::string_view record, const std::optional<std::string>& note) {
    if (!note || note->empty()) return;
    Print(MpxNote(record, Plain(*note, "\"") + '\n'));  // the last character is never copied
  }

  void PrintResource(const FileResource& resource) {
    std::string name = Name(resource.name);
    if (Holds(name, ",")) name = '"' + name + '"';
    Print(MpxResource(static_cast<std::int32_t>(resource.id), name,
                      resource.units ? Value(*resource.units) : Value()));
    PrintNote(kMpxResourceNote,
              WithKind({resource.kind, resource.unit, resource.notes.value_or(std::string())}));
    Print(kMpxResourceCalendar);
  }

  void PrintTask(const FileTask& task) {
    Print(MpxTaskRecord({.id = static_cast<std::int32_t>(task.id),
                         .name = Name(task.name),
                         .duration = FixedTwo(task.days.value_or(1)) + "d",
                         .outlineLevel = static_cast<std::int32_t>(task.level),
                         .predecessors = PredecessorList(task, plan_.minutesPerDay),
                         .text1 = Name(task.text1)},
                        codePage_));
    PrintNote(kMpxTaskNote, task.notes);
  }

  void PrintAssignment(const FileAssignment& assignment, const FileTask& task) {
    const double hours = assignment.units * task.days.value_or(1) * kHoursOfDay;
    Print(MpxAssignment(static_cast<std::int32_t>(assignment.resource),
                        Joined(Value(assignment.units)), FixedTwo(hours)));
  }

  const FilePlan& plan_;
  std::int32_t codePage_;
  MpxText result_;
};

}  // namespace

std::string PredecessorList(const FileTask& task, double minutesPerDay) {
  std::string list;
  for (const FileLink& link : task.predecessors) {
    if (!list.empty()) list += ',';
    list += PredecessorText(link.predecessor, link.kind, link.lag, minutesPerDay);
  }
  return list;
}

std::vector<std::string> PredecessorEntries(const std::string& list) {
  std::vector<std::string> entries;
  for (std::size_t position = 1; position > 0;) {
    const auto start = static_cast<std::ptrdiff_t>(position);
    const std::size_t comma = Find(list, ",", position + 1);
    entries.push_back(comma > 0 ? Mid(list, start, static_cast<std::ptrdiff_t>(comma) - start)
                                : Mid(list, start));
    position = comma > 0 ? comma + 1 : 0;
  }
  return entries;
}

RelationKind RelationKindOf(std::string_view entry) {
  if (HoldsNoCase(entry, "SS")) return RelationKind::kStartToStart;
  if (HoldsNoCase(entry, "FF")) return RelationKind::kFinishToFinish;
  return HoldsNoCase(entry, "SF") ? RelationKind::kStartToFinish : RelationKind::kFinishToStart;
}

std::int16_t PlanIdOf(std::string_view entry) { return ToInt16(LeadingNumber(entry)); }

MpxText PlanAsMpx(const FilePlan& plan, std::int32_t codePage) {
  return MpxWriter(plan, codePage).Write();
}

}  // namespace merivane::roundtrip
