#include <QClipboard>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <QTableView>

#include "desktop_fixture.h"

namespace merivane::test {

namespace {

class WorkbenchWindowTest : public DesktopTest {
 protected:
  // The sentence of the row that is chosen in the list below; empty without one.
  static std::string Note(QMainWindow& opened) {
    const auto rows = User::Get<QTableView>(opened, "notes").selectionModel()->selectedRows(3);
    return rows.size() == 1 ? rows[0].data().toString().toStdString() : "";
  }
  // Where the first figure whose title begins so stands in the view, which moves there.
  static QPoint PlaceOf(PictureView& view, const std::string& title) {
    view.ZoomTo(1);
    for (const Figure& figure : view.Drawn().figures) {
      if (!figure.title.starts_with(title)) continue;
      const QPointF place(figure.area.left + 40, figure.area.Centre().y);
      view.centerOn(place);
      return view.mapFromScene(place);
    }
    ADD_FAILURE() << "no figure " << title;
    return {};
  }
  static void ClickFigure(QMainWindow& opened, const char* name, const std::string& title) {
    auto& view = User::Get<PictureView>(opened, name);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, PlaceOf(view, title));
  }
  // On the smallest screen.
  static void ExpectRoom(const QDialog& dialog) {
    const QSize least = dialog.minimumSizeHint();
    EXPECT_LE(least.width(), 1024 * 9 / 10) << qPrintable(dialog.objectName());
    EXPECT_LE(least.height(), 600 * 9 / 10) << qPrintable(dialog.objectName());
  }
  static bool IsWithin(const QWidget& part, const QWidget& whole) {
    return whole.rect().contains(QRect(part.mapTo(&whole, QPoint(0, 0)), part.size()));
  }
  // Once it is told that the file has changed.
  static void ReadAgain(QMainWindow& opened) {
    ASSERT_TRUE(QTest::qWaitFor([&] { return User::Find(opened, "fileChanged").isVisible(); }));
    User::Click(opened, "readAgain");
  }
};

TEST_F(WorkbenchWindowTest, OneElementIsChosenInOutlineDiagramChartPropertiesAndFindings) {
  QMainWindow& opened = Opened(festival);
  EXPECT_FALSE(User::Find(window, "startPage").isVisible());
  EXPECT_EQ(Chosen(opened), "Harbour Lights Festival");
  Search(opened, "roof from own");
  const std::string roof = "Build a roof from own timber";
  EXPECT_THAT(Shown(opened), ElementsAre("16  " + roof, roof, HasSubstr(roof)));
  EXPECT_THAT(Page(opened), HasSubstr("3FS Fetch the stage parts"));
  ClickFigure(opened, "chart", "Fetch the stage parts");
  EXPECT_EQ(Marked(opened, "diagram"), "Fetch the stage parts");
  ClickFigure(opened, "diagram", "Rent a roof");
  EXPECT_THAT(Shown(opened), ElementsAre("15  Rent a roof", "Rent a roof", ""));
  EXPECT_TRUE(Outline(opened).currentItem()->font(0).italic());  // out of the plan
  EXPECT_THAT(Note(opened), HasSubstr("keeps link L52 to 'Build a roof"));
  auto& notes = User::Get<QTableView>(opened, "notes");
  notes.setFocus();
  notes.scrollToTop();
  const QModelIndex third = notes.model()->index(2, 3);
  QTest::mouseClick(notes.viewport(), Qt::LeftButton, {}, notes.visualRect(third).center());
  const auto evening = HasSubstr("Hold the festival evening");
  EXPECT_THAT(Shown(opened), ElementsAre(evening, evening, evening));
  Press(Qt::CTRL | Qt::SHIFT | Qt::Key_F);
  QTest::keyClicks(QApplication::focusWidget(), "left out");
  Press(Qt::Key_Return);
  EXPECT_TRUE(notes.hasFocus());
  const int left = notes.model()->rowCount();
  EXPECT_THAT(TextOf(opened, "count"),
              AllOf(StartsWith(std::to_string(left) + " of "), EndsWith(" rows")));
  Press(Qt::CTRL | Qt::Key_A, Qt::CTRL | Qt::Key_C);
  EXPECT_EQ(QApplication::clipboard()->text().count("left out\t"), left);
  names.names.push_back(folder.Path("list.csv"));
  Press(Qt::CTRL | Qt::Key_S);
  EXPECT_EQ(QString::fromStdString(ReadFile(folder.Path("list.csv"))).count("\nleft out,"), left);
  Search(opened, "!");  // nothing there
  User::Get<QLineEdit>(opened, "filter").clear();
  EXPECT_GT(notes.model()->rowCount(), left);
}

TEST_F(WorkbenchWindowTest, KeysGoIntoDecompositionsOutOfThemBackAndForward) {
  QMainWindow& opened = Opened(festival);
  Outline(opened).setFocus();
  Press(Qt::Key_Down, Qt::Key_Down);
  EXPECT_EQ(Chosen(opened), "2  Bring the stage to the quay");
  Press(Qt::Key_Return);
  EXPECT_EQ(Chosen(opened), "Stage building");
  EXPECT_EQ(User::Find(opened, "diagram").accessibleName(), "Stage building");
  Press(Qt::Key_Backspace);
  auto& diagram = User::Get<PictureView>(opened, "diagram");
  const QPoint place = PlaceOf(diagram, "Bring the stage");
  QTest::mouseClick(diagram.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(diagram.viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(Chosen(opened), "Stage building");  // whatever lies below the pointer then
  Outline(opened).setFocus();
  Press(Qt::Key_Down, Qt::Key_Return);  // which leads nowhere
  EXPECT_EQ(Chosen(opened), "14  Fetch the stage parts");
  Press(Qt::Key_Backspace, Qt::Key_Backspace);
  EXPECT_EQ(Chosen(opened), "2  Bring the stage to the quay");
  for (const char* before : {"Stage building", "14  Fetch the stage parts", "Stage building"}) {
    Press(Qt::ALT | Qt::Key_Left);
    EXPECT_EQ(Chosen(opened), before);
  }
  Press(Qt::ALT | Qt::Key_Right);
  EXPECT_EQ(Chosen(opened), "14  Fetch the stage parts");
  Press(Qt::CTRL | Qt::Key_F);
  EXPECT_EQ(window.focusWidget()->objectName(), "outlineSearch");
  Press(Qt::Key_F1);
  EXPECT_THAT(desktop.helpContexts, ElementsAre(7030));
}

TEST_F(WorkbenchWindowTest, AChangedPlanGoesBackWithItsDatabaseAndItsProjectKnown) {
  MakePlan();
  OpenFile(plan);
  QWidget& form = BringBack(mpx);
  EXPECT_EQ(TextOf(form, "txtMPX"), mpx);
  EXPECT_EQ(TextOf(form, "txtInterimDB"), plan);
  EXPECT_EQ(TextOf(form, "txtCelvarFilename"), "");
  EXPECT_TRUE(User::Find(form, "cmdPreview").isEnabled());  // of a merge with one project
  User::Click(form, "cmdCancel");
  Trigger(Opened(mpx), "bringBack");
  EXPECT_EQ(TextOf(form, "txtMPX"), mpx);
  EXPECT_EQ(TextOf(form, "txtInterimDB"), "");
  Browse(form, "cmdInterimDB", plan, User::Clicks("CmdCancel"));  // asked as ever
  User::Click(form, "cmdCancel");
  EXPECT_EQ(Opened(festival).findChild<QAction*>("bringBack"), nullptr);
}

TEST_F(WorkbenchWindowTest, APreviewShowsItsPicturesAndLeadsToItsMerge) {
  MakePlan();
  const QMainWindow& planned = Opened(plan);
  QWidget& form = BringBack(ChangedMpx());
  user.steps.emplace_back([](QDialog& preview) {
    ExpectRoom(preview);
    User::Click(preview, "cmdShow");
  });
  User::Click(form, "cmdPreview");
  ASSERT_TRUE(QTest::qWaitFor([&] { return LastWorkbench() != &planned; }));
  EXPECT_EQ(window.findChild<QDialog*>("previewWindow"), nullptr);
  QMainWindow& merge = *LastWorkbench();
  EXPECT_EQ(merge.windowTitle().toStdString(), "changed.mpx (preview of the merge)");
  EXPECT_THAT(TextOf(merge, "fileLines"),
              HasSubstr("The merge would make 1 change. Nothing was changed yet."));
  EXPECT_THAT(RowsOf(merge, "notes", {1}), ElementsAre("2"));  // row of the plan
  User::Find(merge, "notes").setFocus();
  Press(Qt::Key_Down);
  const auto desk = HasSubstr("Build the desk");
  EXPECT_THAT(Shown(merge),
              ElementsAre(HasSubstr("~ Build the desk (was Set up the desk)"), desk, desk));
  ClickFigure(merge, "diagram", "Work on the first task");
  EXPECT_EQ(Note(merge), "");
  ClickFigure(merge, "diagram", "Build the desk");
  EXPECT_EQ(Note(merge), "It was called 'Set up the desk'.");

  folder.Write("changed.mpx", "no plan");
  ReadAgain(merge);
  EXPECT_THAT(RowsOf(merge, "notes", {0}), Contains("stop"));
  EXPECT_FALSE(Marked(merge, "diagram").empty());  // the model as it is
}

TEST_F(WorkbenchWindowTest, WindowsAreTabsWhereTheUserPrefersThat) {
  Trigger(window, "mnuTabs");
  QMainWindow& opened = Opened(festival);
  QMainWindow& other = Opened(MERIVANE_SAMPLES "/bakery.txt");
  auto& area = User::Get<QMdiArea>(window, "formArea");
  auto& tabs = *area.findChild<QTabBar*>();
  const auto titles = [&] {
    QTest::qWait(1);
    std::vector<std::string> shown;
    for (int at = 0; at < tabs.count(); ++at) {
      if (tabs.isTabVisible(at)) shown.push_back(tabs.tabText(at).toStdString());
    }
    return shown;
  };
  EXPECT_THAT(titles(), ElementsAre("festival.txt (model)", "bakery.txt (model)"));
  QWidget& form = OpenToProject();
  EXPECT_THAT(titles(),
              ElementsAre("Celvar to MS Project", "festival.txt (model)", "bakery.txt (model)"));
  EXPECT_EQ(area.activeSubWindow(), form.parentWidget());
  User::Click(form, "cmdCancel");
  EXPECT_EQ(titles().size(), 2U);
  EXPECT_EQ(area.activeSubWindow(), other.parentWidget());
  other.parentWidget()->close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return titles().size() == 1; }));
  EXPECT_EQ(area.activeSubWindow(), opened.parentWidget());
  EXPECT_TRUE(MainWindow(desktop, main).findChild<QAction*>("mnuTabs")->isChecked());
  OpenToProject();
  Trigger(window, "mnuTabs");
  EXPECT_TRUE(opened.isVisible());
  EXPECT_FALSE(form.parentWidget()->isMaximized());  // a dialog, beside the workbench
  EXPECT_FALSE(QSettings().value("area/tabs").toBool());
}

