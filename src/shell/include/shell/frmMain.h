// The main window: menus, start-up, help, and the single instances of the other forms.
#pragma once

#include <string>

#include "program/program.h"
#include "shell/frmIDEF3ToProject.h"
#include "shell/frmProjectToIDEF3.h"
#include "shell/modOptions.h"

namespace merivane::shell {

class frmSplash : public Form {};

class frmAbout : public Form {
 public:
  static constexpr int kTechContextId = 382;
  void cmdOk() { Unload(); }
};

// Caption "Merivane: Celvar <--> Microsoft Project".
class frmMain : public Form {
 public:
  static constexpr int kHelpContextId = 1000;

  explicit frmMain(Program& program);

  // The home page of the maker; set at build time.
  static const char* HomePage();

  // Start-up: shows this form, the splash for a second, and names the help file.
  void Start();

  // Each opens its dialog, which stays one and the same; a failure is told in a box.
  void mnuIDEF3ToProject();
  void mnuProjectToIDEF3();
  void mnuExit() { desktop_.EndProgram(); }
  void mnuPath() { options.Show(); }
  void mnuContents() { desktop_.ShowHelp(HelpFile, kHelpContents, 0); }
  void mnuIndex() { desktop_.ShowHelp(HelpFile, kHelpIndex, 0); }
  void mnuAboutVorn();
  void mnuAboutMerivane() { about.Show(); }
  // A help button, or F1: the topic of the active control.
  void ShowContextHelp(int context) { desktop_.ShowHelp(HelpFile, kHelpContext, context); }

  std::string HelpFile;  // set at the end of start-up

  Workspace& workspace;  // of the program, as the next one
  Progress& progress;

  ApplicationPaths paths;
  frmIDEF3ToProject modelToProject;
  frmProjectToIDEF3 projectToModel;
  frmOptions options;
  frmAbout about;
  frmSplash splash;

 private:
  void ShowGuarded(Form& form);

  Desktop& desktop_;
};

}  // namespace merivane::shell
