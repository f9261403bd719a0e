// The dialog of the direction from plan to model.
#pragma once

#include <functional>
#include <optional>

#include "mspdi/plan_reader.h"
#include "reconcile/complete_merge.h"
#include "shell/translation_form.h"

namespace merivane::shell {

// Caption "MS Project to Celvar".
class frmProjectToIDEF3 : public TranslationForm {
 public:
  static constexpr int kHelpContextId = 3000;
  static constexpr int kHelpButtonContextId = 3001;
  static constexpr const char* kDatabaseTab = "From Microsoft Project 2000 MDB";
  static constexpr const char* kMpxTab = "From MPX";
  static constexpr const char* kXmlTab = "From XML";

  frmProjectToIDEF3(ProjectToModel& state, ApplicationPaths& paths)
      : TranslationForm(state.workspace, state.desktop, paths,
                        {state.gInterimConn, {&txtInterimDB, &txtInterimDB_xml}}),
        state_(state) {}

  TextBox txtDatabase{.enabled = false};
  TextBox txtMPX{.enabled = false};
  TextBox txtInterimDB;
  TextBox txtXML{.enabled = false};
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

  const std::vector<ComboBox::Entry>& Projects() const { return comboProject.entries; }
  // Of the database. False for a number that isn't listed.
  bool PickProject(std::int32_t id);

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

 protected:
  void Load() override;

 private:
  bool ValidateDatabaseTab();
  bool ValidateFileTab(const TextBox& file, const char* noFile, const TextBox& interim);
  bool TranslateFile();
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
  void GenerateFromDatabase();
  void GenerateFromFile();
  void DropRun();
  RunResult ResultOf(const std::string& counts, const std::string& database) const;
  void LaunchCelvar();

  std::string outputName_;  // the file that gOutFile is open on; the box may say another one
  ProjectToModel& state_;
};

}  // namespace merivane::shell
