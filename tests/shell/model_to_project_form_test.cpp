#include "database_fixture.h"
#include "shell/frmDbFileAppend.h"
#include "shell/frmMain.h"

namespace merivane::test {

using namespace shell;

namespace {

using test::DatabaseFixture;
using ::testing::Test;

class ModelToProjectForm : public DatabaseFixture {
 protected:
  ModelToProjectForm() { form.Show(); }

  void Browse(const std::string& name) {
    desktop.fileNames.push_back(name);
    form.BrowsedbBt();
  }
  void AnswerAppend() {
    desktop.modalHandler = [](ModalForm& shown) {
      dynamic_cast<frmDbFileAppend&>(shown).CmdAppend();
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
  ASSERT_EQ(desktop.shown.size(), 1U);
  const auto& box = std::get<ScriptedDesktop::ShownMessage>(desktop.shown[0]).message;
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
    std::filesystem::copy_file(test::TemplateDatabase(), databasePath,
                               std::filesystem::copy_options::overwrite_existing);
    Sql(std::string("insert into MSP_PROJECTS (PROJ_ID) values (") + ids +
        "); delete from MSP_PROJECTS where PROJ_ID is null");
    AnswerAppend();
    state.gMspProjId = 5;  // kept where no row settles it, and where the id overflows
    Browse(databasePath);
    EXPECT_EQ(state.gMspProjId, expected) << ids;
    EXPECT_FALSE(state.gOverwriteDb);
    EXPECT_TRUE(form.IsVisible());
    state.gMspConn.reset();
  }
  EXPECT_TRUE(desktop.shown.empty());
}

TEST_F(ModelToProjectForm, NewNameCopiesTheTemplateWithoutAsking) {
  const std::string path = folder.Path("new.MDB");
  Browse(path);
  EXPECT_TRUE(state.gOverwriteDb);
  EXPECT_EQ(state.gMspProjId, 1);
  ASSERT_TRUE(state.gMspConn);
  EXPECT_EQ(test::CountRows(*state.gMspConn, "MSP_TASKS"), 1U);
}

TEST_F(ModelToProjectForm, OverwriteReplacesAFileThatIsOpenHere) {
  Sql("insert into MSP_PROJECTS (PROJ_ID) values (1)");
  desktop.modalHandler = [](ModalForm& shown) {
    dynamic_cast<frmDbFileAppend&>(shown).CmdOverwrite();
  };
  Browse(databasePath);
  EXPECT_EQ(form.BackupName, databasePath + ".bak");
  Browse(databasePath);
  EXPECT_EQ(form.BackupName, databasePath + ".bak2");
  EXPECT_EQ(test::CountRows(*state.gMspConn, "MSP_PROJECTS"), 0U);
}

TEST_F(ModelToProjectForm, MissingTemplateNamesItAndTheReaderThenFailsWithoutAConnection) {
  desktop.templatePath = folder.Path("none.mdb");
  Browse(folder.Path("new.mdb"));
  EXPECT_EQ(desktop.MessageTexts(),
            std::vector<std::string>{"Cannot Open Merivane Access Database Template: " +
                                     desktop.templatePath});
  EXPECT_FALSE(state.gMspConn);
  EXPECT_FALSE(std::filesystem::exists(folder.Path("new.mdb")));
  EXPECT_EQ(form.txtDatabase.text, folder.Path("new.mdb"));

  form.txtCelvarFilename.text = MERIVANE_SAMPLES "/onboarding.txt";
  EXPECT_TRUE(EndsProgram([&] { form.cmdOK(); }));
  EXPECT_EQ(desktop.shown.size(), 3U);  // the reader's report, then the translator's last box
}

TEST_F(ModelToProjectForm, TwoAppendsAtOnceTakeTwoNumbers) {
  Sql("insert into MSP_PROJECTS (PROJ_ID) values (6)");
  AnswerAppend();
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
  EXPECT_EQ(test::ColumnOf(*connection, "PROJ_ID", "MSP_PROJECTS"), (std::vector<Value>{6, 7, 8}));
  for (const char* project : {"7", "8"}) {
    EXPECT_EQ(test::CountRows(*connection, "MSP_TASKS", std::string("where PROJ_ID = ") + project),
              5U);
  }
}

TEST_F(ModelToProjectForm, ADatabaseThatAnotherProgramWritesIsToldAndNothingIsTranslated) {
  AnswerAppend();
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
  desktop.modalHandler = [](ModalForm& shown) {
    dynamic_cast<frmDbFileAppend&>(shown).CmdOverwrite();
  };
  const std::string before = test::ReadFile(databasePath);
  for (const std::string& bytes :
       {std::string("xy"), test::ReadFile(test::TemplateDatabase()).substr(0, 100000)}) {
    desktop.templatePath = folder.Write("template.mdb", bytes);
    Browse(databasePath);
    EXPECT_EQ(desktop.MessageTexts().back(),
              "Cannot Open Merivane Access Database Template: " + desktop.templatePath);
    EXPECT_EQ(test::ReadFile(databasePath), before);
  }
}

TEST_F(ModelToProjectForm, ADamagedDatabaseFailsInSilence) {
  const std::string path = folder.Write("text.mdb", "no database");
  AnswerAppend();
  Browse(path);
  EXPECT_TRUE(desktop.shown.empty());
  EXPECT_EQ(form.txtDatabase.text, path);
  EXPECT_EQ(test::ReadFile(path), "no database");
  EXPECT_EQ(desktop.pointer, kPointerDefault);
}

TEST_F(ModelToProjectForm, OkChecksTheBoxesInOrder) {
  struct Case {
    const char* tab;
    std::string text, database, mpx, interim;
    const char* message;
  };
  const Case cases[] = {
      {form.kDatabaseTab, "", "", "", "", "Please Select Source Celvar Text Filename"},
      {form.kDatabaseTab, "a.txt", "", "b.mpx", "c.mdb",
       "Please Select MS Project 2000 Database name"},
      {form.kMpxTab, "a.txt", "b.mdb", "", "", "Please Select Mpx Output Filename."},
      {form.kMpxTab, "a.txt", "b.mdb", "c.mpx", "", "Please Give an interim Database Name."},
  };
  for (const Case& c : cases) {
    form.SSTabGenerateOpt = c.tab;
    form.txtCelvarFilename.text = c.text;
    form.txtDatabase.text = c.database;
    form.txtMpx.text = c.mpx;
    form.txtDatabase_mpx.text = c.interim;
    form.cmdOK();
    EXPECT_EQ(desktop.MessageTexts().back(), c.message);
    EXPECT_TRUE(form.IsLoaded());
    EXPECT_FALSE(form.GenerateResult.has_value());
  }
}

TEST_F(ModelToProjectForm, AnMpxNameLeftFromTheSecondTabIsWrittenFromTheFirst) {
  form.txtCelvarFilename.text = MERIVANE_SAMPLES "/onboarding.txt";
  form.txtMpx.text = folder.Path("left.mpx");
  Browse(folder.Path("new.mdb"));
  desktop.registry[kProject2000Key] = "C:\\P\\app.exe \"%1\"";
  form.CkLaunchMsprojApp.checked = true;
  form.CkLaunchMsprojApp_Click();
  form.cmdOK();
  EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>());
  EXPECT_EQ(form.GenerateResult, true);
  EXPECT_FALSE(form.IsLoaded());
  EXPECT_FALSE(state.gMspConn);
  EXPECT_TRUE(std::filesystem::exists(folder.Path("left.mpx")));
  EXPECT_EQ(desktop.startedCommands,
            std::vector<std::string>{"C:\\P\\app.exe  " + folder.Path("new.mdb")});
}

TEST_F(ModelToProjectForm, LaunchBoxLooksUpByTabAndUnchecksItself) {
  form.SSTabGenerateOpt = form.kMpxTab;
  desktop.registry[kProject98Key] = "old.exe %1";
  form.CkLaunchMsprojApp.checked = true;
  form.CkLaunchMsprojApp_Click();
  EXPECT_EQ(main.paths.gProjectPath, "old.exe");
  EXPECT_TRUE(form.CkLaunchMsprojApp.checked);

  form.SSTabGenerateOpt = form.kDatabaseTab;
  form.CkLaunchMsprojApp_Click();
  EXPECT_FALSE(form.CkLaunchMsprojApp.checked);
  EXPECT_EQ(desktop.MessageTexts().back(), "Microsoft Project 2000 is not installed.");
  form.SSTabGenerateOpt = form.kMpxTab;
  desktop.registry.clear();
  form.CkLaunchMsprojApp.checked = true;
  form.CkLaunchMsprojApp_Click();
  EXPECT_EQ(desktop.MessageTexts().back(),
            "Both Microsoft Project 2000 and Microsoft Project 98 are not installed.");
}

TEST_F(ModelToProjectForm, AnMpxNameWithBlanksIsBoundedByTheDatabasesLength) {
  form.txtCelvarFilename.text = MERIVANE_SAMPLES "/onboarding.txt";
  form.SSTabGenerateOpt = form.kMpxTab;
  form.txtMpx.text = folder.Path("a plan.mpx");
  desktop.fileNames.push_back(folder.Path("interim.mdb"));
  form.BrowsedbBt_mpx();
  main.paths.gProjectPath = "app";
  form.CkLaunchMsprojApp.checked = true;
  form.cmdOK();
  EXPECT_EQ(desktop.MessageTexts(), std::vector<std::string>());
  EXPECT_EQ(desktop.startedCommands, std::vector<std::string>{"app " + folder.Path("a plan.mpx")});
}

}  // namespace
}  // namespace merivane::test