TEST_F(WorkbenchWindowTest, ASmallScreenCutsNothingOffAlsoFromRightToLeft) {
  MakePlan();
  for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    SCOPED_TRACE(direction);
    QApplication::setLayoutDirection(direction);
    window.resize(1024, 600);
    QMainWindow& planned = Opened(plan);
    QMainWindow& opened = Opened(festival);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.size(), QSize(1024, 600));
    for (const QWidget* more : window.findChildren<QWidget*>("qt_toolbar_ext_button")) {
      EXPECT_FALSE(more->isVisible());  // all tools have room
    }
    for (const char* name : {"outline", "diagram", "chart", "properties", "notes"}) {
      const QWidget& part = User::Find(opened, name);
      EXPECT_TRUE(IsWithin(part, opened)) << name;
      EXPECT_GE(part.height(), part.fontMetrics().height() * 4) << name;
    }
    ClickFigure(opened, "diagram", "Sell the tickets");
    EXPECT_EQ(Chosen(opened), "3  Sell the tickets");
    for (QWidget* form : {&OpenToProject(), &OpenToModel()}) {
      for (const QWidget* button : form->findChildren<QAbstractButton*>()) {
        EXPECT_TRUE(!button->isVisible() || IsWithin(*button, window))
            << qPrintable(button->objectName());
      }
      User::Click(*form, "cmdCancel");
    }
    Trigger(window, "mnuMessageLog");
    for (const QDialog* dialog : window.findChildren<QDialog*>()) ExpectRoom(*dialog);
    window.findChild<QDialog*>("logWindow")->close();
    planned.parentWidget()->close();
    Close(opened);
  }
  QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(WorkbenchWindowTest, PicturesFollowTheColoursOfTheSystem) {
  auto& view = User::Get<PictureView>(Opened(festival), "chart");
  const QPalette before = QApplication::palette();
  const auto sheet = [&](const QPalette& palette) {
    QApplication::setPalette(palette);
    QCoreApplication::processEvents();
    view.ZoomTo(1);
    view.centerOn(0, 0);
    return view.viewport()->grab().toImage().pixelColor(4, 4).lightness();
  };
  EXPECT_LT(sheet(QPalette(QColor(45, 47, 50))), 60);
  EXPECT_GT(sheet(before), 250);
}

