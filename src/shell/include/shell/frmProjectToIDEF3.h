// The dialog of the direction from plan to model.
#pragma once

#include <functional>
#include <optional>

#include "mspdi/plan_reader.h"
#include "program/program.h"
#include "reconcile/complete_merge.h"
#include "runtime/run_time_error.h"
#include "shell/database_pick.h"
#include "shell/form.h"
#include "shell/kept_files.h"
#include "shell/modOptions.h"
#include "shell/run_result.h"

namespace merivane::shell {

using namespace program;

// Caption "MS Project to Celvar".
class frmProjectToIDEF3 : public Form {
 public:
  static constexpr int kHelpContextId = 3000;
  static constexpr int kHelpButtonContextId = 3001;
  static constexpr const char* kDatabaseTab = "From Microsoft Project 2000 MDB";
  static constexpr const char* kMpxTab = "From MPX";
  static constexpr const char* kXmlTab = "From XML";

  frmProjectToIDEF3(ProjectToModel& state, ApplicationPaths& paths)
      : state_(state), desktop_(state.desktop), paths_(paths) {}

  TextBox txtCelvarFilename;
  TextBox txtDatabase{"", false};
  TextBox txtMPX{"", false};
  TextBox txtInterimDB;
  TextBox txtXML{"", false};
  TextBox txtInterimDB_xml;
  ComboBox comboProject{.enabled = false};
  std::string SSTabInput = kDatabaseTab;  // caption of the active tab
  CheckBox optLaunchCelvar;

  void cmdBrowseText();
  void cmdBrowseDatabase();
  void cmdBrowseMPX();
  void cmdInterimDB() { BrowseInterimDb(txtInterimDB); }
  void cmdBrowseXML();
  void cmdInterimDB_xml() { BrowseInterimDb(txtInterimDB_xml); }
  void comboProject_Click();  // after an entry was selected
  void cmdOK();
  void cmdCancel() { Unload(); }
  void optLaunchCelvar_Click();  // after the box was toggled

  // Each brings its tab to the front, presses its browse button, and is False where what was named
  // can't be used. The interim database is that of the tab in front.
  bool PickText();
  bool PickDatabase();
  bool PickMpx();
  bool PickXml();
  bool PickInterimDb();
  // Of the database. False for a number that isn't listed.
  const std::vector<ComboBox::Entry>& Projects() const { return comboProject.entries; }
  bool PickProject(std::int32_t id);

  std::optional<RunTimeError> PickFailure;  // of the database picked last
  // Told after each pick of a database.
  std::function<void(const PickNote&)> OnPick;
  // Why no interim database is open, UTF-8; empty where one is, or where none was picked.
  std::string WhyNotOpen() const;
  // Puts the old database back; the boxes that name it become empty. Errors of PutBackEmptied.
  void Undo(const EmptiedDatabase& emptied);

  // A merge keeps everything that the plan holds: as it was answered last, while the program runs.
  bool Complete = false;
  std::optional<mspdi::FilePlan> XmlAhead;  // what txtXML's file holds, where it was just read
  reconcile::MergeResult
      CompleteMergeResult;  // of the last complete merge: what the model can't hold

  // The project that the plan is to be folded into; nothing where no merge was chosen.
  std::optional<std::int32_t> MergedProject() const {
    if (!state_.gRoundTripMerge) return std::nullopt;
    return state_.gInterimProjId;
  }

  // Takes a free number into gOutFile and opens the name for output; False on any error.
  bool OpenOutputFile();

  // An interim database that is overwritten, or that a merge changes, is kept beside it (".bak",
  // ".bak2", ...), unless this is switched off. BackupName is the last copy, empty without one.
  bool KeepBackup = true;
  std::string BackupName;
  // What is kept of a database that is overwritten. Told behind that: the name of its copy, empty
  // where none stood there.
  Copy CopyOfReplaced = Copy::kBackup;
  std::function<void(const std::string& copy)> OnDatabaseReplaced;
  // Called before a merge changes anything, when nobody else can write to the database any more.
  std::function<void()> OnDatabaseTaken;

  // Result of the last driver run of cmdOK; nothing where a check stopped it or none ran.
  std::optional<bool> GenerateResult;
  RunResult Result;  // of that run

 protected:
  void Load() override;

 private:
  bool ValidateDatabaseTab();
  bool ValidateFileTab(const TextBox& file, const char* noFile, const TextBox& interim);
  bool TranslateFile();
  void BrowseFor(TextBox& box, const FileDialog& dialog, const char* extension);
  void BrowseInterimDb(TextBox& box);
  // False after Cancel, which leaves what was picked before.
  bool OpenProjectDb(const std::string& path);
  void ListProjects(const std::string& path);
  // False after Cancel, which leaves no database picked.
  bool MakeInterimDb(TextBox& box);
  bool OpenInterim(TextBox& box);
  bool RunInterimPick(TextBox& box, const std::function<void()>& work);
  void AskForMerge(TextBox& box);
  void ChooseForExistingInterimDb(TextBox& box);
  // For a merge: keeps other processes from writing until it is over, and tells whoever keeps a
  // copy. False when it is told that it can't.
  bool TakeInterimDb();
  std::string OpenInterimName() const;  // empty: none
  void TellPick(const std::string& open);
  void GenerateFromDatabase();
  void GenerateFromFile();
  void DropRun();
  RunResult ResultOf(const std::string& counts, const std::string& database) const;
  void LaunchCelvar();
  bool Refuse(const char* text);

  std::string outputName_;  // the file that gOutFile is open on; the box may say another one
  ProjectToModel& state_;
  DatabasePick pick_;
  bool refused_ = false;  // the database, when OK was pressed
  Desktop& desktop_;
  ApplicationPaths& paths_;
};

}  // namespace merivane::shell
