#include "reconcile/complete_merge.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

#include "neutraltext/modProjectToIDEF3.h"
#include "outline.h"
#include "program/error_boxes.h"
#include "reconcile/plan_content.h"
#include "reconciliation.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/text.h"
#include "store/ask.h"
#include "store/interim_db.h"
#include "translator/modIDEF3ToProject.h"
#include "translator/multi.h"

namespace merivane::reconcile {

using namespace neutraltext;
using namespace roundtrip;
using namespace translator;

namespace {

constexpr std::int16_t kProject = 1;  // in a scratch database
constexpr const char* kTitle = "Project to Celvar Translator";

// A plan is read to its end, whatever its rows say: each that can't be taken as it stands is a
// remark.
class LenientReading : public MergeListener {
 public:
  explicit LenientReading(QuietDesktop& desktop) : desktop_(desktop) {}

  void OnLine(std::size_t /*number*/, std::string& /*line*/) override {}
  bool OnTask(MergeStep /*step*/, std::int32_t /*planId*/) override { return true; }
  void OnStop(const MergeStop& stop) override {
    // What a name of a task can't be is told where it is mended.
    std::string sentence = desktop_.boxes.empty() ? "" : desktop_.boxes.back().text;
    if (stop.kind == "task" && sentence.find("names do not have") != std::string::npos) return;
    if (stop.line > 0) sentence += " (line " + std::to_string(stop.line) + ")";
    for (char& letter : sentence) {
      if (letter == '\r' || letter == '\n') letter = ' ';
    }
    remarks.push_back({stop.number, stop.kind.empty() ? "plan" : stop.kind, stop.name,
                       std::move(sentence), "It is taken as far as it can be."});
  }

  std::vector<Remark> remarks;

 private:
  QuietDesktop& desktop_;
};

// A translation that somebody else's end has ended tells why in its last box.
template <typename Step>
void OrItsBox(QuietDesktop& desktop, const Step& step) {
  try {
    step();
    return;
  } catch (const ProgramEnd&) {
    // Its box has told why.
  }
  const Message box = desktop.boxes.empty() ? Message{} : desktop.boxes.back();
  throw RunTimeError(box.error != 0 ? box.error : kInvalidFileFormat, box.text);
}

// The model of the database in a copy of the template, and its plan.
class Scratch {
 public:
  Scratch(QuietDesktop& desktop, const StoredModel& model) : desktop_(desktop), program_(desktop) {
    State().gMspConn =
        std::make_unique<Connection>(program_.workspace, desktop.TemplatePath(), OpenMode::kCopy);
    State().gMspProjId = kProject;
    TakeStoredModel(State(), model);
  }

  Connection& Database() { return *program_.modelToProject.gMspConn; }
  void Translate() {
    OrItsBox(desktop_, [this] { TranslateToProject(State(), ""); });
  }
  std::unique_ptr<Connection> TakeDatabase() { return std::move(State().gMspConn); }
  void GiveDatabase(std::unique_ptr<Connection> database) {
    State().gMspConn = std::move(database);
  }

 private:
  ModelToProject& State() { return program_.modelToProject; }

  QuietDesktop& desktop_;
  Program program_;
};

class CompleteMerge {
 public:
  CompleteMerge(ProjectToModel& state, const std::string& planPath,
                std::optional<mspdi::FilePlan> ahead)
      : state_(state),
        planPath_(planPath),
        ahead_(std::move(ahead)),
        database_(state.gInterimConn->DatabaseName()),
        project_(state.gInterimProjId) {
    desktop_.ShowProgressOn(state.desktop);
    desktop_.templatePath = state.desktop.TemplatePath();
  }

