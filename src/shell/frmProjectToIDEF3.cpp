#include "shell/frmProjectToIDEF3.h"

#include <utility>

#include "neutraltext/modProjectToIDEF3.h"
#include "program/error_boxes.h"
#include "roundtrip/modMpxtoIDEF3.h"
#include "runtime/code_page.h"
#include "runtime/text.h"
#include "shell/cancellable_run.h"
#include "shell/database_pick.h"
#include "shell/modal_forms.h"
#include "shell/named_files.h"
#include "store/interim_db.h"

namespace merivane::shell {

using namespace neutraltext;
using namespace roundtrip;

namespace {

const FileDialog kTextDialog{
    .filter = "Text File (*.txt)|*.txt", .title = "Target Celvar Text File", .newName = true};
const FileDialog kDatabaseDialog{"Database (*.mdb)|*.mdb",
                                 "Please Select Existing Project Database in Access 2000 Format"};
const FileDialog kMpxDialog{"Text File (*.mpx)|*.mpx", "Source MPX Text File"};
const FileDialog kXmlDialog{"XML File (*.xml)|*.xml", "Source XML File"};
const FileDialog kInterimDialog{.filter = "Database (*.mdb)|*.mdb",
                                .title = "Please Select Microsoft Project 2000 MDB",
                                .newName = true};

}  // namespace

void frmProjectToIDEF3::Load() {
  TranslationForm::Load();
  txtInterimDB = txtInterimDB_xml = TextBox{};
  txtDatabase = txtMPX = txtXML = TextBox{.enabled = false};
  comboProject = {.enabled = false};
  SSTabInput = kDatabaseTab;
  optLaunchCelvar = {};
  outputName_.clear();
  state_.gProjectConn.reset();
  state_.gInterimConn.reset();
}

void frmProjectToIDEF3::cmdBrowseText() {
  const SavedMousePointer pointer(desktop_, kPointerArrowHourglass);
  try {
    if (!txtCelvarFilename.text.empty()) state_.files.Close(state_.gOutFile);
    if (auto name = BrowseForFile(desktop_, kTextDialog, txtCelvarFilename.text, "txt")) {
      txtCelvarFilename = {.text = *name};
      if (!OpenOutputFile()) {
        desktop_.ShowMessage({"Cannot Open Output File: " + FromUtf8(*name)});
      }
    }
  } catch (const RunTimeError& error) {
    ReportError(desktop_, error);
  }
  Changed();
}

bool frmProjectToIDEF3::OpenOutputFile() try {
  state_.gOutFile = state_.files.FreeFile();
  outputName_ = Trim(txtCelvarFilename.text);
  state_.files.OpenForOutput(state_.gOutFile, outputName_);
  return true;
} catch (const RunTimeError&) {
  return false;
}

void frmProjectToIDEF3::cmdBrowseDatabase() {
  const SavedMousePointer pointer(desktop_, kPointerArrowHourglass);
  try {
    if (auto name = BrowseForFile(desktop_, kDatabaseDialog, txtDatabase.text, "mdb")) {
      pick_.Begin(*name);
      PickFailure.reset();
      if (OpenProjectDb(*name)) ListProjects(*name);
    }
  } catch (const RunTimeError& error) {
    PickFailure = error;
    ReportError(desktop_, error);
  }
  Changed();
  TellPick("");
}

void frmProjectToIDEF3::ListProjects(const std::string& path) {
  if (LoadProjectList(desktop_, state_.gProjectConn.get(), comboProject, PickFailure)) {
    txtDatabase = {.text = path};
    comboProject.enabled = true;
  } else {
    state_.gProjectConn.reset();
  }
}

// Cancel leaves what was picked before.
bool frmProjectToIDEF3::OpenProjectDb(const std::string& path) {
  auto before = std::move(state_.gProjectConn);
  state_.gProjectConn = std::make_unique<Connection>(state_.workspace);
  const bool opened = RunUnlessCancelled(state_.progress, [&] {
    state_.gProjectConn->Open(ConnectionText(path), OpenMode::kReadOnly);
  });
  if (!opened) state_.gProjectConn = std::move(before);
  return opened;
}

void frmProjectToIDEF3::cmdBrowseMPX() { BrowseFor(txtMPX, kMpxDialog, "mpx"); }

void frmProjectToIDEF3::cmdBrowseXML() { BrowseFor(txtXML, kXmlDialog, "xml"); }

void frmProjectToIDEF3::BrowseInterimDb(TextBox& box) {
  const SavedMousePointer pointer(desktop_, kPointerArrowHourglass);
  try {
    if (auto name = BrowseForFile(desktop_, kInterimDialog, box.text, "mdb")) {
      box.text = *name;
      pick_.Begin(*name);
      BackupName.clear();
      PickFailure.reset();
      if (FileIsThere(*name)) {
        ChooseForExistingInterimDb(box);
      } else {
        state_.gRoundTripMerge = false;
        if (MakeInterimDb(box)) state_.gInterimProjId = 1;
      }
    }
  } catch (const RunTimeError& error) {
    PickFailure = error;
    ReportError(desktop_, error);
    if (!IsVisible()) Show();
  }
  Changed();
  TellPick(OpenName());
}

bool frmProjectToIDEF3::MakeInterimDb(TextBox& box) {
  const std::string templatePath = desktop_.TemplatePath();
  if (!CheckTemplateDb(state_.workspace, templatePath)) {
    ShowTemplateMissing(desktop_, templatePath);
    ProveTemplateDb(state_.workspace, templatePath);  // nothing is replaced by what fails here
  }
  const auto replace = [&] {
    const std::string copy =
        ReplaceDatabase(state_.workspace, templatePath, box.text, CopyOfReplaced);
    if (CopyOfReplaced == Copy::kBackup) BackupName = copy;
    pick_.Replaced(BackupName);
    if (OnDatabaseReplaced) OnDatabaseReplaced(copy);
  };
  return RunInterimPick(box, replace) && OpenInterim(box);
}

bool frmProjectToIDEF3::OpenInterim(TextBox& box) {
  state_.gInterimConn = std::make_unique<Connection>(state_.workspace);
  return RunInterimPick(box, [&] { state_.gInterimConn->Open(ConnectionText(box.text)); });
}

bool frmProjectToIDEF3::RunInterimPick(TextBox& box, const std::function<void()>& work) {
  if (RunUnlessCancelled(state_.progress, work)) return true;
  state_.gInterimConn.reset();
  box.text.clear();
  return false;
}

void frmProjectToIDEF3::ChooseForExistingInterimDb(TextBox& box) {
  Hide();
  if (OpenInterim(box)) AskForMerge(box);
  Show();
}

void frmProjectToIDEF3::AskForMerge(TextBox& box) {
  desktop_.SetMousePointer(kPointerArrow);
  frmDBMerge merge(state_, Complete);
  desktop_.ShowModal(merge);
  PickFailure = merge.Failure;
  if (!state_.gRoundTripMerge) {
    state_.gInterimConn->Close();
    state_.gInterimConn.reset();
    MakeInterimDb(box);
  } else if (state_.gInterimProjId == 0) {
    box.text.clear();
  }
}

void frmProjectToIDEF3::comboProject_Click() {
  if (!comboProject.listIndex) return;
  state_.gInterimProjId = comboProject.entries[*comboProject.listIndex].itemData;
}

bool frmProjectToIDEF3::PickText() {
  cmdBrowseText();
  return state_.files.IsOpen(state_.gOutFile);
}

bool frmProjectToIDEF3::PickDatabase() {
  SSTabInput = kDatabaseTab;
  cmdBrowseDatabase();
  return txtDatabase.enabled && state_.gProjectConn && state_.gProjectConn->IsOpen();
}

bool frmProjectToIDEF3::PickMpx() {
  SSTabInput = kMpxTab;
  cmdBrowseMPX();
  return !txtMPX.text.empty();
}

bool frmProjectToIDEF3::PickXml() {
  SSTabInput = kXmlTab;
  cmdBrowseXML();
  return !txtXML.text.empty();
}

bool frmProjectToIDEF3::PickInterimDb() {
  TextBox& database = SSTabInput == kXmlTab ? txtInterimDB_xml : txtInterimDB;
  BrowseInterimDb(database);
  return !database.text.empty() && state_.gInterimConn && state_.gInterimConn->IsOpen();
}

bool frmProjectToIDEF3::PickProject(std::int32_t id) {
  if (!comboProject.Select(id)) return false;
  comboProject_Click();
  return true;
}

bool frmProjectToIDEF3::ValidateDatabaseTab() {
  if (SSTabInput != kDatabaseTab) return Refuse("Please Select Source Type");
  if (!state_.gProjectConn || !txtDatabase.enabled) {
    return Refuse("Please Select MS Project 2000 Database");
  }
  if (!comboProject.listIndex || !comboProject.enabled) return Refuse("Please Select Project Name");
  return !Trim(txtCelvarFilename.text).empty() ||
         Refuse("Please Select Target Celvar Text Filename");
}

bool frmProjectToIDEF3::ValidateFileTab(const TextBox& file, const char* noFile,
                                        const TextBox& interim) {
  if (Trim(file.text).empty()) return Refuse(noFile);
  if (Trim(interim.text).empty()) {
    return Refuse("Please Give an Interim Access Database Filename");
  }
  return !Trim(txtCelvarFilename.text).empty() ||
         Refuse("Please Select Target Celvar Text Filename.");
}

bool frmProjectToIDEF3::TranslateFile() {
  CompleteMergeResult = {};
  if (state_.gRoundTripMerge && Complete) {
    CompleteMergeResult = reconcile::MergeCompletely(
        state_, SSTabInput == kXmlTab ? txtXML.text : txtMPX.text, std::exchange(XmlAhead, {}));
    return CompleteMergeResult.merged;
  }
  const auto mergeFlag = static_cast<std::int16_t>(state_.gRoundTripMerge ? -1 : 0);
  if (SSTabInput == kXmlTab) {
    return TranslateXml(state_, txtXML.text, mergeFlag, nullptr, std::exchange(XmlAhead, {}));
  }
  return TranslateMpx(state_, txtMPX.text, txtInterimDB.text, mergeFlag);
}

void frmProjectToIDEF3::cmdOK() {
  const SavedMousePointer pointer(desktop_, kPointerHourglass);
  try {
    if (SSTabInput == kMpxTab || SSTabInput == kXmlTab) {
      const bool valid =
          SSTabInput == kXmlTab
              ? ValidateFileTab(txtXML, "Please Select a XML file", txtInterimDB_xml)
              : ValidateFileTab(txtMPX, "Please Select a MPX txt file", txtInterimDB);
      if (!valid) return;
      GenerateFromFile();
      if (refused_) return;  // with all entries, for another try
    } else {
      if (!ValidateDatabaseTab()) return;
      GenerateFromDatabase();
    }
    if (optLaunchCelvar.checked && GenerateResult.value_or(false)) LaunchCelvar();
    txtXML.enabled = txtInterimDB_xml.enabled = txtMPX.enabled = txtInterimDB.enabled =
        txtDatabase.enabled = comboProject.enabled = txtCelvarFilename.enabled = false;
  } catch (const RunTimeError& error) {
    ShowDescription(desktop_, error);
  }
  Unload();
}

bool frmProjectToIDEF3::TakeInterimDb() try {
  if (OpenName().empty()) return true;
  state_.gInterimConn->BeginWrite();
  if (OnDatabaseTaken) OnDatabaseTaken();
  return true;
} catch (const RunTimeError& error) {
  if (error.Number() != kPermissionDenied) throw;
  ShowDescription(desktop_, error);
  refused_ = true;
  return false;
}

void frmProjectToIDEF3::GenerateFromDatabase() {
  const std::string counts = CountsOfPlan(*state_.gProjectConn, state_.gInterimProjId);
  CancellableRun run;
  run.driver = [this] { return GenerateTextFromProject(state_); };
  run.drop = [this] { DropRun(); };
  GenerateResult = RunUntilCancelled(state_, run).done;
  Result = ResultOf(counts, "");
}

void frmProjectToIDEF3::GenerateFromFile() {
  const std::string database = state_.gInterimConn ? state_.gInterimConn->DatabaseName() : "";
  refused_ = false;
  CancellableRun run;
  run.take = [this] { return TakeInterimDb(); };
  if (KeepBackup) {
    run.targets.database = database;
    if (state_.gRoundTripMerge) run.targets.copy = Copy::kBackup;
  }
  run.driver = [this] { return TranslateFile(); };
  run.undoesFailure = KeepBackup && state_.gRoundTripMerge && Complete;
  run.drop = [this] { DropRun(); };
  const RunEnd end = RunUntilCancelled(state_, run);
  if (refused_) return;
  GenerateResult = end.done;
  if (!end.backupName.empty()) BackupName = end.backupName;
  try {
    std::string counts;
    if (GenerateResult.value_or(false)) {
      Connection connection(state_.workspace, database, OpenMode::kReadOnly);
      counts = CountsOfWork(connection, state_.gInterimProjId);
    }
    Result = ResultOf(counts, database);
  } catch (const RunTimeError& error) {
    Result = {"what was written can't be read: " + ToUtf8(error.Description()), ""};
  }
}

// The text was emptied when it was picked; half of a model must not be taken for a whole one.
void frmProjectToIDEF3::DropRun() {
  for (auto* connection : {&state_.gProjectConn, &state_.gInterimConn}) {
    if (*connection && (*connection)->IsOpen()) (*connection)->Close();
    connection->reset();
  }
  if (outputName_.empty() || !state_.files.IsOpen(state_.gOutFile)) return;
  state_.files.Close(state_.gOutFile);
  state_.files.OpenForOutput(state_.gOutFile, outputName_);
  state_.files.Close(state_.gOutFile);
}

RunResult frmProjectToIDEF3::ResultOf(const std::string& counts,
                                      const std::string& database) const {
  if (!GenerateResult) {
    const std::string kept = "; " + database + " is as it was before the run";
    return {"cancelled, nothing written" + (database.empty() ? "" : kept), ""};
  }
  if (!*GenerateResult) {
    const bool merge = state_.gRoundTripMerge && SSTabInput != kDatabaseTab;
    return {(merge ? "the merge was not finished: " : "the model was not finished: ") + outputName_,
            ""};
  }
  std::vector<std::string> files{outputName_};
  if (!database.empty()) files.push_back(database);
  return {counts + WrittenNote(files), outputName_};
}

void frmProjectToIDEF3::LaunchCelvar() {
  const std::string& target = txtCelvarFilename.text;
  const bool blank = HasInnerBlank(target, target.size());
  if (blank) {
    const std::string name = FromUtf8(target);
    desktop_.ShowMessage(
        {SSTabInput != kDatabaseTab
             ? "There are spaces in the target directory or file name. \r\nPlease import file " +
                   name + "\r\nfrom Celvar."
             : "There are spaces in the target directory or file name.\r\nThe target file \r\n" +
                   name + "\r\nhas been generated. \r\nPlease import it from Celvar."});
  }
  ExecuteApp(desktop_, blank ? paths_.gCelvarPath : paths_.gCelvarPath + " " + target);
}

void frmProjectToIDEF3::optLaunchCelvar_Click() {
  try {
    paths_.gCelvarPath = GetCommandPath(desktop_, kCelvarKey);
    if (paths_.gCelvarPath.empty()) desktop_.ShowMessage({"Vorn Celvar not installed."});
  } catch (const RunTimeError&) {
    // The look-up ends silently.
  }
  Changed();
}

}  // namespace merivane::shell
