#include <QCheckBox>
#include <QComboBox>
#include <QRadioButton>
#include <QTableView>
#include <QTimer>
#include <filesystem>
#include <iterator>
#include <utility>

#include "changed_text.h"
#include "desktop_fixture.h"

namespace merivane::test {

namespace {

class ProjectToModelWindow : public DesktopTest {
 protected:
  ProjectToModelWindow() { MakePlan(); }

  // Opens the window on the tab of MPX files, with an answer to the question about the database.
  QWidget& OpenMpxTab(const std::function<void(QDialog&)>& step) {
    QWidget& form = OpenToModel();
    SelectTab(form, "SSTabInput", 1);
    user.steps.push_back(step);
    Browse(form, "cmdInterimDB", plan);
    return form;
  }
  static void ChooseMerge(QDialog& dialog) {
    auto& projects = User::Get<QComboBox>(dialog, "comboInterimProject");
    EXPECT_FALSE(projects.isVisible());
    User::Get<QRadioButton>(dialog, "OptMerge").click();
    EXPECT_TRUE(projects.isVisible() && projects.isEnabled());
    User::Click(dialog, "CmdOK");  // refused: nothing is selected
    EXPECT_TRUE(dialog.isVisible());
    User::Choose(dialog, "comboInterimProject", 0);
    User::Click(dialog, "CmdOK");
  }

  void Finish(QWidget& form, const std::string& source) {
    Browse(form, "cmdBrowseMPX", source);
    Browse(form, "cmdBrowseText", text);
    User::Click(form, "cmdOK");
  }

