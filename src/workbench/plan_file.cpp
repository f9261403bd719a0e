#include <string>

#include "notes.h"
#include "outline.h"
#include "platform/quiet_desktop.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/file_names.h"
#include "runtime/new_file.h"
#include "runtime/run_time_error.h"
#include "runtime/text_files.h"
#include "store/interim_db.h"
#include "workbench/file_view.h"

namespace merivane::workbench {

using namespace program;
using namespace roundtrip;

namespace {

// A program that takes a plan in as the dialog does that makes a new model of it.
class NewModel {
 public:
  explicit NewModel(Desktop& shown) {
    desktop_.ShowProgressOn(shown);
    program_.workspace.CopyDatabase(shown.TemplatePath(), database_.Path());
  }
  ~NewModel() {
    state_.gInterimConn.reset();
    state_.gProjectConn.reset();
    program_.files.CloseAll();
  }
  NewModel(const NewModel&) = delete;
  NewModel& operator=(const NewModel&) = delete;

  void TakeIn(const std::string& path) {
    constexpr std::int16_t kAnew = 0;
    constexpr bool kOverwrite = true;
    const Progress::Run run(program_.progress);
    OpenInterimDb(program_.workspace, state_.gInterimConn, kOverwrite, database_.Path());
    state_.gInterimProjId = kProject;
    state_.gOutFile = state_.files.FreeFile();
    state_.files.OpenForOutput(state_.gOutFile, text_.Path());
    try {
      if (KindOfOpened(path) == FileKind::kXml) {
        TranslateXml(state_, path, kAnew);
      } else {
        TranslateMpx(state_, path, "", kAnew);
      }
    } catch (const ProgramEnd&) {
      // Its box is told.
    }
    state_.gProjectConn.reset();
    state_.gInterimConn.reset();
    program_.files.CloseAll();
  }

  FileView View(const DateTime& today) {
    Connection connection(program_.workspace, database_.Path(), OpenMode::kReadOnly);
    FileView view;
    AddPlan(view, connection, kProject, today);
    AddLines(desktop_, view.lines);
    if (view.elements.empty()) throw RunTimeError(kInvalidProcedureCall, WhyNone(view));
    return view;
  }

 private:
  static constexpr std::int32_t kProject = 1;

  static std::string WhyNone(const FileView& view) {
    std::string why;
    for (const std::string& line : view.lines) why += (why.empty() ? "" : " ") + line;
    return why.empty() ? view.whyNoChart : why;
  }

  const TemporaryFile database_{TemporaryName()};
  const TemporaryFile text_{TemporaryName()};
  QuietDesktop desktop_;
  Program program_{desktop_};
  ProjectToModel& state_ = program_.projectToModel;
};

}  // namespace

FileKind KindOfOpened(const std::string& path) {
  return KindOfFile(path).value_or(FileKind::kDatabase);
}

FileView ViewDatabase(Connection& connection, std::int32_t project, const DateTime& today) {
  FileView view;
  if (TableExists(&connection, "Scenario") != 0) {
    try {
      view.model = ReadProcessModel(connection, project);
    } catch (const RunTimeError& error) {
      view.model = {};
      view.lines.push_back("The model can't be read: " + error.Description());
    }
  }
  AddModel(view);
  AddPlan(view, connection, project, today);
  AddLeftOut(view, TakenPaths());
  if (view.elements.empty() && !view.whyNoChart.empty()) {
    throw RunTimeError(kInvalidProcedureCall, view.whyNoChart);
  }
  return view;
}

FileView ViewPlanFile(const std::string& path, Desktop& shown) {
  TextFiles().OpenForInput(1, path);  // tells why it can't be read
  NewModel plan(shown);
  plan.TakeIn(path);
  return plan.View(shown.Today());
}

}  // namespace merivane::workbench