TEST_F(WorkbenchWindowTest, AFileThatChangesOnTheDiskIsReadAgainWithTheSameSelection) {
  const std::string whole = ReadFile(festival);
  QMainWindow& opened = Opened(folder.Write("m.txt", whole));
  Search(opened, "Rent a roof");
  EXPECT_FALSE(User::Find(opened, "fileChanged").isVisible());
  folder.Write("m.txt", whole.substr(0, whole.size() / 2));
  ReadAgain(opened);
  EXPECT_FALSE(User::Find(opened, "fileChanged").isVisible());
  EXPECT_THAT(TextOf(opened, "fileLines"), HasSubstr("Read in part"));
  EXPECT_THAT(TextOf(opened, "noChart"), HasSubstr("no plan"));
  EXPECT_EQ(Chosen(opened), "Harbour Lights Festival");  // the unit is gone
  folder.Write("m.txt", "");
  ReadAgain(opened);
  EXPECT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Chosen(opened), "Harbour Lights Festival");  // what was read stays
}

TEST_F(WorkbenchWindowTest, OpeningShowsABarAndItsCancelLeavesNoWindow) {
  WhileRunning([&] { User::Click(window, "progressCancel"); });
  OpenFile(festival);
  EXPECT_EQ(LastWorkbench(), nullptr);
  EXPECT_FALSE(ShowsProgress());
  desktop.onProgress = {};
  QMainWindow& opened = Opened(festival);
  EXPECT_EQ(&Opened(festival), &opened);  // once
}

}  // namespace
}  // namespace merivane::test
