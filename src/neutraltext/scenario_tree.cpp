#include "scenario_tree.h"

#include <memory>
#include <utility>
#include <vector>

#include "neutraltext/modProjectToIDEF3.h"
#include "program/error_boxes.h"
#include "runtime/conversions.h"
#include "scenario_parts.h"
#include "store/interim_db.h"

namespace merivane::neutraltext {

namespace {

constexpr const char* kScenarioHex = "KV7_SCENARIO_HEX";
constexpr const char* kTopOutline = "0";

// Where a scenario hangs: the task that it decomposes and the outline level of its own tasks.
struct PlaceBelow {
  std::int16_t parentTaskUid = 0;
  std::string parentOutline;
  std::int16_t level = 0;
};

// One scenario that is being written, and then the walk over its rows for the scenarios below.
class ScenarioLevel {
 public:
  ScenarioLevel(ScenarioTree& tree, PlaceBelow place) : tree_(tree), place_(std::move(place)) {}

  // Writes the scenario. False when it has no tasks: nothing is written, and nothing is below.
  bool Write();
  // The next task of the level, as the place of its own scenario; nothing behind the last one.
  std::optional<PlaceBelow> NextBelow();

 private:
  void Open();
  bool FindFirstRow();
  void WriteScenario();
  void WriteReferentList(std::int16_t scenarioNum);
  void KeepRows();

  struct TaskRow {
    Value uid;
    Value outline;
  };

  ScenarioTree& tree_;
  PlaceBelow place_;
  Recordset tasks_;
  std::vector<TaskRow> rows_;
  std::size_t next_ = 0;
};

bool ScenarioLevel::Write() {
  Open();
  if (tasks_.RecordCount() < 1) return false;
  if (!FindFirstRow()) return false;
  WriteScenario();
  KeepRows();
  return true;
}

void ScenarioLevel::Open() {
  std::string sql = "SELECT * FROM [MSP_TASKS] WHERE TASK_UID > 0 AND TASK_OUTLINE_LEVEL = " +
                    std::to_string(place_.level) +
                    " AND [PROJ_ID] = " + std::to_string(tree_.state.gInterimProjId);
  if (place_.parentOutline != kTopOutline) {
    sql += " AND Task_Outline_Num Like '" + place_.parentOutline + ".%'";
  }
  tasks_.OpenStatic(sql, tree_.state.gProjectConn.get());
}

bool ScenarioLevel::FindFirstRow() {
  if (place_.parentOutline == kTopOutline) return true;
  for (; !tasks_.Eof(); tasks_.MoveNext()) {
    const std::string outline = ToText(tasks_.Field("Task_Outline_Num"));
    if (ParentOutlineOf(outline) == place_.parentOutline) return true;
  }
  return false;
}

void ScenarioLevel::WriteScenario() {
  ProjectToModel& state = tree_.state;
  state.scenarioCounter = AddInt16(state.scenarioCounter, 1);
  std::int16_t scenarioNum = 0;
  if (tree_.HasStoredScenario(tasks_)) scenarioNum = ToInt16(tasks_.Field(kScenarioHex));
  WriteScenarioHeader(tree_, tasks_, place_.parentOutline, place_.parentTaskUid);
  ScenarioLinks links;
  WriteProcessOccurrenceList(tree_, tasks_, place_.parentOutline, links);
  WriteJunctionList(tree_, tasks_, scenarioNum, links.junctionTable);
  WriteLinkList(tree_, scenarioNum, links.linkTable);
  if (tree_.HasStoredScenario(tasks_)) WriteReferentList(scenarioNum);
  tree_.out.Lines({"End  Scenario", ""});
}

void ScenarioLevel::WriteReferentList(std::int16_t scenarioNum) {
  if (!tree_.HasScenarioTable()) return;
  Recordset scenario =
      AskStatic(tree_.state.gProjectConn.get(), "SELECT * FROM SCENARIO WHERE NUM = ", scenarioNum);
  tree_.out.Block("Referent List", scenario, "Referent_List", NullBlock::kNoLine);
}

// The set itself is closed: thousands of levels may be open at a time. What a row holds is judged
// only when the row is due.
void ScenarioLevel::KeepRows() {
  tasks_.MoveLast();
  tasks_.MoveFirst();
  for (; !tasks_.Eof(); tasks_.MoveNext()) {
    rows_.push_back({tasks_.Field("TASK_UID"), tasks_.Field("TASK_OUTLINE_NUM")});
  }
  tasks_.Close();
}

std::optional<PlaceBelow> ScenarioLevel::NextBelow() {
  if (next_ == rows_.size()) return std::nullopt;
  const TaskRow& row = rows_[next_++];
  PlaceBelow place;
  place.parentTaskUid = ToInt16(row.uid);
  place.parentOutline = ToText(row.outline);
  place.level = AddInt16(place_.level, 1);
  return place;
}

// A failure shows its description and ends the one scenario that it happened in.
template <typename Step>
auto Guarded(Desktop& desktop, Step step) -> decltype(step()) {
  try {
    return step();
  } catch (const RunTimeError& error) {
    ShowDescription(desktop, error);
    return {};
  }
}

bool HasColumn(std::optional<bool>& known, Recordset& tasks, const char* name) {
  if (!known) known = FieldExists(tasks, name) == 1;
  return *known;
}

}  // namespace

std::string_view ParentOutlineOf(std::string_view outline) {
  const std::size_t point = outline.rfind('.');
  return point == std::string_view::npos ? std::string_view() : outline.substr(0, point);
}

bool ScenarioTree::HasStoredProcess(Recordset& tasks) {
  constexpr const char* kProcessHex = "KV7_PROC_HEX";
  return HasColumn(processColumn_, tasks, kProcessHex) && AboveZero(tasks.Field(kProcessHex));
}

bool ScenarioTree::HasStoredScenario(Recordset& tasks) {
  return HasScenarioColumn(tasks) && AboveZero(tasks.Field(kScenarioHex));
}

bool ScenarioTree::HasScenarioColumn(Recordset& tasks) {
  return HasColumn(scenarioColumn_, tasks, kScenarioHex);
}

bool ScenarioTree::HasScenarioTable() {
  if (!scenarioTable_) scenarioTable_ = TableExists(state.gProjectConn.get(), "Scenario") == 1;
  return *scenarioTable_;
}

// The levels that are open stand in a list and not on the stack: an outline may be thousands of
// levels deep.
void WriteScenarioLevel(ProjectToModel& state, std::int16_t parentTaskUid,
                        const std::string& parentOutline, std::int16_t level) {
  state.progress.Begin("Writing the scenarios", CountProjectTasks(state));
  ScenarioTree tree(state);
  std::vector<std::unique_ptr<ScenarioLevel>> open;
  std::optional<PlaceBelow> place = PlaceBelow{parentTaskUid, parentOutline, level};
  while (place || !open.empty()) {
    if (place) {
      auto scenario = std::make_unique<ScenarioLevel>(tree, *place);
      if (Guarded(state.desktop, [&] { return scenario->Write(); })) {
        open.push_back(std::move(scenario));
      }
    } else {
      open.pop_back();
    }
    place.reset();
    if (!open.empty()) place = Guarded(state.desktop, [&] { return open.back()->NextBelow(); });
  }
}

}  // namespace merivane::neutraltext
