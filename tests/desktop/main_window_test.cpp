#include <QAction>
#include <QFileDialog>
#include <QMenu>
#include <QScreen>
#include <set>

#include "desktop_fixture.h"
#include "user_settings.h"

namespace merivane::test {

namespace {

using MainWindowTest = DesktopTest;

TEST_F(MainWindowTest, F1OpensTheTopicOfTheNearestNumberAndOfTheMenuItemUnderTheKeyboard) {
  QTest::keyClick(&window, Qt::Key_F1);
  QWidget& form = OpenToProject();
  for (const char* name : {"txtDatabase", "cmdHelp2"}) {
    User::Find(form, name).setFocus();
    QTest::keyClick(&User::Find(form, name), Qt::Key_F1);
  }
  User::Click(form, "cmdHelp2");
  User::Click(Open("mnuAboutMerivane", "frmAbout"), "cmdTech");
  User::Click(Open("mnuPath", "frmOptions"), "cmdHelp4");
  QMenu* file = window.findChild<QAction*>("mnuFile")->menu();
  file->popup({10, 10});
  file->setActiveAction(window.findChild<QAction*>("mnuExit"));
  QTest::keyClick(file, Qt::Key_F1);
  EXPECT_FALSE(file->isVisible());
  EXPECT_THAT(desktop.helpContexts, ElementsAre(1000, 2000, 2001, 2001, 382, 4001, 1004));
}

TEST_F(MainWindowTest, PathsAreLookedUpEachTime) {
  for (const char* path : {"not installed.", "/opt/celvar"}) {
    QWidget& paths = Open("mnuPath", "frmOptions");
    EXPECT_EQ(RowsOf(paths, "listPaths", {0}).at(1), std::string(18, ' ') + path);
    User::Click(paths, "cmdOK");
    desktop.registry[kCelvarKey] = std::string("/opt/celvar\0", 12);
  }
}

std::string NameOf(const QWidget* widget) {
  for (; widget != nullptr; widget = widget->parentWidget()) {
    const QString name = widget->objectName();
    if (!name.isEmpty() && !name.startsWith("qt_")) return name.toStdString();
  }
  return "";
}

// Names of the controls that Tab reaches, from the first one until it comes round.
std::string TabOrder(QWidget& form) {
  form.window()->activateWindow();
  auto* first = form.findChild<QWidget*>("txtCelvarFilename");
  first->setFocus();
  std::string order;
  constexpr int kMost = 40;
  for (int i = 0; i < kMost && (i == 0 || QApplication::focusWidget() != first); ++i) {
    order += NameOf(QApplication::focusWidget()) + " ";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  return order;
}

TEST_F(MainWindowTest, TheKeyboardGoesThroughTheControlsOfEachTabInOrder) {
  MakePlan();
  QWidget& out = OpenToProject();
  QWidget& back = OpenToModel();
  Browse(back, "cmdBrowseDatabase", plan);
  const auto look = [](QWidget& form, int tab, const std::string& order) {
    SelectTab(form, tab);
    EXPECT_EQ(TabOrder(form), "txtCelvarFilename cmdBrowseText " + order);
  };
  const std::string last = "CkLaunchMsprojApp cmdOK cmdCancel cmdHelp2 ";
  look(out, 0, "cmdCheck SSTabGenerateOpt txtDatabase BrowsedbBt " + last);
  look(out, 1,
       "cmdCheck SSTabGenerateOpt txtDatabase_mpx BrowsedbBt_mpx txtMpx cmdBrowseMPX " + last);
  const std::string lastBack = "optLaunchCelvar cmdOK cmdCancel cmdHelp3 ";
  look(back, 0, "SSTabInput txtDatabase cmdBrowseDatabase comboProject " + lastBack);
  look(back, 1, "SSTabInput cmdBrowseMPX txtInterimDB cmdInterimDB " + lastBack);
}

TEST_F(MainWindowTest, OkTellsWhatIsMissingInEachTab) {
  MakePlan();
  QWidget& out = OpenToProject();
  QWidget& back = OpenToModel();
  EXPECT_FALSE(User::Find(back, "comboProject").isEnabled());
  const auto press = [this](QWidget& form, int tab, const std::string& told) {
    SelectTab(form, tab);
    QTest::keyClick(&User::Find(form, "txtCelvarFilename"), Qt::Key_Return);
    EXPECT_THAT(Boxes(), ElementsAre(told));
  };
  press(out, 0, "Please Select Source Celvar Text Filename");
  Browse(out, "cmdBrowseText", "/a.txt");
  press(out, 0, "Please Select MS Project 2000 Database name");
  press(out, 1, "Please Select Mpx Output Filename.");
  press(out, 2, "Please Select Xml Output Filename.");
  Browse(out, "cmdBrowseXML", "/a.xml");
  press(out, 2, "Please Give an interim Database Name.");
  Browse(out, "cmdBrowseMPX", "/a.mpx");
  press(out, 1, "Please Give an interim Database Name.");
  press(back, 1, "Please Select a MPX txt file");
  press(back, 2, "Please Select a XML file");
  Browse(back, "cmdBrowseMPX", mpx);
  Browse(back, "cmdBrowseXML", "/a.xml");
  for (const auto& [tab, box] : {std::pair{1, "txtInterimDB"}, {2, "txtInterimDB_xml"}}) {
    press(back, tab, "Please Give an Interim Access Database Filename");
    QTest::keyClicks(&User::Find(back, box), "typed.mdb");
    press(back, tab, "Please Select Target Celvar Text Filename.");
  }
  press(back, 0, "Please Select MS Project 2000 Database");
  Browse(back, "cmdBrowseDatabase", plan);
  press(back, 0, "Please Select Project Name");
  User::Choose(back, "comboProject");
  press(back, 0, "Please Select Target Celvar Text Filename");
  QTest::keyClicks(&User::Find(back, "txtCelvarFilename"), "typed.txt");
  press(back, 1, "Object variable or With block variable not set");
  EXPECT_THAT(user.advice.back(), HasSubstr("a name that is only typed is not opened"));
  std::string kinds;  // of the dialogs, MakePlan's first
  for (const FileDialog& dialog : names.asked) kinds += dialog.newName ? "new " : "old ";
  EXPECT_EQ(kinds, "old new new old new new old old old ");
  EXPECT_TRUE(out.isVisible());
}

TEST_F(MainWindowTest, EveryControlHasANameForScreenReaders) {
  for (QWidget* form : {&OpenToProject(), &OpenToModel()}) {
    std::set<QString> spoken;
    const auto boxes = form->findChildren<QLineEdit*>();
    for (const QLineEdit* box : boxes) spoken.insert(box->accessibleName());
    EXPECT_EQ(spoken.size(), static_cast<std::size_t>(boxes.size()));
  }
  Open("mnuPath", "frmOptions");
  for (const QWidget* control : window.findChildren<QWidget*>()) {
    if (control->focusPolicy() == Qt::NoFocus || !control->isVisible()) continue;
    const QString name = control->objectName();
    if (name.isEmpty() || name.startsWith("qt_") || name == "formArea") continue;
    EXPECT_FALSE(control->accessibleName().isEmpty()) << name.toStdString();
  }
}

TEST_F(MainWindowTest, ExitAndTheFrameEndTheProgramOnce) {
  Trigger(window, "mnuExit");
  EXPECT_EQ(ends, 1);
  window.close();
  EXPECT_EQ(ends, 1);
}

TEST_F(MainWindowTest, ClosingTheFrameDuringTheSplashInTheMiddleEndsTheStart) {
  const QRect screen = window.screen()->availableGeometry();
  EXPECT_TRUE(screen.size().expandedTo(window.frameGeometry().size()) == screen.size());
  window.move(200, 100);
  QTimer::singleShot(20, &window, [&] {
    const QWidget& splash = User::Find(window, "frmSplash");
    EXPECT_TRUE(splash.isVisible());
    EXPECT_EQ(splash.geometry().center(), screen.center());
    window.close();
  });
  desktop.Run([this] { main.Start(); });
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(main.HelpFile, "");
}

TEST_F(MainWindowTest, AModelTextDroppedOnItOpensAndAnythingElseIsToldWhereItGoes) {
  DropAt(window, {5, 200}, {"/plans/a.mpx"});
  DropAt(window, {5, 200}, {"/models/a.txt", "/models/b.txt"});
  EXPECT_FALSE(main.modelToProject.IsLoaded());
  DropAt(window, {5, 200}, {"/models/a.TXT"});
  EXPECT_EQ(main.modelToProject.txtCelvarFilename.text, Native("/models/a.TXT"));
  EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("can be dropped on a dialog of the menu File"),
                                   "Please drop one file at a time."));
}

TEST_F(MainWindowTest, ALongMessageIsShownWhole) {
  const std::string text(3000, 'x');
  QString whole;
  QTimer::singleShot(0, &window, [&] {
    whole = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())->detailedText();
  });
  desktop.Run([&] { desktop.ShowMessage({text}); });
  EXPECT_EQ(whole.remove(QChar(0x200B)).toStdString(), text);
  EXPECT_LT(Boxes().front().size(), 1700U);
}

