#include "database_fixture.h"
#include "shell/frmDbFileAppend.h"
#include "shell/frmMain.h"

namespace merivane::test {

using namespace shell;

namespace {

class ModelToProjectForm : public DatabaseFixture {
 protected:
  ModelToProjectForm() { form.Show(); }

  void Browse(const std::string& name) {
    desktop.fileNames.push_back(name);
    form.BrowsedbBt();
  }
  void Answer(void (frmDbFileAppend::*button)()) {
    desktop.onModalForm = [button](ModalForm& shown) {
      (dynamic_cast<frmDbFileAppend&>(shown).*button)();
    };
  }
  ModelToProject& state = program->modelToProject;
  frmMain main{*program};
  frmIDEF3ToProject& form = main.modelToProject;
};

TEST_F(ModelToProjectForm, BrowseRefusesOtherExtensionsAndKeepsTheBox) {
  desktop.fileNames = {"", "  ", "model.doc", " Model.TXT"};
  for (int i = 0; i < 3; ++i) form.cmdBrowseText();
  EXPECT_EQ(form.txtCelvarFilename.text, "");
  ASSERT_EQ(desktop.boxes.size(), 1U);
  const auto& box = desktop.boxes[0];
  EXPECT_EQ(box.text, "Incorrect File Type");
  EXPECT_EQ(box.title, "File Selection Error");
  EXPECT_EQ(box.icon, MessageIcon::kCritical);
  form.cmdBrowseText();
  EXPECT_EQ(form.txtCelvarFilename.text, "Model.TXT");
  EXPECT_EQ(desktop.pointer, kPointerDefault);
}

TEST_F(ModelToProjectForm, AppendTakesTheLastRowsIdPlusOne) {
  for (const auto& [ids, expected] :
       {std::pair{"null", 5}, {"1), (7", 8}, {"7), (2", 3}, {"32767", 5}}) {
    std::filesystem::copy_file(TemplateDatabase(), databasePath,
                               std::filesystem::copy_options::overwrite_existing);
    Sql(std::string("insert into MSP_PROJECTS (PROJ_ID) values (") + ids +
        "); delete from MSP_PROJECTS where PROJ_ID is null");
    Answer(&frmDbFileAppend::CmdAppend);
    state.gMspProjId = 5;  // kept where no row settles it, and where the id overflows
    Browse(databasePath);
    EXPECT_EQ(state.gMspProjId, expected) << ids;
    EXPECT_FALSE(state.gOverwriteDb);
    EXPECT_TRUE(form.IsVisible());
    // Nothing is translated under a number that no row settles.
    EXPECT_EQ(state.gMspConn == nullptr, form.PickFailure.has_value()) << ids;
    state.gMspConn.reset();
  }
  EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(ModelToProjectForm, OverwriteReplacesAFileThatIsOpenHere) {
  Sql("insert into MSP_PROJECTS (PROJ_ID) values (1)");
  Answer(&frmDbFileAppend::CmdOverwrite);
  Browse(databasePath);
  EXPECT_EQ(form.BackupName, databasePath + ".bak");
  Browse(databasePath);
  EXPECT_EQ(form.BackupName, databasePath + ".bak2");
  EXPECT_EQ(CountRows(*state.gMspConn, "MSP_PROJECTS"), 0U);
}

TEST_F(ModelToProjectForm, TwoAppendsAtOnceTakeTwoNumbers) {
  Sql("insert into MSP_PROJECTS (PROJ_ID) values (6)");
  Answer(&frmDbFileAppend::CmdAppend);
  Browse(databasePath);
  EXPECT_EQ(state.gMspProjId, 7);
  Program otherProgram(desktop);
  frmMain otherMain(otherProgram);
  frmIDEF3ToProject& other = otherMain.modelToProject;
  other.Show();
  desktop.fileNames.push_back(databasePath);
  other.BrowsedbBt();
  for (frmIDEF3ToProject* each : {&other, &form}) {
    each->txtCelvarFilename.text = MERIVANE_SAMPLES "/onboarding.txt";
    each->cmdOK();
    EXPECT_EQ(each->GenerateResult, true);
  }
  auto connection = Connect();
  EXPECT_EQ(ColumnOf(*connection, "PROJ_ID", "MSP_PROJECTS"), (std::vector<Value>{6, 7, 8}));
  for (const char* project : {"7", "8"}) {
    EXPECT_EQ(CountRows(*connection, "MSP_TASKS", std::string("where PROJ_ID = ") + project), 5U);
  }
}

TEST_F(ModelToProjectForm, ADatabaseThatAnotherProgramWritesIsToldAndNothingIsTranslated) {
  program->workspace.patience = kBrief;
  Answer(&frmDbFileAppend::CmdAppend);
  Browse(databasePath);
  Program otherProgram(desktop);
  Connection writer(otherProgram.workspace);
  writer.Open(ConnectionText(databasePath));
  writer.BeginWrite();
  form.txtCelvarFilename.text = MERIVANE_SAMPLES "/onboarding.txt";
  form.cmdOK();
  EXPECT_EQ(form.GenerateResult, false);
  EXPECT_EQ(desktop.MessageTexts(),
            std::vector<std::string>{"Permission denied: the database '" + databasePath +
                                     "' is in use by another program."});
}

TEST_F(ModelToProjectForm, ABadTemplateReplacesNothing) {
  Sql("insert into MSP_PROJECTS (PROJ_ID) values (1)");
  Answer(&frmDbFileAppend::CmdOverwrite);
  const std::string before = ReadFile(databasePath);
  for (const std::string& bytes :
       {std::string("xy"), ReadFile(TemplateDatabase()).substr(0, 100000)}) {
    desktop.templatePath = folder.Write("template.mdb", bytes);
    Browse(databasePath);
    EXPECT_EQ(desktop.MessageTexts().back(),
              "Cannot Open Merivane Access Database Template: " + desktop.templatePath);
    EXPECT_EQ(ReadFile(databasePath), before);
  }
}

TEST_F(ModelToProjectForm, ADamagedDatabaseFailsInSilence) {
  const std::string path = folder.Write("text.mdb", "no database");
  Answer(&frmDbFileAppend::CmdAppend);
  Browse(path);
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_EQ(form.txtDatabase.text, path);
  EXPECT_NE(form.PickFailure.value().Description().find(path), std::string::npos);
  EXPECT_FALSE(state.gMspConn);
  EXPECT_EQ(ReadFile(path), "no database");
  EXPECT_EQ(desktop.pointer, kPointerDefault);
}

}  // namespace
}  // namespace merivane::test