  MergeResult Run() {
    if (!ahead_) ahead_ = ReadAhead(planPath_);
    if (ahead_) TakeAllTasks();
    ChooseAsBefore(desktop_, *state_.gInterimConn, project_);
    std::unique_ptr<Scratch> model = TranslatedModel({});
    const PlanContent given = TranslatedPlan(model->Database(), kProject);
    ModelRows rows = ReadModelRows(model->Database(), kProject);
    Program reader(desktop_);
    ReadPlan(reader.projectToModel, model->Database());
    Connection& plan = *reader.projectToModel.gInterimConn;
    result_.byName = NumberTasks(plan, kProject, rows, given);
    Reconciliation reconciliation(std::move(rows), given, WithUids(PlanThatCameIn(plan, kProject)));
    reconciliation.Run();
    if (!reconciliation.Changes().empty()) {
      model.reset();  // before there is another one
      model = TranslatedModel(reconciliation.Changes());
    }
    WriteText(*model);
    result_.numbers = reconciliation.Numbers();
    NumberAgain(plan);
    Store(model->Database(), plan);
    result_.remarks.insert(result_.remarks.end(), reconciliation.Remarks().begin(),
                           reconciliation.Remarks().end());
    result_.merged = true;
    return std::move(result_);
  }

 private:
  // What the plan holds and a model has no place for is told by its rows, in front of what the
  // reconciliation finds; it tells of links itself.
  void TakeAllTasks() {
    using mspdi::Untaken;
    const auto leavesOut = [this](Untaken kind) { return !ahead_->untaken.Of(kind).empty(); };
    if (leavesOut(Untaken::kInactiveTasks) || leavesOut(Untaken::kNamelessTasks)) {
      ahead_ = mspdi::ReadPlanFile(planPath_, mspdi::TakenTasks::kAll);
    }
    for (std::size_t each = 0; each < mspdi::kUntakenKinds; ++each)
      TellUntaken(static_cast<Untaken>(each));
    for (const auto& each : ahead_->resources) resourceUids_[each.id] = each.uid;
    if (ahead_->lostCharacters == 0) return;
    result_.remarks.push_back({{}, "plan", ahead_->name, mspdi::LostCharactersText(*ahead_), ""});
  }

  void TellUntaken(mspdi::Untaken kind) {
    const std::string sentence = mspdi::SentenceOf(kind);
    if (sentence.empty()) return;
    const auto tell = [&](const char* what, const auto& rows) {
      std::map<std::int64_t, std::string> names;
      for (const auto& row : rows) names[row.id] = row.name;
      for (const std::int64_t id : ahead_->untaken.Of(kind)) {
        result_.remarks.push_back({static_cast<std::int32_t>(id), what, names[id], sentence, ""});
      }
    };
    if (kind == mspdi::Untaken::kResourceCosts) {
      tell("resource", ahead_->resources);
    } else {
      tell("task", ahead_->tasks);
    }
  }

  PlanContent WithUids(PlanContent plan) const {
    for (auto& [name, resource] : plan.resources) {
      const auto uid = resourceUids_.find(resource.row.value_or(0));
      if (uid != resourceUids_.end()) resource.uid = uid->second;
    }
    return plan;
  }

  std::unique_ptr<Scratch> TranslatedModel(const std::vector<TableChange>& changes) {
    auto model = std::make_unique<Scratch>(desktop_, StoredModel{database_, project_});
    ApplyChanges(model->Database(), kProject, changes);
    model->Translate();
    return model;
  }

  // Into the work tables of a copy of the template, beside the resources, whose notes stay where
  // the plan has none.
  void ReadPlan(ProjectToModel& reader, Connection& model) {
    reader.gInterimConn =
        std::make_unique<Connection>(reader.workspace, desktop_.TemplatePath(), OpenMode::kCopy);
    reader.gInterimProjId = kProject;
    Replace({model, kProject}, {*reader.gInterimConn, kProject}, "MSP_RESOURCES", "PROJ_ID");
    LenientReading listener(desktop_);
    OrItsBox(desktop_, [&] { TakePlan(reader, planPath_, std::move(ahead_), &listener); });
    result_.remarks.insert(result_.remarks.end(), listener.remarks.begin(), listener.remarks.end());
  }

  // As the merged model numbers them.
  void NumberAgain(Connection& plan) {
    if (result_.numbers.empty()) return;
    Recordset tasks =
        Ask(&plan, "select * from ProjectAct where Msp_ProjID = ", std::to_string(kProject));
    for (; !tasks.Eof(); tasks.MoveNext()) {
      const auto number = result_.numbers.find(NumberIn(tasks.Field("Text1")).value_or(0));
      if (number == result_.numbers.end()) continue;
      tasks.SetField("Text1", std::to_string(number->second));
      tasks.Update();
    }
  }

