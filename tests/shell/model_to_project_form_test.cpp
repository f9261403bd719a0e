#include "database_fixture.h"
#include "shell/frmMain.h"
#include "shell/modal_forms.h"

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
  EXPECT_EQ(desktop.boxes[0].text + "|" + desktop.boxes[0].title,
            "Incorrect File Type|File Selection Error");
  EXPECT_EQ(desktop.boxes[0].icon, MessageIcon::kCritical);
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

TEST_F(ModelToProjectForm, OverwriteReplacesAFileThatIsOpenHereUnlessTheTemplateIsBad) {
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
  desktop.templatePath = TemplateDatabase();
  Browse(databasePath);
  EXPECT_EQ(form.BackupName, databasePath + ".bak");
  Browse(databasePath);
  EXPECT_EQ(form.BackupName, databasePath + ".bak2");
  EXPECT_EQ(CountRows(*state.gMspConn, "MSP_PROJECTS"), 0U);
  form.Undo({databasePath, databasePath + ".bak"});
  EXPECT_FALSE(state.gMspConn);
  EXPECT_EQ(form.txtDatabase.text, "");
  EXPECT_EQ(ReadFile(databasePath), before);
}

TEST_F(ModelToProjectForm, TwoAppendsAtOnceTakeTwoNumbers) {
  Sql("insert into MSP_PROJECTS (PROJ_ID) values (6)");
  Answer(&frmDbFileAppend::CmdAppend);
  program->workspace.patience = kBrief;
  Browse(databasePath);
  EXPECT_EQ(state.gMspProjId, 7);
  Program otherProgram(desktop);
  frmMain otherMain(otherProgram);
  frmIDEF3ToProject& other = otherMain.modelToProject;
  other.Show();
  desktop.fileNames.push_back(databasePath);
  other.BrowsedbBt();
  form.txtCelvarFilename.text = other.txtCelvarFilename.text = MERIVANE_SAMPLES "/onboarding.txt";
  otherProgram.modelToProject.gMspConn->BeginWrite();
  form.cmdOK();
  EXPECT_EQ(form.GenerateResult, false);
  EXPECT_TRUE(form.IsVisible());  // for another try
  EXPECT_EQ(desktop.MessageTexts().back(),
            "Permission denied: the database '" + databasePath + "' is in use by another program.");
  for (frmIDEF3ToProject* each : {&other, &form}) {
    each->cmdOK();
    EXPECT_EQ(each->GenerateResult, true);
  }
  RawDatabase written(databasePath);
  EXPECT_EQ(written.Ask("select PROJ_ID from MSP_PROJECTS"), "678");
  EXPECT_EQ(written.Ask("select PROJ_ID || ':' || count(*) || ' ' from MSP_TASKS "
                        "where PROJ_ID > 6 group by PROJ_ID"),
            "7:5 8:5 ");
}

TEST_F(ModelToProjectForm, ADamagedDatabaseFailsInSilenceAndNothingIsWrittenBehindIt) {
  const std::string path = folder.Write("text.mdb", "no database");
  Answer(&frmDbFileAppend::CmdAppend);
  Browse(path);
  EXPECT_TRUE(desktop.boxes.empty());
  EXPECT_EQ(form.txtDatabase.text, path);
  EXPECT_TRUE(form.IsVisible());  // which it was not behind the question
  EXPECT_NE(form.PickFailure.value().Description().find(path), std::string::npos);
  EXPECT_FALSE(state.gMspConn);
  EXPECT_EQ(desktop.pointer, kPointerDefault);
  form.SSTabGenerateOpt = frmIDEF3ToProject::kMpxTab;
  form.txtCelvarFilename.text = MERIVANE_SAMPLES "/onboarding.txt";
  form.txtDatabase_mpx.text = path;
  form.txtMpx.text = folder.Write("plan.mpx", "old");
  EXPECT_TRUE(EndsProgram([&] { form.cmdOK(); }));
  EXPECT_EQ(ReadFile(path) + ReadFile(form.txtMpx.text), "no databaseold");
}

