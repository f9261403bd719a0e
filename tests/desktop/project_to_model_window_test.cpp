#include <QCheckBox>
#include <QRadioButton>
#include <QTableView>

#include "desktop_fixture.h"

namespace merivane::test {

namespace {

class ProjectToModelWindow : public DesktopTest {
 protected:
  ProjectToModelWindow() { MakePlan(); }

  // Opens the window on the tab of MPX files, with an answer to the question about the database.
  QWidget& OpenMpxTab(const std::function<void(QDialog&)>& step) {
    QWidget& form = OpenToModel();
    SelectTab(form, 1);
    Browse(form, "cmdInterimDB", plan, step);
    return form;
  }
  static void ChooseMerge(QDialog& dialog) {
    const QWidget& projects = User::Find(dialog, "comboInterimProject");
    const auto& merge = User::Get<QRadioButton>(dialog, "OptMerge");
    User::Find(dialog, "OptOverwrite").setFocus();
    for (const bool merges : {true, false, true}) {
      QTest::keyClick(QApplication::focusWidget(), merges ? Qt::Key_Down : Qt::Key_Up);
      EXPECT_TRUE(merge.isChecked() == merges && projects.isVisible() == merges);
    }
    EXPECT_TRUE(merge.hasFocus() && projects.isEnabled());
    User::Click(dialog, "CmdOK");  // refused: nothing is selected
    EXPECT_TRUE(dialog.isVisible());
    TakeProject(dialog);
  }
  static void TakeProject(QDialog& dialog) {
    User::Choose(dialog, "comboInterimProject");
    User::Click(dialog, "CmdOK");
  }
  // And is told what it lacks.
  QWidget& OpenForMerge() {
    QWidget& form = OpenMpxTab(ChooseMerge);
    EXPECT_THAT(Boxes(), ElementsAre("Please Select a Project to be merged."));
    return form;
  }

  void Finish(QWidget& form, const std::string& source) {
    Translate(form, {{"cmdBrowseMPX", source}, {"cmdBrowseText", text}});
  }
};

TEST_F(ProjectToModelWindow, WritesAModelFromAProjectOfADatabaseByClicksAlone) {
  RawDatabase(plan).Run("update MSP_PROJECTS set PROJ_NAME = 'Café €'");
  QWidget& form = OpenToModel();
  Browse(form, "cmdBrowseDatabase", folder.Write("wrong.mdb", "none"));
  EXPECT_THAT(Result(), HasSubstr("wrong.mdb can't be used: "));
  EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("is not a database")));
  Browse(form, "cmdBrowseText", text);
  Browse(form, "cmdBrowseDatabase", plan);
  EXPECT_EQ(User::Get<QComboBox>(form, "comboProject").itemText(0), QString::fromUtf8("Café €"));
  User::Choose(form, "comboProject");
  program.projectToModel.gInterimProjId = 7;  // as a database of the other tab settles it
  User::Choose(form, "comboProject");         // where that row is chosen already
  User::Click(form, "cmdOK");
  EXPECT_THAT(Result(), AllOf(StartsWith("5 tasks, "), EndsWith("; written: " + text)));
  EXPECT_THAT(ReadFile(text), HasSubstr("Scenario List\r\n"));
}

TEST_F(ProjectToModelWindow, AMergeTellsWhereTheDatabaseBeforeItIsAndWhatTheModelDoesNotGive) {
  Finish(OpenForMerge(), mpx);
  EXPECT_THAT(
      Result(),
      AllOf(HasSubstr("; written: " + text + ", " + plan + "; as it was before: " + plan + ".bak"),
            EndsWith("s between the plan that came in and what the merged model gives")));
  EXPECT_THAT(RowsOf(User::Find(window, "proofWindow"), "results", {0, 1, 3}).at(0),
              AllOf(ContainsRegex("^differs.[1-9]"), EndsWith(" The complete merge keeps it.")));
  Finish(OpenForMerge(), folder.Write("cut.mpx", "MPX,Merivane,4.0\r\n"));
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_THAT(Result(), HasSubstr("The merge was not finished: " + text +
                                  "; as it was before: " + plan + ".bak2; 1 message was shown"));
}

TEST_F(ProjectToModelWindow, ACancelledMergeLeavesTheModelAsItWas) {
  const std::string before = ReadFile(plan);
  for (const char* stage :
       {"Copying the database", "Reading the plan", "Merging the tasks", "Writing the scenarios"}) {
    SCOPED_TRACE(stage);
    QWidget& form = OpenForMerge();
    WhileRunning([&] { User::Click(window, "progressCancel"); }, stage);
    Finish(form, mpx);
    EXPECT_TRUE(ReadFile(plan) == before);
    EXPECT_EQ(ReadFile(text), "");
    EXPECT_FALSE(std::filesystem::exists(plan + ".bak"));
    EXPECT_EQ(Result(), "Cancelled, nothing written; " + plan + " is as it was before the run");
  }
}

