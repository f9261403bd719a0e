#include <QCheckBox>
#include <QClipboard>

#include "desktop_fixture.h"
#include "translator/multi.h"

namespace merivane::test {

namespace {

class ModelToProjectWindow : public DesktopTest {
 protected:
  QWidget& form = OpenToProject();
  // Of two top scenarios and no fact, so the program asks by a chooser.
  const std::string asking = MERIVANE_SAMPLES "/bakery.txt";
};

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
  User::Click(form, "CkLaunchMsprojApp");
  EXPECT_FALSE(User::Get<QCheckBox>(form, "CkLaunchMsprojApp").isChecked());
  EXPECT_THAT(Boxes(), ElementsAre("Microsoft Project 2000 is not installed."));
  desktop.registry[kProject2000Key] = "project \"%1\"";
  Browse(form, "cmdBrowseText", model);
  User::Get<QLineEdit>(form, "txtMpx").setText(QString::fromStdString(mpx));
  Browse(form, "BrowsedbBt", plan);
  User::Click(form, "CkLaunchMsprojApp");
  User::Click(form, "cmdOK");
  EXPECT_FALSE(form.isVisible());
  EXPECT_THAT(Result(),
              AllOf(StartsWith("5 tasks, "), EndsWith("; written: " + plan + ", " + mpx)));
  EXPECT_THAT(desktop.started, ElementsAre("project  " + plan));
  EXPECT_EQ(desktop.pointerAtStart, Qt::WaitCursor);
  EXPECT_TRUE(std::filesystem::exists(mpx)) << "the other tab's box counts";
}

TEST_F(ModelToProjectWindow, AFileDroppedAnywhereGoesIntoTheBoxForItsKind) {
  QWidget& back = OpenToModel();
  const std::tuple<QWidget&, const char*, std::string, const char*> drops[] = {
      {form, "cmdOK", "/models/a.TXT", "txtCelvarFilename"},
      {form, "txtCelvarFilename", "/plans/a.mpx", "txtMpx"},
      {form, "CkLaunchMsprojApp", folder.Path("new.mdb"),
       "txtDatabase_mpx"},  // of the tab in front
      {form, "cmdHelp2", "/plans/a.xml", "txtXml"},
      {form, "txtCelvarFilename", "/models/b.txt", "txtCelvarFilename"},
      {back, "cmdOK", "/plans/a.xml", "txtXML"},
      {back, "txtXML", "/plans/a.mpx", "txtMPX"},  // which is disabled until then
      {back, "txtMPX", "/plans/b.mpx", "txtMPX"}};
  for (const auto& [to, place, file, box] : drops) {
    SCOPED_TRACE(file);
    Drop(to, place, file);
    EXPECT_EQ(TextOf(to, box), Native(file));
    EXPECT_TRUE(User::Find(to, box).isVisible() && User::Find(to, box).isEnabled());
  }
  EXPECT_EQ(TextOf(form, "txtDatabase"), "");
  Drop(form, "txtCelvarFilename", "/models/a.doc");
  Drop(form, "cmdOK", "/models/a.doc");
  DropAt(form, {1, 1}, {"/models/a.txt", "/models/c.txt"});
  EXPECT_THAT(Boxes(), ElementsAre("Incorrect File Type",
                                   Native("/models/a.doc") + " can't be dropped here. This dialog "
                                                             "takes .mdb, .mpx, .txt, .xml.",
                                   "Please drop one file at a time."));
  EXPECT_EQ(TextOf(form, "txtCelvarFilename"), Native("/models/b.txt"));
}

TEST_F(ModelToProjectWindow, ANameThatIsPastedLosesItsLineBreakAndNothingElse) {
  auto& box = User::Get<QLineEdit>(form, "txtCelvarFilename");
  QApplication::clipboard()->setText("/models/my  plan.txt\r\n");
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(main.modelToProject.txtCelvarFilename.text, "/models/my  plan.txt");
  const QString longest(40'000, 'a');
  QApplication::clipboard()->setText(longest);
  box.selectAll();
  QTest::keyClick(&box, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(box.text(), longest);
}

TEST_F(ModelToProjectWindow, AChooserTakesTheSelectedEntryByKeyboardAndRefusesNone) {
  user.steps.emplace_back([&](QDialog& dialog) {
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    QTest::keyClick(&User::Find(dialog, "List1"), Qt::Key_F1);
    EXPECT_THAT(desktop.helpContexts, ElementsAre(translator::multi::kHelpContextId));
    User::Click(dialog, "Command1");
    EXPECT_TRUE(dialog.isVisible());
    QTest::keyClick(&User::Find(dialog, "List1"), Qt::Key_Down);
    QTest::keyClick(&User::Find(dialog, "List1"), Qt::Key_Return);
  });
  Translate(form, {{"cmdBrowseText", asking}, {"BrowsedbBt", plan}});
  EXPECT_THAT(Boxes(), ElementsAre(""));
  EXPECT_EQ(program.modelToProject.chosenName, "Weekday bread");
  EXPECT_THAT(Result(), HasSubstr("; written: "));
}

TEST_F(ModelToProjectWindow, AnAbortOfAChooserEndsTheProgramOnceItIsConfirmed) {
  user.answers = {QMessageBox::No, QMessageBox::Yes};
  user.steps.emplace_back([](QDialog& dialog) {
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible());
    User::Click(dialog, "Command2");
  });
  Translate(form, {{"cmdBrowseText", asking}, {"BrowsedbBt", plan}});
  const std::string question = "Do you really want to abort the conversion?";
  EXPECT_THAT(Boxes(), ElementsAre(question, question));
  EXPECT_EQ(ends, 1);
  User::Click(form, "cmdCancel");  // an ended program does nothing more
  EXPECT_TRUE(main.modelToProject.IsLoaded());
}

TEST_F(ModelToProjectWindow, OkBehindAFailedPickTellsItsCauseAndLeavesTheMpxFile) {
  const std::string impossible = folder.Write("a file", "") + "/plan.mdb";
  folder.Write("plan.mpx", "precious");
  SelectTab(form, 1);
  Browse(form, "BrowsedbBt_mpx", impossible);
  EXPECT_THAT(Result(), AllOf(StartsWith(impossible + " can't be used: "),
                              EndsWith(". Nothing was changed.")));
  Translate(form, {{"cmdBrowseText", model}, {"cmdBrowseMPX", mpx}});
  EXPECT_EQ(ends, 1);
  const std::string told = "Object variable or With block variable not set";
  EXPECT_THAT(Boxes(), ElementsAre(told, told));
  EXPECT_THAT(user.advice, Each(StartsWith(impossible + " can't be used: ")));
  EXPECT_THAT(user.advice.back(), EndsWith("Merivane ends here; nothing was changed."));
  EXPECT_EQ(ReadFile(mpx), "precious");
}

TEST_F(ModelToProjectWindow, AnEmptiedDatabaseIsToldAtOnceAndCanBePutBack) {
  MakePlan();
  const std::string before = ReadFile(plan);
  OpenToProject();
  const QWidget& undo = User::Find(window, "undoPick");
  Browse(form, "BrowsedbBt", plan, User::Clicks("CmdOverwrite"));
  EXPECT_EQ(Result(), plan + " was emptied; the old one is " + plan + ".bak");
  // Whoever closes the question by its frame gives the answer before once more.
  Browse(form, "BrowsedbBt", plan, [](QDialog& dialog) { dialog.close(); });
  EXPECT_EQ(Result(), plan + " was emptied; the old one is " + plan + ".bak2");
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
  const std::string locked = folder.Write("locked.mdb", ReadFile(TemplateDatabase()));
  EXPECT_FALSE(User::Find(window, "openResult").isVisible());
  Browse(form, "cmdBrowseText", model);
  Browse(form, "BrowsedbBt", folder.Write("a file", "") + "/plan.mdb");
  Browse(form, "BrowsedbBt", first);
  EXPECT_EQ(Result(), "");
  {
    RawDatabase other(locked);
    other.Run("begin exclusive");
    program.workspace.patience = kBrief;
    Browse(form, "BrowsedbBt", locked,
           User::Clicks("CmdOverwrite"));  // without a word, and the first one stays open
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
  EXPECT_THAT(Boxes(), ElementsAre("No program could be started to open " + first));
}

TEST_F(ModelToProjectWindow, CancelLeavesEveryFileAsItWas) {
  MakePlan();
  const std::string mpxBefore = ReadFile(mpx);
  const std::string planBefore = ReadFile(plan);
  for (const char* stage : {"Reading the model", "Laying out the plan", "Writing the tasks"}) {
    SCOPED_TRACE(stage);
    WhileRunning(
        [&] {
          QTest::keyClick(window.windowHandle(), Qt::Key_Return);  // goes nowhere
          User::Click(window, "progressCancel");
        },
        stage);
    user.steps.push_back(User::Clicks("CmdAppend"));
    MakePlan();
    EXPECT_FALSE(form.isVisible() || ShowsProgress());
    EXPECT_TRUE(ReadFile(plan) == planBefore);
    EXPECT_EQ(ReadFile(mpx), mpxBefore);
    EXPECT_EQ(Result(), "Cancelled, nothing written; " + plan + " is as it was before the run");
  }
}

TEST_F(ModelToProjectWindow, TheFrameOfTheMainWindowAsksInARun) {
  const auto run = [this](QMessageBox::StandardButton answer) {
    SCOPED_TRACE(answer);
    user.answers.push_back(answer);
    bool closed = false;
    WhileRunning(
        [&] {
          if (!std::exchange(closed, true)) window.close();
        },
        "Reading the model");
    MakePlan();
    EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("Merivane is at work")));
  };
  run(QMessageBox::No);
  EXPECT_EQ(ends, 0);
  EXPECT_THAT(Result(), EndsWith("; written: " + plan + ", " + mpx));
  folder.Write("plan.mpx", "precious");
  user.steps.push_back(User::Clicks("CmdAppend"));
  run(QMessageBox::Yes);
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(ReadFile(mpx), "precious");
}

TEST_F(ModelToProjectWindow, ASignalInMidRunUndoesItAndEndsTheProgramUnasked) {
  folder.Write("plan.mpx", "precious");
  WhileRunning([&] { QTimer::singleShot(0, &window, [&] { desktop.EndUnasked(); }); });
  MakePlan();
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(ReadFile(mpx), "precious");
}

TEST_F(ModelToProjectWindow, ACancelledPickLeavesTheOneBefore) {
  folder.Write("plan.mdb", ReadFile(TemplateDatabase()));
  Browse(form, "BrowsedbBt", folder.Path("first.mdb"));
  WhileRunning([&] { User::Click(window, "progressCancel"); }, "Copying the database");
  Browse(form, "BrowsedbBt", plan, User::Clicks("CmdOverwrite"));
  EXPECT_EQ(TextOf(form, "txtDatabase"), folder.Path("first.mdb"));
  EXPECT_EQ(names.asked.back().current, folder.Path("first.mdb"));
  EXPECT_FALSE(std::filesystem::exists(plan + ".bak"));
  desktop.onProgress = {};
  Translate(form, {{"cmdBrowseText", model}});
  EXPECT_THAT(Result(), HasSubstr("; written: " + folder.Path("first.mdb")));
}

TEST_F(ModelToProjectWindow, TheWaitForAnotherProgramCanBeCancelled) {
  Browse(form, "cmdBrowseText", model);
  Browse(form, "BrowsedbBt", plan);
  RawDatabase other(plan);
  other.Run("begin exclusive");
  WhileRunning([&] { User::Click(window, "progressCancel"); });
  User::Click(form, "cmdOK");
  EXPECT_EQ(Result(), "Cancelled, nothing written; " + plan + " is as it was before the run");
}

}  // namespace
}  // namespace merivane::test