  static std::ptrdiff_t CountFiles(const std::filesystem::path& place) {
    const std::filesystem::directory_iterator files(place);
    return std::distance(begin(files), end(files));
  }
};

TEST_F(ProjectToModelWindow, OkTellsWhatIsMissingTabByTab) {
  QWidget& form = OpenToModel();
  EXPECT_FALSE(User::Find(form, "txtDatabase").isEnabled());
  EXPECT_FALSE(User::Find(form, "comboProject").isEnabled());
  SelectTab(form, "SSTabInput", 1);
  User::Click(form, "cmdOK");
  Browse(form, "cmdBrowseMPX", mpx);
  User::Click(form, "cmdOK");
  QTest::keyClicks(&User::Find(form, "txtInterimDB"), "typed.mdb");
  User::Click(form, "cmdOK");
  SelectTab(form, "SSTabInput", 0);
  User::Click(form, "cmdOK");
  Browse(form, "cmdBrowseDatabase", plan);
  User::Click(form, "cmdOK");
  User::Choose(form, "comboProject", 0);
  User::Click(form, "cmdOK");
  SelectTab(form, "SSTabInput", 1);
  QTest::keyClicks(&User::Find(form, "txtCelvarFilename"), "typed.txt");
  User::Click(form, "optLaunchCelvar");
  User::Click(form, "cmdOK");
  EXPECT_THAT(user.advice.back(), HasSubstr("a name that is only typed is not opened"));
  EXPECT_THAT(
      user.boxes,
      ElementsAre("Please Select a MPX txt file", "Please Give an Interim Access Database Filename",
                  "Please Select Target Celvar Text Filename.",
                  "Please Select MS Project 2000 Database", "Please Select Project Name",
                  "Please Select Target Celvar Text Filename", "Vorn Celvar not installed.",
                  "Object variable or With block variable not set"));
}

TEST_F(ProjectToModelWindow, WritesAModelFromADatabaseByClicksAlone) {
  QWidget& form = OpenToModel();
  Browse(form, "cmdBrowseText", text);
  Browse(form, "cmdBrowseDatabase", plan);
  User::Choose(form, "comboProject", 0);
  User::Click(form, "cmdOK");
  EXPECT_TRUE(user.boxes.empty());
  EXPECT_FALSE(form.isVisible());
  EXPECT_THAT(Result(), AllOf(StartsWith("5 tasks, "), EndsWith("; written: " + text)));
  EXPECT_THAT(ReadFile(text), HasSubstr("Scenario List\r\n"));
}

TEST_F(ProjectToModelWindow, AChoiceCountsAlsoWhereTheRowIsChosenAlready) {
  QWidget& form = OpenToModel();
  Browse(form, "cmdBrowseDatabase", plan);
  const auto& chosen = program.projectToModel.gInterimProjId;
  User::Choose(form, "comboProject", 0);
  EXPECT_EQ(chosen, 1);
  program.projectToModel.gInterimProjId = 7;  // as a database of the other tab settles it
  User::Choose(form, "comboProject", 0);
  EXPECT_EQ(chosen, 1);
}

TEST_F(ProjectToModelWindow, TheArrowKeysChooseBetweenOverwriteAndMerge) {
  const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
  OpenMpxTab([&](QDialog& dialog) {
    const auto& merge = User::Get<QRadioButton>(dialog, "OptMerge");
    User::Find(dialog, "OptOverwrite").setFocus();
    for (const bool merges : {true, false, true}) {
      press(merges ? Qt::Key_Down : Qt::Key_Up);
      EXPECT_EQ(merge.isChecked(), merges);
      EXPECT_EQ(User::Find(dialog, "comboInterimProject").isVisible(), merges);
    }
    EXPECT_TRUE(merge.hasFocus());
    User::Choose(dialog, "comboInterimProject", 0);
    User::Click(dialog, "CmdOK");
  });
  EXPECT_TRUE(program.projectToModel.gRoundTripMerge);
  EXPECT_EQ(program.projectToModel.gInterimProjId, 1);
}

TEST_F(ProjectToModelWindow, AMergeTellsWhereTheDatabaseBeforeItIs) {
  const std::string broken = folder.Write("cut.mpx", "MPX,Merivane,4.0\r\n");
  const std::pair<std::string, std::string> cases[] = {
      {mpx, "; written: " + text + ", " + plan + "; as it was before: " + plan + ".bak"},
      {broken, "The merge was not finished: " + text + "; as it was before: " + plan +
                   ".bak2; 1 message was shown"}};
  for (const auto& [source, result] : cases) {
    QWidget& form = OpenMpxTab(ChooseMerge);
    Finish(form, source);
    EXPECT_EQ(user.boxes.front(), "Please Select a Project to be merged.");
    EXPECT_THAT(Result(), HasSubstr(result));
  }
}

TEST_F(ProjectToModelWindow, AMergeTellsWhatTheMergedModelDoesNotGive) {
  const std::string told = "s between the plan that came in and what the merged model gives";
  Finish(OpenMpxTab(ChooseMerge), mpx);
  EXPECT_THAT(Result(), EndsWith(told));
  QWidget& proof = User::Find(window, "proofWindow");
  EXPECT_TRUE(window.isEnabled());  // it goes on
  const QAbstractItemModel& rows = *User::Get<QTableView>(proof, "results").model();
  ASSERT_GT(rows.rowCount(), 0);
  EXPECT_EQ(rows.index(0, 0).data().toString(), "differs");
  EXPECT_GT(rows.index(0, 1).data().toInt(), 0);
  EXPECT_TRUE(rows.index(0, 3).data().toString().endsWith(" The complete merge keeps it."));
  EXPECT_TRUE(user.boxes.size() == 1U) << user.boxes.back();  // of the choice
}

TEST_F(ProjectToModelWindow, ACancelledMergeLeavesTheModelAsItWas) {
  const auto marked = [this] {
    Connection connection(program.workspace);
    connection.Open(ConnectionText(plan), OpenMode::kReadOnly);
    return CountRows(connection, "MSP_TASKS", "where KV7_PROCOCC_Brought_Back = 1") +
           CountRows(connection, "ProjectAct");
  };
  ASSERT_EQ(marked(), 0U);
  for (const char* stage :
       {"Copying the database", "Reading the plan", "Merging the tasks", "Writing the scenarios"}) {
    SCOPED_TRACE(stage);
    QWidget& form = OpenMpxTab(ChooseMerge);
    Browse(form, "cmdBrowseMPX", mpx);
    Browse(form, "cmdBrowseText", text);
    WhileRunning(
        [&] {
          if (ShowsProgress()) QTest::keyClick(&User::Find(window, "progress"), Qt::Key_Escape);
        },
        stage);
    User::Click(form, "cmdOK");
    EXPECT_EQ(marked(), 0U);
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
  const auto filesBefore = CountFiles(folder.Path(""));
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
    if (ShowsProgress()) QTest::keyClick(&User::Find(window, "progress"), Qt::Key_Escape);
  };
  qputenv("TMPDIR", folder.Path("").c_str());
  Browse(form, "cmdBrowseDatabase", access);
  qunsetenv("TMPDIR");
  EXPECT_EQ(stage, "Reading the Access database");
  EXPECT_GT(servedAtLastShow, 0);
  EXPECT_EQ(TextOf(form, "txtDatabase"), plan);
  EXPECT_EQ(User::Get<QComboBox>(form, "comboProject").count(), 1);
  SelectTab(form, "SSTabInput", 1);
  user.steps.emplace_back([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  Browse(form, "cmdInterimDB", plan);
  EXPECT_EQ(stage, "Copying the database");
  EXPECT_GT(servedAtLastShow, 0);
  EXPECT_EQ(TextOf(form, "txtInterimDB"), "");
  EXPECT_EQ(ReadFile(plan), before);
  EXPECT_EQ(CountFiles(folder.Path("")), filesBefore);
  EXPECT_TRUE(user.boxes.empty()) << user.boxes.front();
}

TEST_F(ProjectToModelWindow, APreviewShowsTheChangesAndGoesOnToTheMerge) {
  QWidget& form = OpenMpxTab(ChooseMerge);
  EXPECT_FALSE(User::Find(form, "cmdPreview").isEnabled());
  const std::string changed =
      folder.Write("changed.mpx", With(ReadFile(mpx), {{"Set up the desk", "Build the desk"}}));
  Browse(form, "cmdBrowseMPX", changed);
  Browse(form, "cmdBrowseText", text);
  const std::string before = ReadFile(plan);
  user.steps.emplace_back([](QDialog&) {});  // comes to the front, and stays open
  User::Click(form, "cmdPreview");
  QWidget& preview = User::Find(window, "previewWindow");
  auto& table = User::Get<QTableView>(preview, "results");
  const QAbstractItemModel& rows = *table.model();
  ASSERT_EQ(rows.rowCount(), 1);
  EXPECT_EQ(rows.index(0, 3).data().toString(), "It was called 'Set up the desk'.");
  EXPECT_EQ(ReadFile(plan), before);
  QTest::keyClick(&table, Qt::Key_F1);
  EXPECT_THAT(desktop.helpContexts, ElementsAre(7011));
  ASSERT_TRUE(QTest::qWaitForWindowActive(&preview));
  QTest::keyClick(&table, Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(QApplication::focusWidget(), "desk");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);  // ends the typing alone
  EXPECT_EQ(ReadFile(plan), before);
  int shows = 0;
  WhileRunning([&] {
    ++shows;
    EXPECT_EQ(window.findChild<QDialog*>("previewWindow"), nullptr);
  });
  QTest::keyClick(&table, Qt::Key_Return);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !form.isVisible(); }));
  EXPECT_GT(shows, 1);
  EXPECT_THAT(Result(), HasSubstr("; written: " + text));
  EXPECT_THAT(ReadFile(text), HasSubstr("Build the desk"));
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
      User::Choose(dialog, "comboInterimProject", 0);
      User::Click(dialog, "CmdOK");
    };
  };
  QWidget& form = OpenMpxTab(choose(false));
  Finish(form, changed);
  EXPECT_FALSE(form.isVisible());
  EXPECT_THAT(ReadFile(text), HasSubstr("Clear up"));
  EXPECT_THAT(Result(), EndsWith(". The merged model gives the plan that came in."));
  EXPECT_EQ(window.findChild<QDialog*>("proofWindow"), nullptr);
  OpenMpxTab(choose(true));
}

