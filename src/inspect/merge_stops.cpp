#include "merge_stops.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "inspect/finding.h"
#include "mpx/mpx_format.h"
#include "roundtrip/plan_as_mpx.h"
#include "runtime/conversions.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"

namespace merivane::inspect {

namespace {

constexpr std::int16_t kResourceRecord = 50;
constexpr std::int16_t kTaskRecord = 70;
constexpr int kFirstName = 3;  // fields that may hold a name
constexpr int kLastName = 4;
constexpr int kQuantity = 6;

constexpr const char* kOverwrite = ", or build a new model by overwriting.";

struct Explanation {
  std::string sentence;
  std::string advice;
};

Explanation ExplainTask(const Message& box) {
  if (box.error == kTypeMismatch) {
    return {"The task was moved under another summary task, which stops the merge.",
            std::string("Move it back to where it was") + kOverwrite};
  }
  if (box.error == kNoCurrentRecord) {
    return {"The task is indented below no summary task, which stops the merge.",
            std::string("Put it back on its outline level") + kOverwrite};
  }
  return {"The task can't be taken over: " + ReasonOf(box),
          std::string("Mend the task in the plan") + kOverwrite};
}

const char* KindOf(RelationKind relation) {
  return relation == RelationKind::kStartToStart ? "start-to-start" : "finish-to-finish";
}

bool IsSynchronised(std::string_view entry) {
  const RelationKind relation = RelationKindOf(entry);
  return relation == RelationKind::kStartToStart || relation == RelationKind::kFinishToFinish;
}

Explanation ExplainLonePredecessor(const std::string& entry, const Message& box) {
  if (IsSynchronised(entry)) {
    return {"Its only predecessor '" + entry + "' is of the kind " + KindOf(RelationKindOf(entry)) +
                ", which stops the merge.",
            "Give the task a second predecessor, or take this one out."};
  }
  if (box.error == kNoCurrentRecord) {
    return {"Its new predecessor '" + entry +
                "' stops the merge, since the task's only link in the model comes straight from a "
                "unit.",
            "Take the predecessor out and draw the link in the model, or keep the old predecessor "
            "beside the new one."};
  }
  return {"Its predecessor '" + entry + "' stops the merge: " + ReasonOf(box),
          std::string("Put the predecessor back as it was") + kOverwrite};
}

Explanation ExplainPredecessors(const std::string& list, const std::vector<std::string>& missing,
                                const Message& box) {
  if (box.error == kOutOfStackSpace) {
    return {
        "The junctions in front of it run in a circle, which stops the merge.",
        "Take the circle out of the model, or the predecessors '" + list + "' out of the plan."};
  }
  const std::vector<std::string> entries = PredecessorEntries(list);
  // In a list a merge passes over what isn't there, unless its number is beyond any task's.
  if (!missing.empty() && (entries.size() == 1 || box.error == kOverflow)) {
    return {"Its predecessor '" + missing.back() + "' isn't in the plan, which stops the merge.",
            "Take the predecessor out, or name a task that is there."};
  }
  if (entries.size() == 1) return ExplainLonePredecessor(list, box);
  const auto entry = std::find_if(entries.begin(), entries.end(), IsSynchronised);
  if (entry != entries.end()) {
    return {"Its predecessor '" + *entry + "' of the kind " + KindOf(RelationKindOf(*entry)) +
                " stops the merge, since one of the two tasks has links in the model that don't go "
                "with it.",
            "Take the predecessor out, and draw the relation in the model."};
  }
  return {"Its predecessors '" + list + "' stop the merge: " + ReasonOf(box),
          std::string("Put the predecessors back as they were") + kOverwrite};
}

// The fields of a line of an MPX file up to the names, and the rest as it stands.
class Record {
 public:
  explicit Record(const std::string& line) {
    bool quoted = false;
    std::size_t at = 0;
    std::string field;
    for (; at < line.size() && fields_.size() < kLastName; ++at) {
      if (line[at] == '"') {
        quoted = !quoted;
      } else if (line[at] == ',' && !quoted) {
        fields_.push_back(std::exchange(field, ""));
        continue;
      }
      field += line[at];
    }
    rest_ = field + line.substr(at);
  }

  // "task" or "resource"; empty for any other line.
  std::string Kind() const {
    const std::string number = Field(1);
    if (!IsNumericText(number)) return "";
    if (ToDouble(number) == kTaskRecord) return "task";
    return ToDouble(number) == kResourceRecord ? "resource" : "";
  }

  std::optional<std::int32_t> Number() const {
    const std::string number = Field(2);
    constexpr double kMost = 2147483647;
    if (!IsNumericText(number) || ToDouble(number) > kMost) return std::nullopt;
    return ToInt32(number);
  }

  // The name as it stands, with what can't stay in it.
  std::string Name() const {
    std::string name = Field(kLastName);
    if (name.empty() || IsNumericText(name)) name = Field(kFirstName);
    const bool quoted = name.size() > 1 && name.starts_with('"') && name.ends_with('"');
    return quoted ? name.substr(1, name.size() - 2) : name;
  }

  // Of a resource, where it is no number.
  std::string OddQuantity() const {
    const auto [begin, end] = PlaceOfQuantity();
    const std::string quantity = rest_.substr(begin, end - begin);
    return quantity.empty() || IsNumericText(quantity) ? "" : quantity;
  }