TEST_F(ProjectToModelWindow, APickThatTakesLongKeepsTheWindowAliveAndCanBeCancelled) {
  const std::string access =
      folder.Write("access.mdb", std::string("\0\1\0\0Standard Jet DB\0", 20));
  QWidget& form = OpenToModel();
  Browse(form, "cmdBrowseDatabase", plan);
  const std::string before = ReadFile(plan);
  const auto filesBefore = NamesIn(folder.Path(""));
  const auto escape = [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); };
  std::string stage;
  int served = 0;
  int servedAtLastShow = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, &timer, [&] { ++served; });
  timer.start(0);
  desktop.ticksPerLook = 200;
  desktop.onProgress = [&](const RunProgress& progress) {
    stage = progress.stage;
    servedAtLastShow = std::exchange(served, 0);
    if (ShowsProgress()) escape(User::Find(window, "progress"));
  };
  qputenv("TMPDIR", folder.Path("").c_str());
  Browse(form, "cmdBrowseDatabase", access);
  qunsetenv("TMPDIR");
  EXPECT_EQ(stage, "Reading the Access database");
  EXPECT_GT(servedAtLastShow, 0);
  EXPECT_EQ(TextOf(form, "txtDatabase"), plan);
  EXPECT_EQ(User::Get<QComboBox>(form, "comboProject").count(), 1);
  SelectTab(form, 1);
  Browse(form, "cmdInterimDB", plan, escape);
  EXPECT_EQ(stage, "Copying the database");
  EXPECT_GT(servedAtLastShow, 0);
  EXPECT_EQ(TextOf(form, "txtInterimDB"), "");
  EXPECT_EQ(ReadFile(plan), before);
  EXPECT_EQ(NamesIn(folder.Path("")).size(), filesBefore.size());
}

TEST_F(ProjectToModelWindow, APreviewShowsTheChangesAndGoesOnToTheMerge) {
  QWidget& form = OpenForMerge();
  EXPECT_FALSE(User::Find(form, "cmdPreview").isEnabled());
  Browse(form, "cmdBrowseMPX", ChangedMpx());
  WhileRunning([&] { User::Click(window, "progressCancel"); }, "Merging the tasks");
  User::Click(form, "cmdPreview");
  EXPECT_EQ(window.findChild<QDialog*>("previewWindow"), nullptr);
  desktop.onProgress = {};
  Browse(form, "cmdBrowseText", text);
  const std::string before = ReadFile(plan);
  user.steps.emplace_back([](QDialog&) {});  // comes to the front, and stays open
  User::Click(form, "cmdPreview");
  QWidget& preview = User::Find(window, "previewWindow");
  auto& table = User::Get<QTableView>(preview, "results");
  EXPECT_THAT(RowsOf(preview, "results", {3}), ElementsAre("It was called 'Set up the desk'."));
  QTest::keyClick(&table, Qt::Key_F1);
  EXPECT_THAT(desktop.helpContexts, ElementsAre(7011));
  ASSERT_TRUE(QTest::qWaitForWindowActive(&preview));
  QTest::keyClick(&table, Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(QApplication::focusWidget(), "desk");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);  // ends the typing alone
  EXPECT_EQ(ReadFile(plan), before);
  WhileRunning([&] { EXPECT_EQ(window.findChild<QDialog*>("previewWindow"), nullptr); });
  QTest::keyClick(&table, Qt::Key_Return);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !form.isVisible(); }));
  EXPECT_THAT(Result(), HasSubstr("; written: " + text));
}

TEST_F(ProjectToModelWindow, ACompleteMergeIsChosenByABoxThatIsRememberedWhileTheProgramRuns) {
  const std::string changed =
      folder.Write("added.mpx", ReadFile(mpx) + "70,6,6,Clear up,1.00d,Yes,1,,\"5\"\r\n");
  const auto choose = [](bool wasOn) {
    return [=](QDialog& dialog) {
      auto& complete = User::Get<QCheckBox>(dialog, "chkComplete");
      EXPECT_FALSE(complete.isEnabled());
      User::Get<QRadioButton>(dialog, "OptMerge").click();
      EXPECT_TRUE(complete.isEnabled());
      EXPECT_EQ(complete.isChecked(), wasOn);
      if (!wasOn) User::Click(dialog, "chkComplete");
      TakeProject(dialog);
    };
  };
  Finish(OpenMpxTab(choose(false)), changed);
  EXPECT_THAT(ReadFile(text), HasSubstr("Clear up"));
  EXPECT_THAT(Result(), EndsWith(". The merged model gives the plan that came in."));
  EXPECT_EQ(window.findChild<QDialog*>("proofWindow"), nullptr);
  OpenMpxTab(choose(true));
}

TEST_F(ProjectToModelWindow, OverwriteBeginsAnew) {
  QWidget& form = OpenMpxTab([](QDialog& dialog) {
    User::Get<QRadioButton>(dialog, "OptOverwrite").click();
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  EXPECT_EQ(Result(), plan + " was emptied; the old one is " + plan + ".bak");
  Finish(form, mpx);
  EXPECT_THAT(Result(), HasSubstr("; written: " + text + ", " + plan));
}

}  // namespace
}  // namespace merivane::test
