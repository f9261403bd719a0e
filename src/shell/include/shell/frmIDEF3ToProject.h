// The dialog of the direction from model to plan, and the driver behind its OK button.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "shell/translation_form.h"
#include "translator/modIDEF3ToProject.h"

namespace merivane::shell {

// Caption "Celvar to MS Project". Which tab is active is told by the tab strip's caption alone.
class frmIDEF3ToProject : public TranslationForm {
 public:
  static constexpr int kHelpContextId = 2000;
  static constexpr int kHelpButtonContextId = 2001;
  static constexpr const char* kDatabaseTab = "Generate Microsoft Project 2000 MDB";
  static constexpr const char* kMpxTab = "Generate MPX";
  static constexpr const char* kXmlTab = "Generate XML";

  frmIDEF3ToProject(ModelToProject& state, ApplicationPaths& paths)
      : TranslationForm(state.workspace, state.desktop, paths,
                        {state.gMspConn, {&txtDatabase, &txtDatabase_mpx, &txtDatabase_xml}}),
        state_(state) {}

  TextBox txtDatabase;
  TextBox txtDatabase_mpx;
  TextBox txtMpx;
  TextBox txtDatabase_xml;
  TextBox txtXml;
  // Translated in the place of txtCelvarFilename, which stays empty.
  std::optional<translator::StoredModel> Stored;
  std::string SSTabGenerateOpt = kDatabaseTab;  // caption of the active tab
  CheckBox CkLaunchMsprojApp;

  void cmdBrowseText();
  void cmdBrowseMPX();
  void cmdBrowseXML();
  // Copies the template over the picked name or opens it for a further project. A box tells that
  // there is no template; whatever else fails, PickFailure keeps alone, and gMspConn holds no
  // database that is half open.
  void BrowsedbBt() { BrowseDatabase(txtDatabase); }
  void BrowsedbBt_mpx() { BrowseDatabase(txtDatabase_mpx); }
  void BrowsedbBt_xml() { BrowseDatabase(txtDatabase_xml); }
  void cmdBrowseDatabase() {}
  void cmdOK();
  void cmdCancel() { Unload(); }
  void CkLaunchMsprojApp_Click();  // after the box was toggled

  // Each brings its tab to the front, presses its browse button, and is False where the box stays
  // empty. The database is that of the tab in front.
  bool PickModel();
  bool PickMpx();
  bool PickXml();
  bool PickDatabase();

  // Opens "MSProject2kDB.mdb" beside the program and proves it as CheckTemplateDb does.
  bool OpenProj2kTemplate();

 protected:
  void Load() override;

 private:
  void BrowseDatabase(TextBox& box);
  // False after Cancel, which leaves the connection as it was.
  bool SettleDatabase(const std::string& path);
  bool CopyTemplate(const std::string& path);
  bool AppendTo(const std::string& path);
  // Drops the connection where it can't be opened, and read, to the end.
  void OpenWhole(const std::function<void()>& open);
  void TakeNextNumber();
  // Keeps other processes from writing until the run is over, and takes the project's number anew
  // where one has written since the database was picked. False when it is told that it can't.
  bool TakeDatabase();
  bool Validate();
  void Generate();
  void DropRun();
  RunResult ResultOf(const std::string& database);
  void LaunchProject();
  bool ValidateFileTab(const TextBox& file, const char* noFile, const TextBox& database);
  bool DatabaseTabActive() const { return SSTabGenerateOpt == kDatabaseTab; }
  bool XmlTabActive() const { return SSTabGenerateOpt == kXmlTab; }
  TextBox& DatabaseOfTab();

  ModelToProject& state_;
  std::int64_t pickedVersion_ = 0;
};

// Reads the text, translates, writes the planning XML, closes gMspConn. True when all of it ran; a
// run-time error that comes up is shown, and the connection then stays open. A file without a name
// isn't written.
bool GenerateFromText(ModelToProject& state, const std::string& textFileName,
                      const std::string& mpxFileName, const std::string& xmlFileName = {});

// The same for the model of another database.
bool GenerateFromStoredModel(ModelToProject& state, const translator::StoredModel& model,
                             const std::string& mpxFileName, const std::string& xmlFileName);

// Closes gMspConn and drops it.
void CloseMspConnection(ModelToProject& state);

}  // namespace merivane::shell
