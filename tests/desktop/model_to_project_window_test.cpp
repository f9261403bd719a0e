#include <QCheckBox>
#include <QClipboard>
#include <QLabel>
#include <utility>

#include "desktop_fixture.h"
#include "translator/multi.h"

namespace merivane::test {

using namespace translator;

namespace {

using ::testing::Each;

class ModelToProjectWindow : public DesktopTest {
 protected:
  QWidget& form = OpenToProject();
};

TEST_F(ModelToProjectWindow, OkTellsWhatIsMissingTabByTab) {
  QTest::keyClick(&User::Find(form, "txtDatabase"), Qt::Key_Return);
  QTest::keyClicks(&User::Find(form, "txtCelvarFilename"), "a.txt");
  QTest::keyClicks(&User::Find(form, "txtDatabase"), "b.mdb");
  SelectTab(form, "SSTabGenerateOpt", 1);
  User::Click(form, "cmdOK");
  QTest::keyClicks(&User::Find(form, "txtMpx"), "c.mpx");
  User::Click(form, "cmdOK");
  QTest::keyClicks(&User::Find(form, "txtDatabase_mpx"), "d.mdb");
  SelectTab(form, "SSTabGenerateOpt", 0);
  User::Get<QLineEdit>(form, "txtDatabase").clear();
  User::Click(form, "cmdOK");
  SelectTab(form, "SSTabGenerateOpt", 1);
  User::Click(form, "CkLaunchMsprojApp");
  EXPECT_FALSE(User::Get<QCheckBox>(form, "CkLaunchMsprojApp").isChecked());
  EXPECT_THAT(user.boxes, ElementsAre("Please Select Source Celvar Text Filename",
                                      "Please Select Mpx Output Filename.",
                                      "Please Give an interim Database Name.",
                                      "Please Select MS Project 2000 Database name",
                                      "Both Microsoft Project 2000 and Microsoft Project 98 are "
                                      "not installed."));
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(Result(), "");
}

TEST_F(ModelToProjectWindow, AFocusedCancelIsTheDefaultAndOpensAnewWithEmptyFields) {
  QTest::keyClicks(&User::Find(form, "txtCelvarFilename"), "b.txt");
  User::Find(form, "cmdCancel").setFocus();
  EXPECT_FALSE(User::Get<QPushButton>(form, "cmdOK").isDefault());
  QTest::keyClick(&User::Find(form, "cmdCancel"), Qt::Key_Return);
  OpenToProject();
  EXPECT_EQ(TextOf(form, "txtCelvarFilename"), "");
  EXPECT_EQ(window.focusWidget()->objectName(), "txtCelvarFilename");
}

TEST_F(ModelToProjectWindow, TranslatesByClicksAloneAndStartsTheProgram) {
  desktop.registry[kProject2000Key] = "project \"%1\"";
  Browse(form, "cmdBrowseText", MERIVANE_SAMPLES "/onboarding.txt");
  User::Get<QLineEdit>(form, "txtMpx").setText(QString::fromStdString(folder.Path("left.mpx")));
  Browse(form, "BrowsedbBt", plan);
  User::Click(form, "CkLaunchMsprojApp");
  User::Click(form, "cmdOK");
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_FALSE(form.isVisible());
  EXPECT_THAT(Result(), AllOf(StartsWith("5 tasks, "),
                              EndsWith("; written: " + plan + ", " + folder.Path("left.mpx"))));
  EXPECT_THAT(desktop.started, ElementsAre("project  " + plan));
  EXPECT_THAT(desktop.pointersAtStart, ElementsAre(Qt::WaitCursor));
  EXPECT_TRUE(std::filesystem::exists(folder.Path("left.mpx"))) << "the other tab's box counts";
}

TEST_F(ModelToProjectWindow, AnExistingDatabaseAsksBetweenAppendAndOverwrite) {
  MakePlan();
  const std::pair<std::function<void(QDialog&)>, int> cases[] = {
      {User::Clicks("CmdAppend"), 2},
      {[](QDialog& dialog) {
         QTest::keyClick(&dialog, Qt::Key_Escape);
         EXPECT_TRUE(dialog.isVisible());
         dialog.close();
       },
       2},
      {User::Clicks("CmdOverwrite"), 1},
  };
  OpenToProject();
  for (const auto& [step, project] : cases) {
    user.steps.emplace_back([&, &step = step](QDialog& dialog) {
      EXPECT_FALSE(form.isVisible());
      EXPECT_EQ(User::Get<QLabel>(dialog, "fileName").text().toStdString(), plan);
      step(dialog);
    });
    Browse(form, "BrowsedbBt", plan);
    EXPECT_EQ(program.modelToProject.gMspProjId, project);
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(window.focusWidget(), &User::Find(form, "BrowsedbBt"));
  }
}

TEST_F(ModelToProjectWindow, AFileDroppedAnywhereGoesIntoTheBoxForItsKind) {
  const std::string database = folder.Path("new.mdb");
  const struct {
    const char* place;
    std::string file;
    const char* box;
  } drops[] = {{"cmdOK", "/models/a.TXT", "txtCelvarFilename"},
               {"txtCelvarFilename", "/plans/a.mpx", "txtMpx"},
               {"CkLaunchMsprojApp", database, "txtDatabase_mpx"},  // its tab is in front now
               {"cmdHelp2", "/plans/a.xml", "txtXml"},
               {"txtCelvarFilename", "/models/b.txt", "txtCelvarFilename"}};
  for (const auto& drop : drops) {
    SCOPED_TRACE(drop.file);
    EXPECT_TRUE(Drop(form, drop.place, drop.file.c_str()));
    EXPECT_EQ(TextOf(form, drop.box), Native(drop.file));
    EXPECT_TRUE(User::Find(form, drop.box).isVisible());
  }
  EXPECT_EQ(TextOf(form, "txtDatabase"), "");
  EXPECT_TRUE(Drop(form, "txtCelvarFilename", "/models/a.doc"));
  EXPECT_THAT(user.icons, ElementsAre(QMessageBox::Critical));
  EXPECT_TRUE(Drop(form, "cmdOK", "/models/a.doc"));
  EXPECT_TRUE(DropAt(form, {1, 1}, {"/models/a.txt", "/models/c.txt"}));
  QTest::qWait(10);
  EXPECT_THAT(user.boxes,
              ElementsAre("Incorrect File Type",
                          Native("/models/a.doc") +
                              " can't be dropped here. This dialog takes .mdb, .mpx, .txt, .xml.",
                          "Please drop one file at a time."));
  EXPECT_EQ(TextOf(form, "txtCelvarFilename"), Native("/models/b.txt"));
}

TEST_F(ModelToProjectWindow, ANameThatIsPastedLosesItsLineBreakAndNothingElse) {
  auto& box = User::Get<QLineEdit>(form, "txtCelvarFilename");
  QApplication::clipboard()->setText("/models/my  plan.txt\r\n");
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(TextOf(form, "txtCelvarFilename"), "/models/my  plan.txt");
  EXPECT_EQ(main.modelToProject.txtCelvarFilename.text, "/models/my  plan.txt");
  const QString longest(40'000, 'a');
  QApplication::clipboard()->setText(longest);
  box.selectAll();
  QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(box.text(), longest);
}

// Two top scenarios and no fact, so the program asks.
class Chooser : public ModelToProjectWindow {
 protected:
  void Translate(const std::function<void(QDialog&)>& step) {
    user.steps.push_back(step);
    Browse(form, "cmdBrowseText", MERIVANE_SAMPLES "/bakery.txt");
    Browse(form, "BrowsedbBt", plan);
    User::Click(form, "cmdOK");
  }
};

TEST_F(Chooser, TakesTheSelectedEntryByKeyboardAndRefusesNone) {
  Translate([&](QDialog& dialog) {
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    QTest::keyClick(&User::Find(dialog, "List1"), Qt::Key_F1);
    EXPECT_THAT(desktop.helpContexts, ElementsAre(translator::multi::kHelpContextId));
    User::Click(dialog, "Command1");
    EXPECT_TRUE(dialog.isVisible());
    QTest::keyClick(&User::Find(dialog, "List1"), Qt::Key_Down);
    QTest::keyClick(&User::Find(dialog, "List1"), Qt::Key_Return);
  });
  EXPECT_THAT(user.boxes, ElementsAre(""));
  EXPECT_EQ(program.modelToProject.chosenName, "Weekday bread");
  EXPECT_THAT(Result(), HasSubstr("; written: "));
}

TEST_F(Chooser, AnAbortEndsTheProgramOnceItIsConfirmed) {
  user.answers = {QMessageBox::No, QMessageBox::Yes};
  Translate([](QDialog& dialog) {
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible());
    User::Click(dialog, "Command2");
  });
  EXPECT_THAT(user.boxes, ElementsAre("Do you really want to abort the conversion?",
                                      "Do you really want to abort the conversion?"));
  EXPECT_EQ(ends, 1);
  User::Click(form, "cmdCancel");  // an ended program does nothing more
  EXPECT_TRUE(main.modelToProject.IsLoaded());
}

TEST_F(ModelToProjectWindow, OkBehindAFailedPickTellsItsCauseAndLeavesTheMpxFile) {
  const std::string impossible = folder.Write("a file", "") + "/plan.mdb";
  folder.Write("plan.mpx", "precious");
  SelectTab(form, "SSTabGenerateOpt", 1);
  Browse(form, "cmdBrowseText", MERIVANE_SAMPLES "/onboarding.txt");
  Browse(form, "BrowsedbBt_mpx", impossible);
  EXPECT_THAT(Result(), AllOf(StartsWith(impossible + " can't be used: "),
                              EndsWith(". Nothing was changed.")));
  Browse(form, "cmdBrowseMPX", mpx);
  User::Click(form, "cmdOK");
  EXPECT_EQ(ends, 1);
  EXPECT_THAT(user.boxes, ElementsAre("Object variable or With block variable not set",
                                      "Object variable or With block variable not set"));
  EXPECT_THAT(user.advice, Each(StartsWith(impossible + " can't be used: ")));
  EXPECT_THAT(user.advice.back(), EndsWith("Merivane ends here; nothing was changed."));
  EXPECT_EQ(ReadFile(mpx), "precious");
}

TEST_F(ModelToProjectWindow, AnEmptiedDatabaseIsToldAtOnceAndCanBePutBack) {
  MakePlan();
  const std::string before = ReadFile(plan);
  OpenToProject();
  const QWidget& undo = User::Find(window, "undoPick");
  for (const char* backup : {".bak", ".bak2"}) {
    user.steps.push_back(User::Clicks("CmdOverwrite"));
    Browse(form, "BrowsedbBt", plan);
    EXPECT_EQ(Result(), plan + " was emptied; the old one is " + plan + backup);
  }
  const std::string emptied = ReadFile(plan + ".bak2");
  User::Click(form, "cmdCancel");
  OpenToProject();
  Browse(form, "BrowsedbBt_mpx", folder.Path("other.mdb"));
  EXPECT_THAT(Result(), EndsWith(" is " + plan + ".bak2"));
  User::Click(window, "undoPick");
  EXPECT_EQ(ReadFile(plan), emptied);
  EXPECT_THAT(Result(), EndsWith(" is " + plan + ".bak"));
  User::Click(window, "undoPick");
  EXPECT_EQ(ReadFile(plan), before);
  EXPECT_EQ(Result(), plan + " is as it was before");
  EXPECT_FALSE(undo.isVisible() || std::filesystem::exists(plan + ".bak"));
}

TEST_F(ModelToProjectWindow, TheResultNamesTheDatabaseThatWasWrittenAndOpensIt) {
  const std::string first = folder.Path("first plan.mdb");
  const std::string locked = folder.Path("locked.mdb");
  std::filesystem::copy_file(TemplateDatabase(), locked);
  EXPECT_FALSE(User::Find(window, "openResult").isVisible());
  Browse(form, "cmdBrowseText", MERIVANE_SAMPLES "/onboarding.txt");
  Browse(form, "BrowsedbBt", folder.Write("a file", "") + "/plan.mdb");
  EXPECT_THAT(Result(), HasSubstr(" can't be used: "));
  Browse(form, "BrowsedbBt", first);
  EXPECT_EQ(Result(), "");
  {
    RawDatabase other(locked);
    other.Run("begin exclusive");
    program.workspace.patience = kBrief;
    user.steps.push_back(User::Clicks("CmdOverwrite"));
    Browse(form, "BrowsedbBt", locked);  // without a word, and the first one stays open
  }
  EXPECT_EQ(TextOf(form, "txtDatabase"), locked);
  User::Click(form, "cmdOK");
  EXPECT_THAT(Result(), EndsWith("; written: " + first));
  User::Click(window, "openResult");
  desktop.webPageResult = Desktop::kLowestSuccess;
  User::Click(window, "openResult");
  User::Click(window, "showResult");
  const std::string address =
      QUrl::fromLocalFile(QString::fromStdString(first)).toEncoded().toStdString();
  EXPECT_THAT(desktop.opened, ElementsAre(address, address, address.substr(0, address.rfind('/'))));
  EXPECT_THAT(user.boxes, ElementsAre("No program could be started to open " + first));
}

TEST_F(ModelToProjectWindow, CancelLeavesEveryFileAsItWas) {
  MakePlan();
  const std::string mpxBefore = ReadFile(mpx);
  const auto rows = [&] {
    Connection connection(program.workspace);
    connection.Open(ConnectionText(plan), OpenMode::kReadOnly);
    return CountRows(connection, "Activity_in_Scenario") + CountRows(connection, "MSP_TASKS");
  };
  const auto rowsBefore = rows();
  for (const char* stage : {"Reading the model", "Laying out the plan", "Writing the tasks"}) {
    SCOPED_TRACE(stage);
    bool cancelled = false;
    WhileRunning(
        [&] {
          if (!ShowsProgress()) return;
          QTest::keyClick(window.windowHandle(), Qt::Key_Return);  // goes nowhere
          User::Click(window, "progressCancel");
          cancelled = true;
        },
        stage);
    user.steps.push_back(User::Clicks("CmdAppend"));
    MakePlan();
    EXPECT_TRUE(cancelled && !form.isVisible());
    EXPECT_FALSE(ShowsProgress());
    EXPECT_EQ(rows(), rowsBefore);
    EXPECT_EQ(ReadFile(mpx), mpxBefore);
    EXPECT_EQ(Result(), "Cancelled, nothing written; " + plan + " is as it was before the run");
  }
  EXPECT_TRUE(user.boxes.empty());
}

TEST_F(ModelToProjectWindow, TheFrameOfTheMainWindowAsksInARun) {
  folder.Write("plan.mpx", "precious");
  for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
    SCOPED_TRACE(answer);
    bool closed = false;
    WhileRunning(
        [&] {
          if (!ShowsProgress() || std::exchange(closed, true)) return;
          user.answers.push_back(answer);
          window.close();
        },
        "Reading the model");
    if (answer == QMessageBox::Yes) user.steps.push_back(User::Clicks("CmdAppend"));
    MakePlan();
    EXPECT_TRUE(closed);
    if (answer == QMessageBox::No) {
      EXPECT_EQ(ends, 0);
      EXPECT_THAT(Result(), EndsWith("; written: " + plan + ", " + mpx));
      folder.Write("plan.mpx", "precious");
    }
  }
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(ReadFile(mpx), "precious");
  EXPECT_THAT(user.boxes, ElementsAre(HasSubstr("Merivane is at work"), HasSubstr("at work")));
}

TEST_F(ModelToProjectWindow, ASignalInMidRunUndoesItAndEndsTheProgramUnasked) {
  folder.Write("plan.mpx", "precious");
  WhileRunning([&] { QTimer::singleShot(0, &window, [&] { desktop.EndUnasked(); }); });
  MakePlan();
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(ReadFile(mpx), "precious");
  EXPECT_THAT(user.boxes, IsEmpty());
}

TEST_F(ModelToProjectWindow, ACancelledPickLeavesTheOneBefore) {
  folder.Write("plan.mdb", ReadFile(TemplateDatabase()));
  Browse(form, "BrowsedbBt", folder.Path("first.mdb"));
  WhileRunning([&] { User::Click(window, "progressCancel"); }, "Copying the database");
  user.steps.push_back(User::Clicks("CmdOverwrite"));
  Browse(form, "BrowsedbBt", plan);
  EXPECT_EQ(TextOf(form, "txtDatabase"), folder.Path("first.mdb"));
  EXPECT_FALSE(std::filesystem::exists(plan + ".bak"));
  desktop.onProgress = {};
  Browse(form, "cmdBrowseText", MERIVANE_SAMPLES "/onboarding.txt");
  User::Click(form, "cmdOK");
  EXPECT_THAT(Result(), HasSubstr("; written: " + folder.Path("first.mdb")));
}

TEST_F(ModelToProjectWindow, TheWaitForAnotherProgramCanBeCancelled) {
  Browse(form, "cmdBrowseText", MERIVANE_SAMPLES "/onboarding.txt");
  Browse(form, "BrowsedbBt", plan);
  RawDatabase other(plan);
  other.Run("begin exclusive");
  WhileRunning([&] { User::Click(window, "progressCancel"); });
  User::Click(form, "cmdOK");
  EXPECT_EQ(Result(), "Cancelled, nothing written; " + plan + " is as it was before the run");
  EXPECT_TRUE(user.boxes.empty()) << user.boxes.front();
}

}  // namespace
}  // namespace merivane::test
