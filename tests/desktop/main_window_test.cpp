#include <QAction>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <set>

#include "desktop_fixture.h"
#include "user_settings.h"

namespace merivane::test {

namespace {

using MainWindowTest = DesktopTest;

TEST_F(MainWindowTest, F1OpensTheTopicOfTheNearestNumber) {
  QTest::keyClick(&window, Qt::Key_F1);
  QWidget& form = OpenToProject();
  User::Find(form, "txtDatabase").setFocus();
  QTest::keyClick(&User::Find(form, "txtDatabase"), Qt::Key_F1);
  User::Find(form, "cmdHelp2").setFocus();
  QTest::keyClick(&User::Find(form, "cmdHelp2"), Qt::Key_F1);
  User::Click(form, "cmdHelp2");
  User::Click(Open("mnuAboutMerivane", "frmAbout"), "cmdTech");
  User::Click(Open("mnuPath", "frmOptions"), "cmdHelp4");
  EXPECT_THAT(desktop.helpContexts, ElementsAre(1000, 2000, 2001, 2001, 382, 4001));
}

TEST_F(MainWindowTest, F1OpensTheTopicOfTheMenuItemUnderTheKeyboard) {
  QMenu* file = window.findChild<QAction*>("mnuFile")->menu();
  file->popup({10, 10});
  file->setActiveAction(window.findChild<QAction*>("mnuExit"));
  QTest::keyClick(file, Qt::Key_F1);
  EXPECT_THAT(desktop.helpContexts, ElementsAre(1004));
  EXPECT_FALSE(file->isVisible());
}

TEST_F(MainWindowTest, PathsAreListedUnderTheirHeadings) {
  desktop.registry[kCelvarKey] = std::string("/opt/celvar\0", 12);
  desktop.registry[kProject98Key] = "\"C:\\Old P\\p.exe\" \"%1\"";
  QWidget& paths = Open("mnuPath", "frmOptions");
  auto& list = User::Get<QListWidget>(paths, "listPaths");
  std::string lines;
  for (int row = 0; row < list.count(); ++row) lines += list.item(row)->text().toStdString() + "\n";
  EXPECT_EQ(lines, "Vorn Celvar7 Path: \n" + std::string(18, ' ') + "/opt/celvar\n" +
                       "MS Project 2000 Path: \n" + std::string(17, ' ') + "not installed.\n" +
                       "MS Project 98 Path: \n" + std::string(17, ' ') + "\"C:\\Old P\\p.exe\" \n");
  User::Click(paths, "cmdOK");
  desktop.registry.clear();
  Open("mnuPath", "frmOptions");
  EXPECT_EQ(list.item(1)->text(), QString(18, ' ') + "not installed.");
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
  const struct {
    QWidget& form;
    const char* tabs;
    int tab;
    const char* order;  // between the model's text and the boxes that every tab has
  } rows[] = {
      {out, "SSTabGenerateOpt", 0, "txtDatabase BrowsedbBt CkLaunchMsprojApp "},
      {out, "SSTabGenerateOpt", 1,
       "txtDatabase_mpx BrowsedbBt_mpx txtMpx cmdBrowseMPX CkLaunchMsprojApp "},
      {back, "SSTabInput", 0, "txtDatabase cmdBrowseDatabase comboProject optLaunchCelvar "},
      {back, "SSTabInput", 1, "cmdBrowseMPX txtInterimDB cmdInterimDB optLaunchCelvar "}};
  for (const auto& row : rows) {
    SelectTab(row.form, row.tabs, row.tab);
    EXPECT_EQ(TabOrder(row.form),
              std::string("txtCelvarFilename cmdBrowseText ") +
                  (&row.form == &out ? "cmdCheck SSTabGenerateOpt " : "SSTabInput ") + row.order +
                  (&row.form == &out ? "cmdOK cmdCancel cmdHelp2 " : "cmdOK cmdCancel cmdHelp3 "));
  }
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
  window.findChild<QAction*>("mnuExit")->trigger();
  EXPECT_EQ(ends, 1);
  window.close();
  EXPECT_EQ(ends, 1);
}

TEST_F(MainWindowTest, ClosingTheFrameDuringTheSplashEndsTheStart) {
  QTimer::singleShot(20, &window, [this] {
    EXPECT_TRUE(User::Find(window, "frmSplash").isVisible());
    window.close();
  });
  desktop.Run([this] { main.Start(); });
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(main.HelpFile, "");
}

TEST_F(MainWindowTest, AModelTextDroppedOnItOpensAndAnythingElseIsToldWhereItGoes) {
  EXPECT_TRUE(DropAt(window, {5, 200}, {"/plans/a.mpx"}));
  QTest::qWait(10);
  EXPECT_TRUE(DropAt(window, {5, 200}, {"/models/a.txt", "/models/b.txt"}));
  QTest::qWait(10);
  EXPECT_FALSE(main.modelToProject.IsLoaded());
  EXPECT_TRUE(DropAt(window, {5, 200}, {"/models/a.TXT"}));
  QTest::qWait(10);
  EXPECT_TRUE(main.modelToProject.IsVisible());
  EXPECT_EQ(main.modelToProject.txtCelvarFilename.text, Native("/models/a.TXT"));
  EXPECT_THAT(user.boxes, ElementsAre(HasSubstr("can be dropped on a dialog of the menu File"),
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
  EXPECT_LT(user.boxes.front().size(), 1700U);
}

TEST_F(MainWindowTest, AnUnguardedFailureIsShownAndTheProgramGoesOn) {
  desktop.Run([] { throw RunTimeError(kTypeMismatch); });
  desktop.Run([] { throw std::runtime_error("out of\nsorts"); });
  window.findChild<QAction*>("mnuAboutVorn")->trigger();
  EXPECT_THAT(user.boxes, ElementsAre("Type mismatch", "out of\nsorts",
                                      std::string("Cannot launch the default browser or site ") +
                                          frmMain::HomePage() + " not found."));
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
    SCOPED_TRACE(maximised);
    maximised ? frame.showMaximized() : frame.showNormal();
    QTest::keyClick(&form, Qt::Key_Escape);
    OpenToProject();
    EXPECT_EQ(frame.isMaximized(), maximised);
    EXPECT_EQ(frame.width() >= frame.parentWidget()->width(), maximised);
  }
  EXPECT_EQ(frame.size(), size);
}

TEST_F(MainWindowTest, FitsTheScreenWithTheSplashInItsMiddle) {
  const QRect screen = window.screen()->availableGeometry();
  EXPECT_TRUE(screen.size().expandedTo(window.frameGeometry().size()) == screen.size());
  window.move(200, 100);
  main.splash.Show();
  EXPECT_EQ(User::Find(window, "frmSplash").geometry().center(), screen.center());
  main.splash.Unload();
}

TEST_F(MainWindowTest, AWindowComesBackWhereItStoodAndWithinTheScreen) {
  const QSize screen = window.screen()->availableSize();
  for (const QSize& size : {QSize(300, 200), screen * 2}) {
    QWidget shown;
    shown.setObjectName("shown");
    new WindowPlace(shown, {500, 400});
    shown.show();
    shown.resize(size);
    shown.move(40, 50);
    shown.hide();
    QWidget again;
    again.setObjectName("shown");
    new WindowPlace(again, {500, 400});
    EXPECT_EQ(again.size(), size.boundedTo(screen * 9 / 10));
  }
  QWidget first;
  new WindowPlace(first, screen * 2);
  EXPECT_EQ(first.size(), screen * 9 / 10);
}

TEST_F(MainWindowTest, ABrowseButtonTellsItsNameAndWhetherTheFileMayBeNew) {
  struct Button {
    int tab;
    const char* name;
    const char* box;
    bool newName;
  };
  const auto look = [this](QWidget& form, const char* tabs, const std::vector<Button>& buttons) {
    for (const Button& button : buttons) {
      SelectTab(form, tabs, button.tab);
      User::Get<QLineEdit>(form, button.box).setText(button.name);
      User::Click(form, button.name);
      EXPECT_EQ(names.asked.back().newName, button.newName) << button.name;
      EXPECT_EQ(names.asked.back().current, button.name);
    }
  };
  look(OpenToProject(), "SSTabGenerateOpt",
       {{0, "cmdBrowseText", "txtCelvarFilename", false},
        {0, "BrowsedbBt", "txtDatabase", true},
        {1, "BrowsedbBt_mpx", "txtDatabase_mpx", true},
        {1, "cmdBrowseMPX", "txtMpx", true}});
  look(OpenToModel(), "SSTabInput",
       {{0, "cmdBrowseText", "txtCelvarFilename", true},
        {0, "cmdBrowseDatabase", "txtDatabase", false},
        {1, "cmdBrowseMPX", "txtMPX", false},
        {1, "cmdInterimDB", "txtInterimDB", true}});
}

TEST_F(MainWindowTest, TheFileDialogTakesNewNamesWithoutAQuestionInTheFolderOfTheLastName) {
  DialogFileNames real;
  folder.Write("old.txt", "stands");
  const auto ask = [&](const FileDialog& dialog, const char* name) {
    user.steps.emplace_back([&](QDialog& shown) {
      auto& picker = dynamic_cast<QFileDialog&>(shown);
      EXPECT_EQ(picker.windowTitle(), "Pick");
      EXPECT_EQ(picker.acceptMode() == QFileDialog::AcceptSave, dialog.newName);
      EXPECT_EQ(picker.directory(), QDir(QString::fromStdString(folder.Path(""))));
      User::Get<QLineEdit>(picker, "fileNameEdit").setText(name);
      QTest::keyClick(&User::Find(picker, "fileNameEdit"), Qt::Key_Return);
    });
    return real.Ask(dialog, &window).toStdString();
  };
  const std::string typed = folder.Path("typed.mdb");
  real.Remember(QString::fromStdString(typed));
  EXPECT_EQ(ask({"Text (*.txt)|*.txt", "Pick"}, "new"), folder.Path("new.txt"));
  EXPECT_EQ(ask({"Text (*.txt)|*.txt", "Pick", true}, "old.txt"), folder.Path("old.txt"));
  real.Remember("/typed.mdb");
  EXPECT_EQ(ask({"Text (*.txt)|*.txt", "Pick", true, typed}, "a"), folder.Path("a.txt"));
  EXPECT_TRUE(user.boxes.empty());
}

}  // namespace
}  // namespace merivane::test
