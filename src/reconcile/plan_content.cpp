#include "reconcile/plan_content.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "roundtrip/plan_as_mpx.h"
#include "runtime/conversions.h"
#include "schedule/plan.h"
#include "store/recordset.h"

namespace merivane::reconcile {

using schedule::LinkKind;

std::optional<std::int32_t> NumberIn(const Value& value) try {
  return value.IsNull() ? std::nullopt : std::optional(ToInt32(value));
} catch (const RunTimeError&) {
  return std::nullopt;
}

std::string NoteText(std::string text) {
  const bool quoted = text.starts_with('"');
  text.erase(0, text.find_first_not_of('"'));
  const auto isEnd = [&](char letter) {
    return letter == '\r' || letter == '\n' || (quoted && letter == '"');
  };
  while (!text.empty() && isEnd(text.back())) text.pop_back();
  return text;
}

bool IsSameNumber(const std::string& a, const std::string& b) {
  const auto number = [&](const std::string& text) {
    return IsNumericText(text) ? ToDouble(text) : 1;
  };
  return number(a) == number(b);
}

namespace {

constexpr const char* kPlain = "FS";

PlanContent::Relation RelationOf(std::int32_t from, std::int32_t to, std::string kind) {
  const bool isTogether = kind.starts_with("SS") || kind.starts_with("FF");
  if (isTogether && from > to) std::swap(from, to);
  return {from, to, std::move(kind)};
}

// "3", "3SS", "3FS+1d": the row, and the kind with its lag.
std::pair<std::string, std::string> TakenApart(std::string item) {
  std::erase_if(item, [](char letter) { return letter == ' ' || letter == ',' || letter == '"'; });
  const std::size_t end = std::min(item.find_first_not_of("0123456789"), item.size());
  std::string kind = item.substr(end);
  if (kind.empty() || kind[0] == '+' || kind[0] == '-') kind.insert(0, kPlain);
  return {item.substr(0, end), kind};
}

class PlanReader {
 public:
  PlanReader(Connection& connection, std::int32_t project)
      : connection_(connection), project_(std::to_string(project)) {}

  PlanContent CameIn() {
    ForEach("ProjectAct where Msp_ProjID = ", [this](Recordset& row) { TakeTask(row); });
    ForEach("ProjectAct where Msp_ProjID = ", [this](Recordset& row) { TakePredecessors(row); });
    std::set<std::int32_t> withoutAlias;
    ForEach("Object_Pool where Msp_ProjID = ", [&](Recordset& row) {
      const auto number = NumberIn(row.Field("Num"));
      if (number && Joined(row.Field("Alias")).empty()) withoutAlias.insert(*number);
    });
    std::map<std::string, PlanContent::Resource> known;
    ForEach("MSP_RESOURCES where RES_UID > 0 and PROJ_ID = ", [&](Recordset& row) {
      const auto object = NumberIn(row.Field("KV7_OBJ_HEX"));
      known[Joined(row.Field("RES_NAME"))] = {
          .note = NoteText(Joined(row.Field("KV7_OBJ_GLOSSARY"))),
          .lacksAlias = object && withoutAlias.contains(*object)};
    });
    ForEach("ProjectRes where Msp_ProjID = ", [&](Recordset& row) {
      const std::string name = Joined(row.Field("Name"));
      AddResource(row.Field("PID"), name, Joined(row.Field("Qty")), known[name].note);
      plan_.resources[name].lacksAlias = known[name].lacksAlias;
    });
    ForEach("ProjectResReqts where Msp_ProjID = ", [this](Recordset& row) {
      AddAssignment(row.Field("ActivityPID"), row.Field("ResourcePID"), Joined(row.Field("Qty")));
    });
    return std::move(plan_);
  }

  PlanContent Translated() {
    std::map<std::int32_t, std::string> notes;
    ForEach("Activity_Pool where Msp_ProjID = ", [&](Recordset& row) {
      const auto number = NumberIn(row.Field("Num"));
      if (number) notes[*number] = NoteText(Joined(row.Field("Glossary")));
    });
    ForEach("MSP_TASKS where TASK_UID > 0 and PROJ_ID = ", [&](Recordset& row) {
      const auto process = NumberIn(row.Field("KV7_PROC_HEX"));
      AddTask(row.Field("TASK_UID"), row.Field("KV7_PROCOCC_HEX"), row.Field("TASK_OUTLINE_LEVEL"),
              {.row = {},
               .name = Joined(row.Field("TASK_NAME")),
               .duration = Joined(row.Field("KV7_PROCOCC_DURATION")),
               .note = process ? notes[*process] : "",
               .scenario = NumberIn(row.Field("KV7_SCENARIO_HEX")).value_or(0)});
    });
    ForEach("MSP_LINKS where PROJ_ID = ", [this](Recordset& row) { TakeLink(row); });
    ForEach("MSP_RESOURCES where RES_UID > 0 and PROJ_ID = ", [this](Recordset& row) {
      AddResource(row.Field("RES_UID"), Joined(row.Field("RES_NAME")),
                  Joined(row.Field("RES_MAX_UNITS")),
                  NoteText(Joined(row.Field("KV7_OBJ_GLOSSARY"))));
    });
    ForEach("MSP_ASSIGNMENTS where PROJ_ID = ", [this](Recordset& row) {
      AddAssignment(row.Field("TASK_UID"), row.Field("RES_UID"), Joined(row.Field("ASSN_UNITS")));
    });
    return std::move(plan_);
  }