TEST_F(ModelToProjectForm, TheTabSaysWhichProgramIsLookedForAndStarted) {
  const std::tuple<const char*, const char*, bool> cases[] = {
      {frmIDEF3ToProject::kDatabaseTab, "Microsoft Project 2000 is not installed.", false},
      {frmIDEF3ToProject::kMpxTab,
       "Both Microsoft Project 2000 and Microsoft Project 98 are not installed.", true},
      {frmIDEF3ToProject::kXmlTab, "Microsoft Project is not installed.", false}};
  const auto click = [&] {
    form.CkLaunchMsprojApp.checked = true;
    form.CkLaunchMsprojApp_Click();
  };
  for (const auto& [tab, missing, takes98] : cases) {
    SCOPED_TRACE(tab);
    form.SSTabGenerateOpt = tab;
    desktop.registry.clear();
    click();
    EXPECT_EQ(desktop.MessageTexts().back(), missing);
    EXPECT_FALSE(form.CkLaunchMsprojApp.checked);
    desktop.registry[kProject98Key] = "p98.exe %1";
    click();
    EXPECT_EQ(form.CkLaunchMsprojApp.checked, takes98);
    desktop.registry[kProject2000Key] = "p2000.exe %1";
    click();
    EXPECT_TRUE(form.CkLaunchMsprojApp.checked);
    EXPECT_EQ(main.paths.gProjectPath, "p2000.exe");
    form.CkLaunchMsprojApp.checked = false;
    desktop.registry.clear();
    form.CkLaunchMsprojApp_Click();
    EXPECT_EQ(main.paths.gProjectPath, "p2000.exe");  // an empty box looks nothing up
  }
}

TEST_F(ModelToProjectForm, ANameWithABlankIsToldAndNotHandedOver) {
  const std::string model = MERIVANE_SAMPLES "/onboarding.txt";
  const auto run = [&](const char* tab, TextBox& box, const std::string& file) {
    form.Unload();
    form.Show();
    form.SSTabGenerateOpt = tab;
    form.txtCelvarFilename.text = model;
    form.txtDatabase_xml.text = databasePath;
    box.text = file;
    form.CkLaunchMsprojApp = {true, true};
    main.paths.gProjectPath = "project";
    desktop.boxes.clear();
    OpenForModel();
    form.cmdOK();
    EXPECT_EQ(form.GenerateResult, true) << file;
    EXPECT_FALSE(form.CkLaunchMsprojApp.checked || form.CkLaunchMsprojApp.enabled);
    EXPECT_FALSE(form.txtDatabase.enabled);
  };
  run(frmIDEF3ToProject::kDatabaseTab, form.txtDatabase, databasePath);
  EXPECT_EQ(desktop.startedCommands.back(), "project " + databasePath);
  EXPECT_TRUE(desktop.boxes.empty());
  const std::string spaced = folder.Path("my plan.xml");
  for (const std::string& xml : {spaced, folder.Path("plan.xml")}) {
    run(frmIDEF3ToProject::kXmlTab, form.txtXml, xml);
    EXPECT_EQ(desktop.startedCommands.back(), xml == spaced ? "project" : "project " + xml);
    EXPECT_EQ(desktop.boxes.size(), xml == spaced ? 1U : 0U);
    EXPECT_TRUE(std::filesystem::exists(xml));
  }
  EXPECT_EQ(desktop.startedCommands.size(), 3U);
}

TEST_F(ModelToProjectForm, TheFrameOpensItsFormsOnceAndTellsWhatItCanNotReach) {
  desktop.registry[kCelvarKey] = "C:\\Celvar\\celvar.exe \"%1\"";
  desktop.registry[kProject98Key] = std::string(3000, 'x');  // longer than the look-up's buffer
  main.mnuPath();
  EXPECT_EQ(main.options.listPaths,
            (std::vector<std::string>{
                "Vorn Celvar7 Path: ", std::string(18, ' ') + "C:\\Celvar\\celvar.exe ",
                "MS Project 2000 Path: ", std::string(17, ' ') + "not installed.",
                "MS Project 98 Path: ", std::string(17, ' ') + "not installed."}));
  form.txtCelvarFilename.text = "kept";
  main.mnuIDEF3ToProject();
  EXPECT_EQ(form.txtCelvarFilename.text, "kept");
  main.Start();
  EXPECT_TRUE(main.IsVisible());
  EXPECT_FALSE(main.splash.IsLoaded());
  EXPECT_EQ(main.HelpFile, desktop.AppPath() + "/merivane.chm");
  main.mnuAboutVorn();
  EXPECT_TRUE(desktop.boxes.empty());
  desktop.webPageResult = Desktop::kLowestSuccess - 1;
  main.mnuAboutVorn();
  EXPECT_EQ(desktop.MessageTexts().back(),
            std::string("Cannot launch the default browser or site ") + frmMain::HomePage() +
                " not found.");
  EXPECT_FALSE(form.OpenProj2kTemplate());  // no such template stands beside the program
}

}  // namespace
}  // namespace merivane::test