  std::string Mended() const {
    std::string line;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
      std::string field = fields_[i];
      const int number = static_cast<int>(i) + 1;
      if (number == kFirstName || number == kLastName) {
        std::erase_if(field,
                      [](char letter) { return letter == '"' || letter == ',' || letter == '\''; });
      }
      line += field + ',';
    }
    if (Kind() != "resource" || OddQuantity().empty()) return line + rest_;
    const auto [begin, end] = PlaceOfQuantity();
    return line + rest_.substr(0, begin) + FromPercent(OddQuantity()) + rest_.substr(end);
  }

 private:
  // Empty for what is no percentage either.
  static std::string FromPercent(const std::string& text) {
    const std::string number = text.substr(0, text.size() - 1);
    const bool isPercent = text.ends_with('%') && IsNumericText(number);
    return isPercent ? ToText(Value(ToDouble(number) / 100)) : "";
  }

  std::string Field(int number) const {
    const auto place = static_cast<std::size_t>(number - 1);
    return place < fields_.size() ? fields_[place] : "";
  }

  std::pair<std::size_t, std::size_t> PlaceOfQuantity() const {
    std::size_t begin = 0;
    for (int field = kLastName + 1; field < kQuantity; ++field) {
      const std::size_t comma = rest_.find(',', begin);
      if (comma == std::string::npos) return {0, 0};
      begin = comma + 1;
    }
    return {begin, std::min(rest_.find(',', begin), rest_.size())};
  }

  std::vector<std::string> fields_;
  std::string rest_;
};

enum class PlanForm { kMpx, kXml };

// Why a name can't stand in the model. Of an MPX file it comes as it stands in the line.
std::optional<Explanation> ExplainName(const std::string& kind, const std::string& name,
                                       PlanForm form) {
  constexpr const char* kChange = "Change it in the plan, and save the plan anew.";
  if (Holds(name, "\""))
    return Explanation{"Its name holds double quotes, which stop the merge.", kChange};
  if (Holds(name, ",") && (form == PlanForm::kMpx || kind == "resource")) {
    return Explanation{"Its name holds a comma, which stops the merge.",
                       kind == "resource"
                           ? kChange
                           : "Change it in the plan, or save the plan as XML, where it may stay."};
  }
  if (Holds(name, "'") && kind == "resource") {
    return Explanation{"Its name holds an apostrophe, which stops the merge.", kChange};
  }
  if (name.find_first_of("\r\n") != std::string::npos) {
    return Explanation{"Its name holds a line break, which stops the merge.", kChange};
  }
  return std::nullopt;
}

MergeChange StopAt(ElementName element, std::optional<std::int32_t> row, Explanation why) {
  return {ChangeKind::kStop, std::move(element), std::move(why.sentence), std::move(why.advice),
          row};
}

MergeChange ExplainLine(const MergeStop& stop, const Message& box) {
  const Record record(stop.text);
  const std::string kind = record.Kind();
  const std::string place = "line " + std::to_string(stop.line) + " of the file";
  if (kind.empty()) {
    return StopAt({"plan", std::nullopt, ""}, std::nullopt,
                  {"In " + place + ": " + ReasonOf(box), "Mend the plan, and save it anew."});
  }
  const ElementName element{kind, record.Number(), OneLine(record.Name())};
  if (const auto why = ExplainName(kind, record.Name(), PlanForm::kMpx)) {
    return StopAt(element, element.number, *why);
  }
  if (kind == "resource" && !record.OddQuantity().empty()) {
    return StopAt(
        element, element.number,
        {"Its quantity '" + record.OddQuantity() + "' is no number, which stops the merge.",
         "Give the units of the resource as a number, 1 for 100%."});
  }
  return StopAt(element, element.number,
                {"A value of it (" + place + ") can't be taken over: " + ReasonOf(box),
                 "Look at the numbers in it; mend the plan, and save it anew."});
}

}  // namespace

std::string ReasonOf(const Message& box) {
  switch (box.error) {
    case kTypeMismatch:
      return "a value that should be a number is none.";
    case kOverflow:
      return "a number is beyond what the model can hold.";
    case kInvalidUseOfNull:
      return "a value that is needed is missing.";
    case kNoCurrentRecord:
      return "the model lacks a row that it leads to.";
    case kInputPastEndOfFile:
      return "it breaks off there.";
    default:
      break;
  }
  const std::string text = OneLine(box.text);
  return text.empty() || text.back() == '.' ? text : text + '.';
}

MergeChange ExplainStep(const MergeStop& stop, const Message& box, const PlanPredecessors& plan) {
  const auto* task = plan.Find(stop.number.value_or(0));
  const PlanPredecessors::Task unknown;
  if (task == nullptr) task = &unknown;
  return StopAt({"task", stop.number, task->name}, stop.number,
                stop.step == MergeStep::kTask
                    ? ExplainTask(box)
                    : ExplainPredecessors(task->predecessors, plan.MissingFor(*task), box));
}

MergeChange ExplainRow(const MergeStop& stop, const Message& box) {
  if (stop.line > 0) return ExplainLine(stop, box);
  const auto why = ExplainName(stop.kind, stop.name, PlanForm::kXml);
  return StopAt({stop.kind, stop.number, OneLine(stop.name)}, stop.number,
                why.value_or(Explanation{ReasonOf(box), "Then save the plan anew."}));
}

std::string MendedLine(const std::string& line) { return Record(line).Mended(); }

}  // namespace merivane::inspect
