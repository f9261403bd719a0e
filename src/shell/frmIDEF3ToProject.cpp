#include "shell/frmIDEF3ToProject.h"

#include "program/error_boxes.h"
#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "runtime/text.h"
#include "shell/browse.h"
#include "shell/drivers.h"
#include "shell/frmDbFileAppend.h"
#include "shell/kept_files.h"
#include "store/interim_db.h"

namespace merivane::shell {

void frmIDEF3ToProject::Load() {
  txtCelvarFilename = txtDatabase = txtDatabase_mpx = txtMpx = TextBox{};
  SSTabGenerateOpt = kDatabaseTab;
  CkLaunchMsprojApp = {};
  GenerateResult.reset();
  BackupName.clear();
}

void frmIDEF3ToProject::cmdBrowseText() {
  const SavedMousePointer pointer(desktop_, kPointerArrowHourglass);
  try {
    if (auto name = BrowseForFile(
            desktop_, {"Text (*.txt)|*.txt", "Please Select Celvar Text File"}, "txt")) {
      txtCelvarFilename.text = *name;
    }
  } catch (const RunTimeError& error) {
    ReportError(desktop_, error);
  }
  Changed();
}

void frmIDEF3ToProject::cmdBrowseMPX() {
  const SavedMousePointer pointer(desktop_, kPointerArrowHourglass);
  try {
    if (auto name = BrowseForFile(
            desktop_, {"Project (*.mpx)|*.mpx", "Please Select Target MPX File"}, "mpx")) {
      txtMpx.text = *name;
    }
  } catch (const RunTimeError& error) {
    ReportError(desktop_, error);
  }
  Changed();
}

void frmIDEF3ToProject::BrowseDatabase(TextBox& box) {
  const SavedMousePointer pointer(desktop_, kPointerArrowHourglass);
  try {
    const auto name = BrowseForFile(
        desktop_, {"Database (*.mdb)|*.mdb", "Please Select Microsoft Project 2000 Database"},
        "mdb");
    if (!name) return;
    box.enabled = true;
    box.text = *name;
    SettleDatabase(box.text);
    state_.workspace.CommitAll();
  } catch (const RunTimeError&) {
    // A file that can't be replaced or opened leaves the connection as it was, without a word.
    if (!IsVisible()) Show();
  }
  Changed();
}

void frmIDEF3ToProject::SettleDatabase(const std::string& path) {
  BackupName.clear();
  if (FileIsThere(path)) {
    Hide();
    frmDbFileAppend append(state_.gOverwriteDb);
    desktop_.ShowModal(append);
    Show();
  } else {
    state_.gOverwriteDb = true;
  }
  if (state_.gOverwriteDb) {
    CopyTemplate(path);
  } else {
    AppendTo(path);
  }
}

void frmIDEF3ToProject::CopyTemplate(const std::string& path) {
  const std::string templatePath = desktop_.TemplatePath();
  if (!CheckTemplateDb(state_.workspace, templatePath)) {
    ShowTemplateMissing(desktop_, templatePath);
    return;
  }
  BackupName = ReplaceDatabase(state_.workspace, templatePath, path, KeepBackup);
  OpenInterimDb(state_.workspace, state_.gMspConn, state_.gOverwriteDb, path);
  state_.gMspProjId = 1;
}

void frmIDEF3ToProject::AppendTo(const std::string& path) {
  OpenInterimDb(state_.workspace, state_.gMspConn, state_.gOverwriteDb, path);
  Recordset projects;
  projects.OpenStatic("SELECT PROJ_ID, PROJ_NAME FROM [MSP_PROJECTS]", state_.gMspConn.get());
  if (projects.RecordCount() > 0) {
    projects.MoveLast();
    state_.gMspProjId = AddInt16(ToInt16(projects.Field("PROJ_ID")), 1);
  }
}

bool frmIDEF3ToProject::Validate() {
  const auto refuse = [this](const char* text) {
    desktop_.ShowMessage({text});
    return false;
  };
  if (txtCelvarFilename.text.empty()) {
    return refuse("Please Select Source Celvar Text Filename");
  }
  if (DatabaseTabActive()) {
    return !txtDatabase.text.empty() || refuse("Please Select MS Project 2000 Database name");
  }
  if (txtMpx.text.empty()) return refuse("Please Select Mpx Output Filename.");
  return !txtDatabase_mpx.text.empty() || refuse("Please Give an interim Database Name.");
}

void frmIDEF3ToProject::cmdOK() {
  const SavedMousePointer pointer(desktop_, kPointerHourglass);
  try {
    if (!Validate()) return;
    state_.gDatabaseName = FromUtf8(DatabaseTabActive() ? txtDatabase.text : txtDatabase_mpx.text);
    GenerateResult = GenerateFromText(state_, txtCelvarFilename.text, txtMpx.text);
    state_.workspace.CommitAll();
    if (*GenerateResult && CkLaunchMsprojApp.checked) LaunchProject();
    Unload();
  } catch (const RunTimeError& error) {
    Unload();
    RestoreMousePointer(desktop_);
    ShowDescription(desktop_, error);
    ReportError(desktop_, error);
  }
}

void frmIDEF3ToProject::LaunchProject() {
  const std::string& database = txtDatabase.text;
  const std::string& target = DatabaseTabActive() ? database : txtMpx.text;
  // The bound is the database's length on both tabs: an MPX name goes unquoted when that is empty.
  const bool blank = HasInnerBlank(target, database.size());
  if (blank) {
    const std::string name = FromUtf8(target);
    desktop_.ShowMessage(
        {DatabaseTabActive()
             ? "There are spaces in the target directory or file name. \r\nPlease open file " +
                   name + "\r\nfrom MsProject 2000."
             : "There are spaces in the target directory or file name.\r\nThe target file \r\n" +
                   name + "\r\nhas been generated. \r\nPlease open it from MsProject 2000."});
  }
  ExecuteApp(desktop_, blank ? paths_.gProjectPath : paths_.gProjectPath + " " + target);
  txtDatabase.enabled = txtMpx.enabled = false;
  CkLaunchMsprojApp = {false, false};
}

void frmIDEF3ToProject::CkLaunchMsprojApp_Click() {
  if (!CkLaunchMsprojApp.checked) return;
  try {
    paths_.gProjectPath = GetCommandPath(desktop_, kProject2000Key);
    if (paths_.gProjectPath.empty() && !DatabaseTabActive()) {
      paths_.gProjectPath = GetCommandPath(desktop_, kProject98Key);
    }
    if (paths_.gProjectPath.empty()) {
      desktop_.ShowMessage(
          {DatabaseTabActive()
               ? "Microsoft Project 2000 is not installed."
               : "Both Microsoft Project 2000 and Microsoft Project 98 are not installed."});
      CkLaunchMsprojApp.checked = false;
    }
  } catch (const RunTimeError&) {
    // The look-up ends silently.
  }
  Changed();
}

bool frmIDEF3ToProject::OpenProj2kTemplate() {
  return CheckTemplateDb(state_.workspace, desktop_.AppPath() + "/MSProject2kDB.mdb");
}

}  // namespace merivane::shell
