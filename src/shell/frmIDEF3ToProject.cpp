#include "shell/frmIDEF3ToProject.h"

#include "program/error_boxes.h"
#include "runtime/code_page.h"
#include "runtime/conversions.h"
#include "shell/cancellable_run.h"
#include "shell/kept_files.h"
#include "shell/modal_forms.h"
#include "shell/named_files.h"
#include "store/interim_db.h"

namespace merivane::shell {

namespace {

const FileDialog kTextDialog{"Text (*.txt)|*.txt", "Please Select Celvar Text File"};
const FileDialog kMpxDialog{
    .filter = "Project (*.mpx)|*.mpx", .title = "Please Select Target MPX File", .newName = true};
const FileDialog kXmlDialog{
    .filter = "Project (*.xml)|*.xml", .title = "Please Select Target XML File", .newName = true};
const FileDialog kDatabaseDialog{.filter = "Database (*.mdb)|*.mdb",
                                 .title = "Please Select Microsoft Project 2000 Database",
                                 .newName = true};

}  // namespace

void frmIDEF3ToProject::Load() {
  TranslationForm::Load();
  for (TextBox* box : {&txtDatabase, &txtDatabase_mpx, &txtMpx, &txtDatabase_xml, &txtXml}) {
    *box = TextBox{};
  }
  SSTabGenerateOpt = kDatabaseTab;
  CkLaunchMsprojApp = {};
  Stored.reset();
}

void frmIDEF3ToProject::cmdBrowseText() { BrowseFor(txtCelvarFilename, kTextDialog, "txt"); }

void frmIDEF3ToProject::cmdBrowseMPX() { BrowseFor(txtMpx, kMpxDialog, "mpx"); }

void frmIDEF3ToProject::cmdBrowseXML() { BrowseFor(txtXml, kXmlDialog, "xml"); }

void frmIDEF3ToProject::BrowseDatabase(TextBox& box) {
  const SavedMousePointer pointer(desktop_, kPointerArrowHourglass);
  const TextBox boxBefore = box;
  const bool overwriteBefore = state_.gOverwriteDb;
  const std::string backupBefore = BackupName;
  PickFailure.reset();
  try {
    const auto name = BrowseForFile(desktop_, kDatabaseDialog, box.text, "mdb");
    if (!name) return;
    pick_.Begin(*name);
    box.enabled = true;
    box.text = *name;
    if (!SettleDatabase(box.text)) {
      box = boxBefore;
      state_.gOverwriteDb = overwriteBefore;
      BackupName = backupBefore;
    }
    state_.workspace.CommitAll();
  } catch (const RunTimeError& error) {
    // No box tells that a file can't be replaced or opened.
    PickFailure = error;
    if (!IsVisible()) Show();
  }
  Changed();
  TellPick(OpenName());
}

bool frmIDEF3ToProject::SettleDatabase(const std::string& path) {
  BackupName.clear();
  if (FileIsThere(path)) {
    Hide();
    frmDbFileAppend append(state_.gOverwriteDb, path);
    desktop_.ShowModal(append);
    Show();
  } else {
    state_.gOverwriteDb = true;
  }
  return state_.gOverwriteDb ? CopyTemplate(path) : AppendTo(path);
}

bool frmIDEF3ToProject::CopyTemplate(const std::string& path) {
  const std::string templatePath = desktop_.TemplatePath();
  if (!CheckTemplateDb(state_.workspace, templatePath)) {
    ShowTemplateMissing(desktop_, templatePath);
    return true;
  }
  const bool replaced = RunUnlessCancelled(state_.progress, [&] {
    const std::string copy = ReplaceDatabase(state_.workspace, templatePath, path, CopyOfReplaced);
    if (CopyOfReplaced == Copy::kBackup) BackupName = copy;
    if (OnDatabaseReplaced) OnDatabaseReplaced(copy);
  });
  if (!replaced) return false;
  pick_.Replaced(BackupName);
  OpenWhole([&] {
    OpenInterimDb(state_.workspace, state_.gMspConn, state_.gOverwriteDb, path);
    state_.gMspProjId = 1;
    pickedVersion_ = state_.gMspConn->Version();
  });
  return true;
}

void frmIDEF3ToProject::OpenWhole(const std::function<void()>& open) try {
  open();
} catch (const RunTimeError&) {
  state_.gMspConn.reset();
  throw;
}

bool frmIDEF3ToProject::AppendTo(const std::string& path) {
  auto before = std::move(state_.gMspConn);
  bool opened = false;
  OpenWhole([&] {
    opened = RunUnlessCancelled(state_.progress, [&] {
      OpenInterimDb(state_.workspace, state_.gMspConn, state_.gOverwriteDb, path);
    });
    if (opened) TakeNextNumber();
  });
  if (!opened) state_.gMspConn = std::move(before);
  return opened;
}

void frmIDEF3ToProject::TakeNextNumber() {
  pickedVersion_ = state_.gMspConn->Version();
  Recordset projects;
  projects.OpenStatic("SELECT PROJ_ID, PROJ_NAME FROM [MSP_PROJECTS]", state_.gMspConn.get());
  if (projects.RecordCount() > 0) {
    projects.MoveLast();
    state_.gMspProjId = AddInt16(ToInt16(projects.Field("PROJ_ID")), 1);
  }
}

bool frmIDEF3ToProject::ValidateFileTab(const TextBox& file, const char* noFile,
                                        const TextBox& database) {
  const char* missing = file.text.empty()       ? noFile
                        : database.text.empty() ? "Please Give an interim Database Name."
                                                : nullptr;
  return missing == nullptr || Refuse(missing);
}

bool frmIDEF3ToProject::TakeDatabase() try {
  if (!state_.gMspConn || !state_.gMspConn->IsOpen()) return true;  // the reader tells
  state_.gMspConn->BeginWrite();
  if (state_.gMspConn->Version() != pickedVersion_) TakeNextNumber();
  if (OnDatabaseTaken) OnDatabaseTaken();
  return true;
} catch (const RunTimeError& error) {
  if (error.Number() == kNotUpdatable) return true;
  ShowDescription(desktop_, error);
  refused_ = error.Number() == kPermissionDenied;
  return false;
}

bool frmIDEF3ToProject::Validate() {
  if (!Stored && txtCelvarFilename.text.empty()) {
    return Refuse("Please Select Source Celvar Text Filename");
  }
  if (DatabaseTabActive()) {
    return !txtDatabase.text.empty() || Refuse("Please Select MS Project 2000 Database name");
  }
  return XmlTabActive()
             ? ValidateFileTab(txtXml, "Please Select Xml Output Filename.", txtDatabase_xml)
             : ValidateFileTab(txtMpx, "Please Select Mpx Output Filename.", txtDatabase_mpx);
}

TextBox& frmIDEF3ToProject::DatabaseOfTab() {
  if (DatabaseTabActive()) return txtDatabase;
  return XmlTabActive() ? txtDatabase_xml : txtDatabase_mpx;
}

bool frmIDEF3ToProject::PickModel() {
  cmdBrowseText();
  return !txtCelvarFilename.text.empty();
}

bool frmIDEF3ToProject::PickMpx() {
  SSTabGenerateOpt = kMpxTab;
  cmdBrowseMPX();
  return !txtMpx.text.empty();
}

bool frmIDEF3ToProject::PickXml() {
  SSTabGenerateOpt = kXmlTab;
  cmdBrowseXML();
  return !txtXml.text.empty();
}

bool frmIDEF3ToProject::PickDatabase() {
  TextBox& database = DatabaseOfTab();
  BrowseDatabase(database);
  return !database.text.empty();
}

void frmIDEF3ToProject::cmdOK() {
  const SavedMousePointer pointer(desktop_, kPointerHourglass);
  try {
    if (!Validate()) return;
    state_.gDatabaseName = FromUtf8(DatabaseOfTab().text);
    refused_ = false;
    Generate();
    if (refused_) return;  // with all entries, for another try
    if (GenerateResult.value_or(false) && CkLaunchMsprojApp.checked) LaunchProject();
    Unload();
  } catch (const RunTimeError& error) {
    Unload();
    RestoreMousePointer(desktop_);
    ShowDescription(desktop_, error);
    ReportError(desktop_, error);
  }
}

void frmIDEF3ToProject::Generate() {
  // A name in the box may be another one, of a database that couldn't be opened.
  const std::string database = state_.gMspConn ? state_.gMspConn->DatabaseName() : "";
  CancellableRun run;
  run.take = [this] { return TakeDatabase(); };
  if (KeepBackup) {
    run.targets.database = database;
    for (const std::string& output : {txtMpx.text, txtXml.text}) {
      if (!output.empty()) run.targets.outputs.push_back(output);
    }
  }
  run.driver = [&] {
    return Stored ? GenerateFromStoredModel(state_, *Stored, txtMpx.text, txtXml.text)
                  : GenerateFromText(state_, txtCelvarFilename.text, txtMpx.text, txtXml.text);
  };
  run.drop = [this] { DropRun(); };
  GenerateResult = RunUntilCancelled(state_, run).done;
  Result = ResultOf(database);
}

void frmIDEF3ToProject::DropRun() {
  if (state_.gMspConn) state_.gMspConn->Close();
  state_.gMspConn.reset();
  state_.files.Close(state_.mpxFileNo);
  state_.mpxFileNo = 0;
}

RunResult frmIDEF3ToProject::ResultOf(const std::string& database) try {
  if (!GenerateResult) {
    return {"cancelled, nothing written; " + database + " is as it was before the run", ""};
  }
  if (!*GenerateResult) {
    return {"the plan was not finished: " + (Stored ? Stored->database : txtCelvarFilename.text),
            ""};
  }
  Connection connection(state_.workspace, database, OpenMode::kReadOnly);
  const std::string project = std::to_string(state_.gMspProjId);
  if (CountRows(connection, "select PROJ_ID from MSP_PROJECTS where PROJ_ID = " + project) == 0) {
    return {"nothing written: no project came into " + database, ""};
  }
  std::vector<std::string> files{database};
  for (const std::string& file : {txtMpx.text, txtXml.text}) {
    if (!file.empty()) files.push_back(file);
  }
  return {CountsOfPlan(connection, state_.gMspProjId) + WrittenNote(files),
          DatabaseTabActive() ? database
          : XmlTabActive()    ? txtXml.text
                              : txtMpx.text};
} catch (const RunTimeError& error) {
  return {"what was written can't be read: " + ToUtf8(error.Description()), ""};
}

void frmIDEF3ToProject::LaunchProject() {
  const std::string& database = txtDatabase.text;
  const std::string& target = DatabaseTabActive() ? database
                              : XmlTabActive()    ? txtXml.text
                                                  : txtMpx.text;
  // For an MPX name the bound is the database's length: it goes unquoted when that is empty.
  const bool blank = HasInnerBlank(target, XmlTabActive() ? target.size() : database.size());
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
  txtDatabase.enabled = txtMpx.enabled = txtXml.enabled = false;
  CkLaunchMsprojApp = {.checked = false, .enabled = false};
}

void frmIDEF3ToProject::CkLaunchMsprojApp_Click() {
  if (!CkLaunchMsprojApp.checked) return;
  try {
    paths_.gProjectPath = GetCommandPath(desktop_, kProject2000Key);
    const bool mpxTab = !DatabaseTabActive() && !XmlTabActive();
    if (paths_.gProjectPath.empty() && mpxTab) {
      paths_.gProjectPath = GetCommandPath(desktop_, kProject98Key);
    }
    if (paths_.gProjectPath.empty()) {
      desktop_.ShowMessage(
          {XmlTabActive() ? "Microsoft Project is not installed."
           : DatabaseTabActive()
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