  void WriteText(Scratch& after) {
    state_.gProjectConn = after.TakeDatabase();
    state_.gInterimProjId = kProject;
    const auto giveBack = [&] {
      state_.gInterimProjId = project_;
      after.GiveDatabase(std::move(state_.gProjectConn));
    };
    try {
      WriteWholeModel(state_);
    } catch (...) {
      giveBack();
      throw;
    }
    giveBack();
  }

  // The rows of the project give way to those of the scratch databases.
  void Store(Connection& model, Connection& plan) {
    const Rows stored{*state_.gInterimConn, project_};
    Replace({model, kProject}, stored, "Object_in_Activity_in_Scenario", "Msp_ProjID",
            ShownUses(model));
    for (const char* table : {"Activity_Pool", "Object_Pool", "Scenario", "Activity_in_Scenario",
                              "Junctions_in_Scenario", "Facts_in_Junction", "Links_in_Scenario"}) {
      Replace({model, kProject}, stored, table, "Msp_ProjID");
    }
    Replace({model, kProject}, stored, "MSP_TASKS", "PROJ_ID",
            ShownColumn{"KV7_PROCOCC_BROUGHT_BACK", [](Recordset&) { return true; }});
    for (const char* table : {"MSP_LINKS", "MSP_RESOURCES", "MSP_ASSIGNMENTS"}) {
      Replace({model, kProject}, stored, table, "PROJ_ID");
    }
    for (const char* table : {"P_Misc", "ProjectAct", "ProjectRes", "ProjectResReqts"}) {
      Replace({plan, kProject}, stored, table, "Msp_ProjID");
    }
    Connection* database = state_.gInterimConn.get();
    Recordset project =
        Ask(database, "select * from MSP_PROJECTS where PROJ_ID = ", std::to_string(project_));
    if (!project.Eof()) {
      project.SetField("KV7_PROJ_MAX_USE_ID", Value());  // the model stands in its own tables again
      project.SetField("KV7_PROJ_MAX_ACT_ID", Value());
      project.Update();
    }
    state_.gInterimConn->Close();
    state_.gProjectConn = std::make_unique<Connection>(state_.workspace);
    state_.gProjectConn->Open(ConnectionText(database_));
  }

  // A column that is 1 in the rows that the plan of the model shows.
  struct ShownColumn {
    const char* column;
    std::function<bool(Recordset& row)> isShown;
  };

  static ShownColumn ShownUses(Connection& model) {
    Connection* database = &model;
    const std::string project = std::to_string(kProject);
    const auto numbers = [&](const char* table, const char* from, const char* to) {
      std::map<std::int32_t, std::int32_t> found;
      Recordset rows = AskStatic(database, "select * from ", table, " where PROJ_ID = ", project);
      for (; !rows.Eof(); rows.MoveNext()) {
        found[NumberIn(rows.Field(from)).value_or(0)] = NumberIn(rows.Field(to)).value_or(0);
      }
      return found;
    };
    auto units = numbers("MSP_TASKS", "TASK_UID", "KV7_PROCOCC_HEX");
    auto objects = numbers("MSP_RESOURCES", "RES_UID", "KV7_OBJ_HEX");
    std::set<std::pair<std::int32_t, std::int32_t>> assigned;
    Recordset assignments =
        AskStatic(database, "select * from MSP_ASSIGNMENTS where PROJ_ID = ", project);
    for (; !assignments.Eof(); assignments.MoveNext()) {
      assigned.emplace(units[NumberIn(assignments.Field("TASK_UID")).value_or(0)],
                       objects[NumberIn(assignments.Field("RES_UID")).value_or(0)]);
    }
    return {"Brought_from_Project", [assigned = std::move(assigned)](Recordset& use) {
              return assigned.contains({NumberIn(use.Field("Activity_Num")).value_or(0),
                                        NumberIn(use.Field("Object_Occ_Num")).value_or(0)});
            }};
  }

  struct Rows {
    Connection& database;
    std::int32_t project;
  };