TEST_F(MainWindowTest, AnUnguardedFailureIsShownAndTheProgramGoesOn) {
  desktop.Run([] { throw RunTimeError(kTypeMismatch); });
  desktop.Run([] { throw std::runtime_error("out of\nsorts"); });
  EXPECT_THAT(Boxes(), ElementsAre("Type mismatch", "out of\nsorts"));
  EXPECT_EQ(ends, 0);
}

TEST_F(MainWindowTest, AMenuItemBringsItsDialogForwardAsItWas) {
  QWidget& form = OpenToProject();
  QWidget& frame = *form.parentWidget();
  frame.showMinimized();
  OpenToModel();
  OpenToProject();
  EXPECT_FALSE(frame.isMinimized());
  EXPECT_TRUE(form.isVisible() && form.isAncestorOf(QApplication::focusWidget()));
  const QSize size = frame.size();
  for (const bool maximised : {true, false}) {
    maximised ? frame.showMaximized() : frame.showNormal();
    QTest::keyClick(&form, Qt::Key_Escape);
    OpenToProject();
    EXPECT_EQ(frame.isMaximized(), maximised);
    EXPECT_EQ(frame.width() >= frame.parentWidget()->width(), maximised);
  }
  EXPECT_EQ(frame.size(), size);
}

TEST_F(MainWindowTest, AWindowComesBackWhereItStoodAndWithinTheScreen) {
  const QSize screen = window.screen()->availableSize();
  const auto make = [](const QSize& usual) {
    auto made = std::make_unique<QWidget>();
    made->setObjectName("shown");
    new WindowPlace(*made, usual);
    return made;
  };
  EXPECT_EQ(make(screen * 2)->size(), screen * 9 / 10);
  for (const QSize& size : {QSize(300, 200), screen * 2}) {
    const auto shown = make({500, 400});
    shown->show();
    shown->resize(size);
    shown->move(40, 50);
    shown->hide();
    EXPECT_EQ(make({500, 400})->size(), size.boundedTo(screen * 9 / 10));
  }
}