TEST_F(ProjectToModelWindow, APreviewThatTakesLongCanBeCancelled) {
  QWidget& form = OpenMpxTab(ChooseMerge);
  Browse(form, "cmdBrowseMPX", mpx);
  WhileRunning([&] { User::Click(window, "progressCancel"); }, "Merging the tasks");
  User::Click(form, "cmdPreview");
  EXPECT_EQ(window.findChild<QDialog*>("previewWindow"), nullptr);
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(user.boxes.size(), 1U);  // of the choice
}

TEST_F(ProjectToModelWindow, ADatabaseThatIsLockedOrEmptiedIsTold) {
  program.workspace.patience = kBrief;
  QWidget& form = OpenMpxTab(ChooseMerge);
  {
    RawDatabase other(plan);
    other.Run("begin exclusive");
    Finish(form, mpx);
  }
  EXPECT_THAT(user.boxes.back(), HasSubstr(plan + "' is in use by another program"));
  ASSERT_TRUE(form.isVisible());
  EXPECT_EQ(TextOf(form, "txtMPX"), mpx);
  User::Click(form, "cmdOK");
  EXPECT_THAT(Result(), HasSubstr("; written: " + text));

  const std::string merged = ReadFile(plan);
  QWidget& again = OpenMpxTab([](QDialog& dialog) {
    User::Get<QRadioButton>(dialog, "OptOverwrite").click();
    User::Click(dialog, "CmdOK");
  });
  EXPECT_EQ(Result(), plan + " was emptied; the old one is " + plan + ".bak2");
  User::Click(window, "undoPick");
  EXPECT_EQ(ReadFile(plan), merged);
  EXPECT_EQ(TextOf(again, "txtInterimDB"), "");
  SelectTab(again, "SSTabInput", 0);
  Browse(again, "cmdBrowseDatabase", folder.Write("wrong.mdb", "none"));
  EXPECT_THAT(Result(), HasSubstr("wrong.mdb can't be used: "));
}

