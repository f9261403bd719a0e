#include "database_fixture.h"
#include "shell/frmIDEF3ToProject.h"
#include "shell/frmMain.h"
#include "shell/modal_forms.h"

namespace merivane::test {

using namespace shell;

namespace {

class ProjectToModelForm : public DatabaseFixture {
 protected:
  ProjectToModelForm() { form.Show(); }

  void AddProject(const char* idAndName = "4, 'Yard'") {
    Sql(std::string("insert into MSP_PROJECTS (PROJ_ID, PROJ_NAME) values (") + idAndName + ")");
  }
  void AddOutlinedTask() {
    Sql("insert into MSP_TASKS (PROJ_ID, TASK_UID, TASK_NAME, TASK_OUTLINE_LEVEL, TASK_OUTLINE_NUM)"
        " values (4, 1, 'Dig', 1, '1')");
  }
  void BrowseDatabase() {
    desktop.fileNames.push_back(databasePath);
    form.cmdBrowseDatabase();
  }
  void BrowseInterim(const std::string& path) {
    desktop.fileNames.push_back(path);
    form.cmdInterimDB();
  }
  // Chooses the merge, and `rest`.
  void Answer(const std::function<void(frmDBMerge&)>& rest) {
    desktop.onModalForm = [rest](ModalForm& shown) {
      auto& merge = dynamic_cast<frmDBMerge&>(shown);
      merge.OptMerge();
      rest(merge);
    };
  }
  std::string Output(const std::string& name) {
    desktop.fileNames.push_back(folder.Path(name));
    form.cmdBrowseText();
    return folder.Path(name);
  }

