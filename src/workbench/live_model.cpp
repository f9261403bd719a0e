#include "workbench/live_model.h"

#include <algorithm>

#include "notes.h"
#include "outline.h"
#include "runtime/run_time_error.h"
#include "runtime/text_files.h"
#include "translator/modIDEF3ToProject.h"
#include "translator/multi.h"

namespace merivane::workbench {

// A program that has the model as it was read, in memory, and what it asked on its way to the plan.
struct LiveModel::Translation {
  QuietDesktop desktop;
  Program program{desktop};
  TakenPaths paths;
  std::vector<ScenarioChoice> choices;
  bool isDone = false;

  explicit Translation(Desktop& shown) { desktop.ShowProgressOn(shown); }

  Connection& Database() const { return *program.modelToProject.gMspConn; }

  void Run(const std::string& database, const std::map<std::string, std::size_t>& answers) {
    desktop.onModalForm = [this, &answers](ModalForm& form) {
      if (auto* chooser = dynamic_cast<multi*>(&form)) Answer(*chooser, answers);
    };
    ModelToProject& state = program.modelToProject;
    state.gMspConn = std::make_unique<Connection>(program.workspace, database, OpenMode::kCopy);
    state.gMspProjId = ScratchModel::kProject;
    state.translationListener = &paths;
    try {
      TranslateToProject(state, "");
      isDone = true;
    } catch (const ProgramEnd&) {
      isDone = false;  // its box has told why
    }
    state.translationListener = nullptr;
  }

  void Answer(multi& form, const std::map<std::string, std::size_t>& answers) {
    const std::string question = form.Label1 + ' ' + form.Label2;
    const auto answer = answers.find(question);
    const std::size_t chosen = answer == answers.end() ? 0 : answer->second;
    choices.push_back({question, form.List1, std::min(chosen, form.List1.size() - 1)});
    form.Choose(choices.back().chosen);
  }
};

LiveModel::LiveModel(const std::string& textFile, Desktop& shown) : shown_(shown) {
  TextFiles().OpenForInput(1, textFile);  // tells why it can't be read
  desktop_.templatePath = shown.TemplatePath();
  desktop_.appPath = shown.AppPath();
  desktop_.ShowProgressOn(shown);
  Read(textFile);
  Check(textFile);
}

void LiveModel::Read(const std::string& textFile) {
  const Progress::Run run(program_.progress);
  scratch_ = std::make_unique<ScratchModel>(program_);
  try {
    scratch_->Read(textFile);
  } catch (const ProgramEnd&) {
    // Its box is told, and how far it came.
  }
  if (!scratch_->BreaksOff().empty()) lines_.push_back(scratch_->BreaksOff());
  AddLines(desktop_, lines_);
  read_ = ReadProcessModel(scratch_->Database(), ScratchModel::kProject);
  scratch_->Database().Commit();
}

void LiveModel::Check(const std::string& textFile) try {
  check_ = CheckModelWithLines(textFile, shown_.TemplatePath(), &shown_);
} catch (const RunTimeError& error) {
  lines_.push_back("The text could not be checked: " + error.Description());
}

FileView LiveModel::View() {
  FileView view;
  view.lines = lines_;
  const bool isWhole = scratch_->BreaksOff().empty();
  Translation translation(shown_);
  if (isWhole) {
    const Progress::Run run(translation.program.progress);
    translation.Run(scratch_->Database().DatabaseName(), answers_);
    view.choices = translation.choices;
    AddLines(translation.desktop, view.lines);
  } else {
    view.whyNoChart = "There is no plan of a text that was not read to its end.";
  }
  view.model =
      translation.isDone ? ReadProcessModel(translation.Database(), ScratchModel::kProject) : read_;
  AddModel(view);
  ReadPlan(translation, view);
  AddCheck(view, check_);
  AddLeftOut(view, translation.paths);
  return view;
}

void LiveModel::ReadPlan(Translation& translation, FileView& view) const {
  if (translation.isDone) {
    AddPlan(view, translation.Database(), ScratchModel::kProject, shown_.Today());
  } else if (view.whyNoChart.empty()) {
    view.whyNoChart = "The translation ends before there is a plan.";
  }
}

}  // namespace merivane::workbench