  // Row by row, so that what didn't change isn't written.
  void Replace(const Rows& source, const Rows& target, const char* table, const char* projectColumn,
               const std::optional<ShownColumn>& shown = {}) {
    const auto where = [&](std::int32_t project) {
      return std::string(" where ") + projectColumn + " = " + std::to_string(project);
    };
    Recordset from = AskStatic(&source.database, "select * from ", table, where(source.project));
    Recordset to = Ask(&target.database, "select * from ", table, where(target.project));
    std::vector<std::pair<int, int>> places;  // of each column in both
    std::vector<std::string> columns;
    for (int column = 0; column < from.FieldCount(); ++column) {
      const std::string name = from.FieldName(column);
      if (EqualNoCase(name, projectColumn) || EqualNoCase(name, kComputed)) continue;
      const int place = to.FindField(name);
      if (place < 0) continue;
      places.emplace_back(column, place);
      columns.push_back(name);
    }
    std::vector<Value> row;
    const int shownPlace = shown ? from.FindField(shown->column) : -1;
    if (shown && shownPlace < 0) throw RunTimeError(kItemNotFound);  // a template of another kind
    const auto readRow = [&] {
      from.ReadRow(row);
      if (shown && shown->isShown(from)) row[static_cast<std::size_t>(shownPlace)] = Value(1);
    };
    std::vector<Value> before;
    for (; !from.Eof() && !to.Eof(); from.MoveNext(), to.MoveNext(), state_.progress.Step()) {
      readRow();
      to.ReadRow(before);
      bool isSame = true;
      for (std::size_t at = 0; at < places.size(); ++at) {
        const Value& value = row[static_cast<std::size_t>(places[at].first)];
        if (before[static_cast<std::size_t>(places[at].second)] == value) continue;
        to.SetField(columns[at], value);
        isSame = false;
      }
      if (!isSame) to.Update();
    }
    for (; !to.Eof(); to.MoveNext()) to.Delete();
    columns.emplace_back(projectColumn);
    for (; !from.Eof(); from.MoveNext(), state_.progress.Step()) {
      readRow();
      std::vector<Value> values;
      values.reserve(columns.size());
      for (const auto& [place, other] : places) {
        values.push_back(std::move(row[static_cast<std::size_t>(place)]));
      }
      values.emplace_back(target.project);
      to.AddNew(columns, std::move(values));
    }
  }

  static constexpr const char* kComputed = "KV7_SCNEARIO_HEX";

  ProjectToModel& state_;
  std::string planPath_;
  std::optional<mspdi::FilePlan> ahead_;
  std::map<std::int64_t, std::int64_t> resourceUids_;  // by the number of the row
  std::string database_;
  std::int32_t project_;
  QuietDesktop desktop_;
  MergeResult result_;
};

}  // namespace

MergeResult MergeCompletely(ProjectToModel& state, const std::string& planPath,
                            std::optional<mspdi::FilePlan> ahead) {
  const auto refuse = [&](const std::string& text) {
    state.desktop.ShowMessage({.text = text, .icon = MessageIcon::kCritical, .title = kTitle});
  };
  try {
    return CompleteMerge(state, planPath, std::move(ahead)).Run();
  } catch (const CircleOfTasks& circle) {
    refuse("Tasks of the plan wait for each other in a circle: " + circle.names +
           ".  Take one of their predecessors out, and merge again.");
  } catch (const RunTimeError& error) {
    if (IsMachineFault(error.Number())) throw;
    ShowDescription(state.desktop, error);
  }
  return {};
}

void ChooseAsBefore(QuietDesktop& desktop, Connection& stored, std::int32_t project) {
  std::set<std::string> chosen;
  Recordset scenarios =
      AskStatic(&stored, "select Name from Scenario where Send_to_Project = 1 and Msp_ProjID = ",
                std::to_string(project));
  for (; !scenarios.Eof(); scenarios.MoveNext()) chosen.insert(Joined(scenarios.Field(0)));
  desktop.onModalForm = [chosen](ModalForm& form) {
    auto* question = dynamic_cast<multi*>(&form);
    if (question == nullptr || question->List1.empty()) return;
    const auto& names = question->List1;
    const auto known = std::find_if(names.begin(), names.end(),
                                    [&](const std::string& name) { return chosen.contains(name); });
    question->Choose(known == names.end() ? 0 : static_cast<std::size_t>(known - names.begin()));
  };
}

}  // namespace merivane::reconcile