TEST_F(ProjectToModelWindow, OverwriteAndCancelBothBeginAnew) {
  const std::function<void(QDialog&)> steps[] = {
      [](QDialog& dialog) {
        User::Get<QRadioButton>(dialog, "OptOverwrite").click();
        QTest::keyClick(&dialog, Qt::Key_Return);
      },
      [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }};
  for (const auto& step : steps) {
    const std::string before = ReadFile(plan);
    QWidget& form = OpenMpxTab(step);
    EXPECT_NE(ReadFile(plan), before);
    Finish(form, mpx);
    EXPECT_TRUE(user.boxes.empty()) << user.boxes.front();
    EXPECT_THAT(Result(), HasSubstr("; written: " + text + ", " + plan));
  }
}

TEST_F(ProjectToModelWindow, TheTabsOfXmlAskForTheirNames) {
  const std::string xml = folder.Write("plan.xml", "");
  QWidget& out = OpenToProject();
  SelectTab(out, "SSTabGenerateOpt", 2);
  User::Click(out, "cmdOK");
  Browse(out, "cmdBrowseText", MERIVANE_SAMPLES "/onboarding.txt");
  User::Click(out, "cmdOK");
  Browse(out, "cmdBrowseXML", mpx);
  EXPECT_EQ(TextOf(out, "txtXml"), "");
  Browse(out, "cmdBrowseXML", xml);
  User::Click(out, "cmdOK");
  QWidget& back = OpenToModel();
  SelectTab(back, "SSTabInput", 2);
  User::Click(back, "cmdOK");
  Browse(back, "cmdBrowseXML", xml);
  EXPECT_TRUE(User::Find(back, "txtXML").isEnabled());
  User::Click(back, "cmdOK");
  user.steps.emplace_back(ChooseMerge);
  Browse(back, "cmdInterimDB_xml", plan);
  EXPECT_EQ(TextOf(back, "txtInterimDB"), "");
  User::Click(back, "cmdOK");
  EXPECT_THAT(
      user.boxes,
      ElementsAre("Please Select Source Celvar Text Filename", "Please Select Xml Output Filename.",
                  "Incorrect File Type", "Please Give an interim Database Name.",
                  "Please Select a XML file", "Please Give an Interim Access Database Filename",
                  "Please Select a Project to be merged.",
                  "Please Select Target Celvar Text Filename."));
}

TEST_F(ProjectToModelWindow, ADisabledFieldTakesADroppedFile) {
  QWidget& form = OpenToModel();
  SelectTab(form, "SSTabInput", 1);
  ASSERT_FALSE(User::Find(form, "txtMPX").isEnabled());
  EXPECT_TRUE(Drop(form, "txtMPX", "/plans/a.mpx"));
  EXPECT_EQ(TextOf(form, "txtMPX"), Native("/plans/a.mpx"));
  EXPECT_TRUE(Drop(form, "cmdOK", "/plans/a.xml"));
  EXPECT_EQ(TextOf(form, "txtXML"), Native("/plans/a.xml"));
  EXPECT_TRUE(User::Find(form, "txtMPX").isEnabled());
}

TEST_F(ProjectToModelWindow, AProjectNameShowsItsLetters) {
  {
    Connection connection(program.workspace);
    connection.Open(ConnectionText(plan));
    Recordset projects;
    projects.OpenDynamic("select * from MSP_PROJECTS", &connection);
    projects.SetField("PROJ_NAME", "Caf\xE9 \x80");
    projects.Update();
    projects.Close();
  }
  QWidget& form = OpenToModel();
  Browse(form, "cmdBrowseDatabase", plan);
  EXPECT_EQ(User::Get<QComboBox>(form, "comboProject").itemText(0), QString::fromUtf8("Café €"));
}

}  // namespace
}  // namespace merivane::test
