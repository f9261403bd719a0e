#include "reconcile/complete_merge.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <utility>

#include "neutraltext/modProjectToIDEF3.h"
#include "program/error_boxes.h"
#include "reconcile/row_values.h"
#include "reconciliation.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/text.h"
#include "store/ask.h"
#include "store/interim_db.h"
#include "translator/modIDEF3ToProject.h"
#include "translator/multi.h"
#include "translator/stored_model.h"

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
    std::string sentence = desktop_.boxes.empty() ? "" : desktop_.boxes.back().text;
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
    State().gMspConn = std::make_unique<Connection>(program_.workspace);
    State().gMspConn->Open(ConnectionText(desktop.TemplatePath()), OpenMode::kCopy);
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
  CompleteMerge(ProjectToModel& state, const std::string& planPath)
      : state_(state),
        planPath_(planPath),
        database_(state.gInterimConn->DatabaseName()),
        project_(state.gInterimProjId) {
    desktop_.ShowProgressOn(state.desktop);
    desktop_.templatePath = state.desktop.TemplatePath();
  }

  std::vector<Remark> Run() {
    const StoredModel model{database_, project_};
    ChooseAsBefore(desktop_, *state_.gInterimConn, project_);
    Scratch before(desktop_, model);
    before.Translate();
    Scratch after(desktop_, model);
    Program reader(desktop_);
    ReadPlan(reader.projectToModel);
    Connection& plan = *reader.projectToModel.gInterimConn;
    ModelRows rows = ReadModelRows(before.Database(), kProject);
    const PlanContent given = TranslatedPlan(before.Database(), kProject);
    NumberTasks(plan, rows, given);
    Reconciliation reconciliation(std::move(rows), given, PlanThatCameIn(plan, project_));
    reconciliation.Run();
    ApplyChanges(after.Database(), kProject, reconciliation.Changes());
    after.Translate();
    WriteText(after);
    Store(after.Database(), plan);
    remarks_.insert(remarks_.end(), reconciliation.Remarks().begin(),
                    reconciliation.Remarks().end());
    return std::move(remarks_);
  }

 private:
  // Into the work tables of a copy.
  void ReadPlan(ProjectToModel& reader) {
    reader.gInterimConn = std::make_unique<Connection>(reader.workspace);
    reader.gInterimConn->Open(ConnectionText(database_), OpenMode::kCopy);
    reader.gInterimProjId = project_;
    LenientReading listener(desktop_);
    OrItsBox(desktop_, [&] { TakePlan(reader, planPath_, &listener); });
    remarks_ = std::move(listener.remarks);
  }

  // A task without the number of a unit in the plan, or with one that an earlier task bears, is
  // new.
  void NumberTasks(Connection& plan, const ModelRows& rows, const PlanContent& given) {
    ModelEdit numbers(rows);
    std::int32_t last = 0;
    for (const auto& [unit, row] : rows.units) last = std::max(last, unit);
    std::set<std::int32_t> seen;
    Recordset tasks =
        Ask(&plan, "select * from ProjectAct where Msp_ProjID = ", std::to_string(project_));
    bool anyKnown = false;
    for (; !tasks.Eof(); tasks.MoveNext()) {
      if (NumberIn(tasks.Field("Outline")).value_or(0) <= 0) continue;
      const std::int32_t unit = NumberIn(tasks.Field("Text1")).value_or(0);
      if (given.tasks.contains(unit) && seen.insert(unit).second) {
        anyKnown = true;
        continue;
      }
      tasks.SetField("Text1", std::to_string(numbers.NextElement()));
      tasks.Update();
    }
    if (!anyKnown && !given.tasks.empty()) {
      throw RunTimeError(kInvalidFileFormat,
                         "No task of the plan bears a number of this project's model in the field "
                         "Text1.  Save the plan with that field, or build a new model from the "
                         "plan alone (Overwrite; --overwrite).");
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
    for (const char* table : {"Activity_Pool", "Object_Pool", "Scenario", "Activity_in_Scenario",
                              "Object_in_Activity_in_Scenario", "Junctions_in_Scenario",
                              "Facts_in_Junction", "Links_in_Scenario"}) {
      Replace(model, table, "Msp_ProjID", kProject);
    }
    for (const char* table : {"MSP_TASKS", "MSP_LINKS", "MSP_RESOURCES", "MSP_ASSIGNMENTS"}) {
      Replace(model, table, "PROJ_ID", kProject);
    }
    for (const char* table : {"P_Misc", "ProjectAct", "ProjectRes", "ProjectResReqts"}) {
      Replace(plan, table, "Msp_ProjID", project_);
    }
    MarkWhatCameBack();
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

  // All that the plan of the database shows.
  void MarkWhatCameBack() {
    Connection* database = state_.gInterimConn.get();
    const std::string project = std::to_string(project_);
    Recordset tasks = Ask(database, "select * from MSP_TASKS where PROJ_ID = ", project);
    for (; !tasks.Eof(); tasks.MoveNext()) {
      tasks.SetField("KV7_PROCOCC_BROUGHT_BACK", 1);
      tasks.Update();
    }
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
    Recordset uses =
        Ask(database, "select * from Object_in_Activity_in_Scenario where Msp_ProjID = ", project);
    for (; !uses.Eof(); uses.MoveNext()) {
      if (!assigned.contains({NumberIn(uses.Field("Activity_Num")).value_or(0),
                              NumberIn(uses.Field("Object_Occ_Num")).value_or(0)})) {
        continue;
      }
      uses.SetField("Brought_from_Project", 1);
      uses.Update();
    }
  }

  void Replace(Connection& source, const char* table, const char* projectColumn,
               std::int32_t project) {
    Connection* database = state_.gInterimConn.get();
    const std::string where = std::string(" where ") + projectColumn + " = ";
    Recordset old = Ask(database, "select * from ", table, where, std::to_string(project_));
    for (; !old.Eof(); old.MoveNext()) old.Delete();
    Recordset from = AskStatic(&source, "select * from ", table, where, std::to_string(project));
    Recordset to = Ask(database, "select * from ", table);
    std::vector<std::string> columns;
    for (int column = 0; column < from.FieldCount(); ++column) {
      const std::string name = from.FieldName(column);
      const bool isOwn = !EqualNoCase(name, projectColumn) && !EqualNoCase(name, kComputed);
      if (isOwn && to.FindField(name) >= 0) columns.push_back(name);
    }
    const std::size_t count = columns.size();
    columns.emplace_back(projectColumn);
    for (; !from.Eof(); from.MoveNext(), state_.progress.Step()) {
      std::vector<Value> values;
      values.reserve(count + 1);
      for (std::size_t at = 0; at < count; ++at) values.push_back(from.Field(columns[at]));
      values.emplace_back(project_);
      to.AddNew(columns, values);
    }
  }

  static constexpr const char* kComputed = "KV7_SCNEARIO_HEX";

  ProjectToModel& state_;
  std::string planPath_;
  std::string database_;
  std::int32_t project_;
  QuietDesktop desktop_;
  std::vector<Remark> remarks_;
};

}  // namespace

Kept MergeCompletely(ProjectToModel& state, const std::string& planPath) {
  const auto refuse = [&](const std::string& text) {
    state.desktop.ShowMessage({.text = text, .icon = MessageIcon::kCritical, .title = kTitle});
  };
  try {
    return {true, CompleteMerge(state, planPath).Run()};
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