  ProjectToModel& state = program->projectToModel;
  frmMain main{*program};
  frmProjectToIDEF3& form = main.projectToModel;
};

TEST_F(ProjectToModelForm, AListOfProjectsNeedsNamesAndAnOutlinedFirstTask) {
  constexpr const char* kNoProject = "Database has no Project or no task_outline_num value.";
  BrowseDatabase();
  Answer([](frmDBMerge& merge) { merge.CmdCancel(); });
  BrowseInterim(databasePath);
  AddProject();
  BrowseDatabase();
  EXPECT_EQ(
      desktop.MessageTexts(),
      (std::vector<std::string>{
          kNoProject, kNoProject,
          "The selected database cannot be merged.  Choose overwrite and retry.", kNoProject}));
  EXPECT_EQ(form.txtDatabase.text + form.txtInterimDB.text, "");
  EXPECT_FALSE(state.gProjectConn);

  AddOutlinedTask();
  BrowseDatabase();
  EXPECT_EQ(form.txtDatabase.text, databasePath);
  EXPECT_TRUE(form.comboProject.enabled);
  EXPECT_TRUE(form.comboProject.Select(4));

  AddProject("5, null");
  AddProject("6, 'Never reached'");
  BrowseDatabase();
  EXPECT_EQ(desktop.MessageTexts().back(),
            "Project id or project name is empty.  Please check table MSP_PROJECTS.");
  EXPECT_EQ(form.comboProject.entries.size(), 1U);
  EXPECT_FALSE(state.gProjectConn);
}

TEST_F(ProjectToModelForm, ASecondTargetClosesTheFirstAndBothAreEmptied) {
  const std::string first = folder.Write("first.txt", "old");
  const std::string second = folder.Write("second.txt", "old");
  Output("first.txt");
  const std::int16_t number = state.gOutFile;
  Output("second.txt");
  EXPECT_EQ(state.gOutFile, number);
  EXPECT_EQ(ReadFile(first) + ReadFile(second), "");
  desktop.fileNames.push_back(folder.Path("no folder/third.txt"));
  form.cmdBrowseText();
  EXPECT_EQ(desktop.MessageTexts().back(),
            "Cannot Open Output File: " + folder.Path("no folder/third.txt"));
}

TEST_F(ProjectToModelForm, ANewInterimNameSkipsTheQuestionAndNeedsATemplate) {
  state.gRoundTripMerge = true;
  BrowseInterim(folder.Path("fresh.mdb"));
  EXPECT_FALSE(state.gRoundTripMerge);
  EXPECT_EQ(state.gInterimProjId, 1);
  EXPECT_TRUE(state.gInterimConn && state.gInterimConn->IsOpen());
  desktop.templatePath = folder.Path("none.mdb");
  BrowseInterim(folder.Path("another.mdb"));
  EXPECT_EQ(desktop.boxes.size(), 2U);
  EXPECT_EQ(desktop.boxes.back().icon, MessageIcon::kExclamation);
  EXPECT_EQ(desktop.beeps, 1);
}

TEST_F(ProjectToModelForm, AMergeLeavesABackupUnlessAnotherProgramWritesToTheDatabase) {
  AddProject();
  AddOutlinedTask();
  Answer([](frmDBMerge& merge) { merge.MergeWith(4); });
  program->workspace.patience = kBrief;
  BrowseInterim(databasePath);
  EXPECT_TRUE(state.gRoundTripMerge);
  EXPECT_EQ(state.gInterimProjId, 4);
  form.SSTabInput = "Somewhere else";
  form.cmdOK();
  EXPECT_EQ(desktop.MessageTexts().back(), "Please Select Source Type");
  form.SSTabInput = form.kMpxTab;
  form.txtMPX.text = folder.Path("none.mpx");
  Output("model.txt");
  const std::string before = ReadFile(databasePath);
  {
    RawDatabase other(databasePath);
    other.Run("begin immediate");
    form.cmdOK();
  }
  EXPECT_FALSE(form.GenerateResult.has_value());
  EXPECT_EQ(desktop.MessageTexts().back(),
            "Permission denied: the database '" + databasePath + "' is in use by another program.");
  EXPECT_EQ(form.BackupName, "");
  form.cmdOK();
  EXPECT_EQ(form.GenerateResult, false);  // there is no such plan
  EXPECT_EQ(form.BackupName, databasePath + ".bak");
  EXPECT_EQ(ReadFile(form.BackupName), before);
  form.Show();
  Answer([](frmDBMerge& merge) { merge.Overwrite(); });
  BrowseInterim(databasePath);
  EXPECT_EQ(form.BackupName, databasePath + ".bak2");
  form.Undo({databasePath, form.BackupName});
  EXPECT_EQ(form.BackupName + form.txtInterimDB.text, "");
}

TEST_F(ProjectToModelForm, ACompleteMergeThatTheDatabaseRefusesLeavesItAsItWas) {
  form.txtMPX.text = folder.Path("plan.mpx");
  OpenForModel();
  ASSERT_TRUE(GenerateFromText(program->modelToProject, MERIVANE_SAMPLES "/onboarding.txt",
                               form.txtMPX.text, ""));
  Sql("create unique index OneRow on ProjectResReqts (Msp_ProjID)");  // the last table
  const std::string before = ReadFile(databasePath);
  Answer([](frmDBMerge& merge) {
    merge.ChkComplete = true;
    merge.MergeWith(1);
  });
  BrowseInterim(databasePath);
  form.SSTabInput = form.kMpxTab;
  Output("model.txt");
  form.cmdOK();
  ASSERT_FALSE(desktop.MessageTexts().empty());
  EXPECT_FALSE(form.GenerateResult);
  EXPECT_TRUE(ReadFile(databasePath) == before);
}

TEST_F(ProjectToModelForm, LaunchTextsDifferByTab) {
  main.paths.gCelvarPath = "celvar";
  AddProject();
  AddOutlinedTask();
  BrowseDatabase();
  form.comboProject.listIndex = 0;
  form.comboProject_Click();
  const std::string output = Output("a model.txt");
  form.optLaunchCelvar.checked = true;
  form.cmdOK();
  EXPECT_EQ(desktop.MessageTexts().back(),
            "There are spaces in the target directory or file name.\r\nThe target file \r\n" +
                output + "\r\nhas been generated. \r\nPlease import it from Celvar.");
  EXPECT_EQ(desktop.startedCommands, std::vector<std::string>{"celvar"});
  EXPECT_NE(ReadFile(output).find("  Name:  Dig\r\n"), std::string::npos);
  form.optLaunchCelvar_Click();
  EXPECT_EQ(desktop.MessageTexts().back(), "Vorn Celvar not installed.");
}

TEST_F(ProjectToModelForm, CommandPathsAreCutAtThePlaceholder) {
  const std::pair<const char*, std::string> cases[] = {{"C:\\P\\app.exe \"%1\"", "C:\\P\\app.exe "},
                                                       {"C:\\P\\app.exe %1", "C:\\P\\app.exe"},
                                                       {"app.exe", std::string("app.exe\0", 8)},
                                                       {"%1", std::string("%1\0", 3)}};
  for (const auto& [value, path] : cases) {
    desktop.registry["k"] = value;
    EXPECT_EQ(GetCommandPath(desktop, "k"), path) << value;
  }
  desktop.startResult = false;
  ExecuteApp(desktop, std::string("app.exe\0 x", 10));
  EXPECT_EQ(desktop.MessageTexts().back(), "Unable to launch 'app.exe");
}

}  // namespace
}  // namespace merivane::test