TEST_F(MainWindowTest, TheFileDialogTakesNewNamesWithoutAQuestionInTheLastFolderOfTheirKind) {
  const std::string models = folder.Path("models");
  const std::string plans = folder.Path("plans");
  for (const std::string& place : {models, plans}) std::filesystem::create_directory(place);
  folder.Write("models/old.txt", "stands");
  DialogFileNames first;
  DialogFileNames second;
  const auto ask = [&](DialogFileNames& from, const FileDialog& dialog, const std::string& start,
                       const char* name) {
    user.steps.emplace_back([&](QDialog& shown) {
      auto& picker = dynamic_cast<QFileDialog&>(shown);
      EXPECT_EQ(picker.windowTitle(), "Pick");
      EXPECT_EQ(picker.acceptMode() == QFileDialog::AcceptSave, dialog.newName);
      EXPECT_EQ(picker.directory(), QDir(QString::fromStdString(start)));
      User::Get<QLineEdit>(picker, "fileNameEdit").setText(name);
      QTest::keyClick(&User::Find(picker, "fileNameEdit"), Qt::Key_Return);
    });
    EXPECT_EQ(from.Ask(dialog, &window).toStdString(),
              Native(start + "/" + name + dialog.filter.substr(dialog.filter.size() - 4)));
  };
  const char* texts = "Text (*.txt)|*.txt";
  first.Remember(QString::fromStdString(models + "/typed.txt"));
  first.Remember("/none/typed.txt");
  ask(first, {texts, "Pick", true}, models, "old");
  first.Remember(QString::fromStdString(plans + "/typed.MDB"));
  ask(second, {texts, "Pick"}, models, "new");
  ask(second, {"Plans (*.mdb)|*.mdb", "Pick"}, plans, "later");
  ask(second, {texts, "Pick", true, plans + "/a.mdb"}, plans, "last");
  std::filesystem::remove(plans);
  EXPECT_EQ(LastFolder("mdb"), "");
}

}  // namespace
}  // namespace merivane::test