 private:
  template <typename Take>
  void ForEach(const std::string& tableAndCondition, Take take) {
    Recordset rows;
    rows.OpenStatic("Select * from " + tableAndCondition + project_, &connection_);
    for (; !rows.Eof(); rows.MoveNext()) take(rows);
  }

  void TakeTask(Recordset& row) {
    AddTask(row.Field("PID"), row.Field("Text1"), row.Field("Outline"),
            {.row = NumberIn(row.Field("PID")),
             .name = Joined(row.Field("Name")),
             .duration = Joined(row.Field("Duration")),
             .note = NoteText(Joined(row.Field("notes")))});
  }

  // Rows come in the order of the outline. The summary of the whole plan is no task.
  void AddTask(const Value& row, const Value& unit, const Value& level, PlanContent::Task task) {
    const auto planRow = NumberIn(row);
    const auto depth = NumberIn(level);
    if (!planRow || !depth || *depth <= 0) return;
    const std::int32_t number = NumberIn(unit).value_or(0) > 0 ? *NumberIn(unit) : -*planRow;
    while (!above_.empty() && above_.back().first >= *depth) above_.pop_back();
    if (!above_.empty()) {
      task.parent = above_.back().second;
      plan_.tasks[task.parent].isSummary = true;
    }
    above_.emplace_back(*depth, number);
    units_[*planRow] = number;
    task.place = plan_.tasks.size();
    plan_.tasks[number] = std::move(task);
  }

  void TakePredecessors(Recordset& row) {
    const auto successor = units_.find(NumberIn(row.Field("PID")).value_or(0));
    if (successor == units_.end()) return;
    for (std::string& entry : roundtrip::PredecessorEntries(Joined(row.Field("Predecessor")))) {
      const auto [number, kind] = TakenApart(std::move(entry));
      const auto predecessor = units_.find(NumberIn(Value(number)).value_or(0));
      if (predecessor != units_.end()) {
        plan_.relations.insert(RelationOf(predecessor->second, successor->second, kind));
      }
    }
  }

  void TakeLink(Recordset& row) {
    constexpr auto kFinishToFinish = static_cast<std::int32_t>(LinkKind::kFinishToFinish);
    constexpr auto kStartToStart = static_cast<std::int32_t>(LinkKind::kStartToStart);
    const auto from = units_.find(NumberIn(row.Field("LINK_PRED_UID")).value_or(0));
    const auto to = units_.find(NumberIn(row.Field("LINK_SUCC_UID")).value_or(0));
    if (from == units_.end() || to == units_.end()) return;
    const auto type = NumberIn(row.Field("LINK_TYPE"));
    const char* kind = type == kFinishToFinish ? "FF" : type == kStartToStart ? "SS" : kPlain;
    plan_.relations.insert(RelationOf(from->second, to->second, kind));
  }

  void AddResource(const Value& row, const std::string& name, const std::string& quantity,
                   const std::string& note) {
    const auto number = NumberIn(row);
    if (number) resources_[*number] = name;
    const auto known = plan_.resources.find(name);
    if (known != plan_.resources.end()) plan_.namesakes[name] = known->second.row;
    plan_.resources[name] = {.row = number, .quantity = quantity, .note = note};
  }

  void AddAssignment(const Value& task, const Value& resource, const std::string& units) {
    const auto unit = units_.find(NumberIn(task).value_or(0));
    const auto name = resources_.find(NumberIn(resource).value_or(0));
    if (unit == units_.end() || name == resources_.end()) return;
    plan_.assignments[{unit->second, name->second}] = units;
  }

  Connection& connection_;
  std::string project_;
  PlanContent plan_;
  std::vector<std::pair<std::int32_t, std::int32_t>> above_;  // level and number
  std::map<std::int32_t, std::int32_t> units_;                // by row
  std::map<std::int32_t, std::string> resources_;             // likewise
};

}  // namespace

PlanContent PlanThatCameIn(Connection& connection, std::int32_t project) {
  const ReadScope scope(&connection);
  return PlanReader(connection, project).CameIn();
}

PlanContent TranslatedPlan(Connection& connection, std::int32_t project) {
  return PlanReader(connection, project).Translated();
}

}  // namespace merivane::reconcile
