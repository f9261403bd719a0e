#include "shell/frmMain.h"

#include "program/error_boxes.h"

namespace merivane::shell {

namespace {

constexpr int kSplashMilliseconds = 1000;

}  // namespace

frmMain::frmMain(Program& program)
    : workspace(program.workspace),
      progress(program.progress),
      modelToProject(program.modelToProject, paths),
      projectToModel(program.projectToModel, paths),
      options(program.desktop),
      desktop_(program.desktop) {}

const char* frmMain::HomePage() { return MERIVANE_HOME_PAGE; }

void frmMain::Start() {
  Show();
  splash.Show();
  desktop_.Sleep(kSplashMilliseconds);
  splash.Unload();
  HelpFile = desktop_.AppPath() + "/merivane.chm";
}

void frmMain::ShowGuarded(Form& form) {
  try {
    form.Show();
  } catch (const RunTimeError& error) {
    ShowDescription(desktop_, error);
  }
}

void frmMain::mnuIDEF3ToProject() { ShowGuarded(modelToProject); }

void frmMain::mnuProjectToIDEF3() { ShowGuarded(projectToModel); }

void frmMain::mnuAboutVorn() {
  const std::string url = HomePage();
  if (desktop_.OpenWebPage(url) < Desktop::kLowestSuccess) {
    desktop_.ShowMessage({"Cannot launch the default browser or site " + url + " not found."});
  }
}

}  // namespace merivane::shell
