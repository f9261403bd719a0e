#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTabBar>
#include <QTableView>
#include <QTextBrowser>
#include <QTreeWidget>
#include <filesystem>

#include "changed_text.h"
#include "desktop_fixture.h"
#include "picture_view.h"

namespace merivane::test {

namespace {

using ::testing::Not;

class WorkbenchWindowTest : public DesktopTest {
 protected:
  static QTreeWidget& Outline(QMainWindow& opened) {
    return User::Get<QTreeWidget>(opened, "outline");
  }
  static std::string Chosen(QMainWindow& opened) {
    const QTreeWidgetItem* item = Outline(opened).currentItem();
    return item == nullptr ? "" : item->text(0).toStdString();
  }
  static std::string Marked(QMainWindow& opened, const char* view) {
    const QString marked = User::Get<PictureView>(opened, view).Marked();
    return marked.section(" (", 0, 0).toStdString();
  }
  static std::string Page(QMainWindow& opened) {
    return User::Get<QTextBrowser>(opened, "properties").toPlainText().toStdString();
  }
  // The rows of the list below that are chosen, by their sentence.
  static std::vector<std::string> Notes(QMainWindow& opened) {
    std::vector<std::string> texts;
    for (const QModelIndex& row :
         User::Get<QTableView>(opened, "notes").selectionModel()->selectedRows(3)) {
      texts.push_back(row.data().toString().toStdString());
    }
    return texts;
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
  const std::string festival = MERIVANE_SAMPLES "/festival.txt";
};

TEST_F(WorkbenchWindowTest, OneElementIsChosenInOutlineDiagramChartPropertiesAndFindings) {
  QMainWindow* opened = OpenFile(festival);
  ASSERT_NE(opened, nullptr);
  EXPECT_TRUE(opened->isVisible());
  EXPECT_FALSE(User::Find(window, "startPage").isVisible());
  EXPECT_EQ(Chosen(*opened), "Harbour Lights Festival");
  QTest::keyClicks(&User::Find(*opened, "outlineSearch"), "roof from own");
  EXPECT_EQ(Chosen(*opened), "16  Build a roof from own timber");
  EXPECT_EQ(Marked(*opened, "diagram"), "Build a roof from own timber");
  EXPECT_THAT(Marked(*opened, "chart"), HasSubstr("Build a roof from own timber"));
  EXPECT_THAT(Page(*opened), HasSubstr("3FS Fetch the stage parts"));
  ClickFigure(*opened, "chart", "Fetch the stage parts");
  EXPECT_EQ(Chosen(*opened), "14  Fetch the stage parts");
  EXPECT_EQ(Marked(*opened, "diagram"), "Fetch the stage parts");
  ClickFigure(*opened, "diagram", "Rent a roof");
  EXPECT_EQ(Chosen(*opened), "15  Rent a roof");
  EXPECT_TRUE(Outline(*opened).currentItem()->font(0).italic());  // out of the plan
  EXPECT_EQ(Marked(*opened, "chart"), "");
  EXPECT_THAT(Notes(*opened), ElementsAre(HasSubstr("keeps link L52 to 'Build a roof")));
  auto& notes = User::Get<QTableView>(*opened, "notes");
  notes.setFocus();
  notes.scrollToTop();
  const QModelIndex third = notes.model()->index(2, 3);
  QTest::mouseClick(notes.viewport(), Qt::LeftButton, {}, notes.visualRect(third).center());
  EXPECT_EQ(Chosen(*opened), "4  Hold the festival evening");
  EXPECT_THAT(Marked(*opened, "chart"), HasSubstr("Hold the festival evening"));
  Key(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  QTest::keyClicks(QApplication::focusWidget(), "left out");
  Key(Qt::Key_Return);
  EXPECT_TRUE(notes.hasFocus());
  const int left = notes.model()->rowCount();
  EXPECT_THAT(User::Get<QLabel>(*opened, "count").text().toStdString(),
              AllOf(StartsWith(std::to_string(left) + " of "), EndsWith(" rows")));
  Key(Qt::Key_A, Qt::ControlModifier);
  Key(Qt::Key_C, Qt::ControlModifier);
  const QStringList copied = QApplication::clipboard()->text().split('\n');
  EXPECT_EQ(copied.size(), left);
  for (const QString& row : copied) EXPECT_TRUE(row.startsWith("left out\t")) << qPrintable(row);
  const std::string list = folder.Path("list.csv");
  names.names.push_back(list);
  Key(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(QString::fromStdString(ReadFile(list)).count("\nleft out,"), left);
  QTest::keyClicks(&User::Find(*opened, "outlineSearch"), "!");  // nothing there
  User::Get<QLineEdit>(*opened, "filter").clear();
  EXPECT_GT(notes.model()->rowCount(), left);
  EXPECT_THAT(user.boxes, IsEmpty());
}

TEST_F(WorkbenchWindowTest, KeysGoIntoDecompositionsOutOfThemBackAndForward) {
  QMainWindow* opened = OpenFile(festival);
  ASSERT_NE(opened, nullptr);
  Outline(*opened).setFocus();
  Key(Qt::Key_Down);
  Key(Qt::Key_Down);
  EXPECT_EQ(Chosen(*opened), "2  Bring the stage to the quay");
  Key(Qt::Key_Return);
  EXPECT_EQ(Chosen(*opened), "Stage building");
  EXPECT_EQ(User::Find(*opened, "diagram").accessibleName(), "Stage building");
  Key(Qt::Key_Backspace);
  auto& diagram = User::Get<PictureView>(*opened, "diagram");
  const QPoint place = PlaceOf(diagram, "Bring the stage");
  QTest::mouseClick(diagram.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(diagram.viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(Chosen(*opened), "Stage building");  // whatever lies below the pointer then
  Outline(*opened).setFocus();
  Key(Qt::Key_Down);
  Key(Qt::Key_Return);  // leads nowhere
  EXPECT_EQ(Chosen(*opened), "14  Fetch the stage parts");
  Key(Qt::Key_Backspace);
  Key(Qt::Key_Backspace);
  EXPECT_EQ(Chosen(*opened), "2  Bring the stage to the quay");
  for (const char* before : {"Stage building", "14  Fetch the stage parts", "Stage building"}) {
    Key(Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(Chosen(*opened), before);
  }
  Key(Qt::Key_Right, Qt::AltModifier);
  EXPECT_EQ(Chosen(*opened), "14  Fetch the stage parts");
  Key(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(window.focusWidget()->objectName(), "outlineSearch");
  Key(Qt::Key_F1);
  EXPECT_THAT(desktop.helpContexts, ElementsAre(7030));
}

TEST_F(WorkbenchWindowTest, AnotherChoiceRedrawsThePlan) {
  QMainWindow* opened = OpenFile(MERIVANE_SAMPLES "/bakery.txt");
  ASSERT_NE(opened, nullptr);
  QTest::keyClicks(&User::Find(*opened, "outlineSearch"), "Bake the cakes");
  EXPECT_EQ(Marked(*opened, "chart"), "");
  EXPECT_THAT(Page(*opened), HasSubstr("Not in the plan"));
  User::Choose(*opened, "choice1", 1);
  QTest::qWait(20);
  EXPECT_EQ(Chosen(*opened), "6  Bake the cakes");  // it stays
  EXPECT_THAT(Marked(*opened, "chart"), HasSubstr("Bake the cakes"));
  EXPECT_THAT(Page(*opened), Not(HasSubstr("Not in the plan")));
  EXPECT_EQ(User::Get<QComboBox>(*opened, "choice1").currentText(), "Saturday cakes");
  Trigger(*opened, "toPlan");
  EXPECT_EQ(TextOf(User::Find(window, "frmIDEF3ToProject"), "txtCelvarFilename"),
            MERIVANE_SAMPLES "/bakery.txt");
}

TEST_F(WorkbenchWindowTest, AChangedPlanGoesBackWithItsDatabaseAndItsProjectKnown) {
  MakePlan();
  QMainWindow* opened = OpenFile(plan);
  ASSERT_NE(opened, nullptr);
  names.names = {mpx};
  Key(Qt::Key_B, Qt::ControlModifier);
  QWidget& form = User::Find(window, "frmProjectToIDEF3");
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(TextOf(form, "txtMPX"), mpx);
  EXPECT_EQ(TextOf(form, "txtInterimDB"), plan);
  EXPECT_EQ(TextOf(form, "txtCelvarFilename"), "");
  EXPECT_TRUE(User::Find(form, "cmdPreview").isEnabled());  // of a merge with one project
  User::Click(form, "cmdCancel");
  QMainWindow* file = OpenFile(mpx);
  ASSERT_NE(file, opened);
  Trigger(*file, "bringBack");
  EXPECT_EQ(TextOf(form, "txtMPX"), mpx);
  EXPECT_EQ(TextOf(form, "txtInterimDB"), "");
  user.steps.emplace_back(User::Clicks("CmdCancel"));  // asked as ever
  Browse(form, "cmdInterimDB", plan);
  User::Click(form, "cmdCancel");
  const QMainWindow* foreign = OpenFile(folder.Write("foreign.txt", ReadFile(festival)));
  EXPECT_EQ(foreign->findChild<QAction*>("bringBack"), nullptr);
  EXPECT_THAT(user.boxes, IsEmpty());
}

TEST_F(WorkbenchWindowTest, APreviewShowsItsPicturesAndLeadsToItsMerge) {
  MakePlan();
  const std::string changed =
      folder.Write("changed.mpx", With(ReadFile(mpx), {{"Set up the desk", "Build the desk"}}));
  const std::string before = ReadFile(plan);
  OpenFile(plan);
  names.names = {changed};
  Key(Qt::Key_B, Qt::ControlModifier);
  QWidget& form = User::Find(window, "frmProjectToIDEF3");
  user.steps.emplace_back([](QDialog& preview) {
    EXPECT_LE(preview.minimumSizeHint().width(), 1024 * 9 / 10);
    EXPECT_LE(preview.minimumSizeHint().height(), 600 * 9 / 10);
    User::Click(preview, "cmdShow");
  });
  User::Click(form, "cmdPreview");
  const auto shown = [this] { return window.findChildren<QMainWindow*>("workbench"); };
  ASSERT_TRUE(QTest::qWaitFor([&] { return shown().size() == 2; }));
  EXPECT_EQ(window.findChild<QDialog*>("previewWindow"), nullptr);
  QMainWindow& merge = *shown().last();
  EXPECT_EQ(merge.windowTitle().toStdString(), "changed.mpx (preview of the merge)");
  EXPECT_THAT(User::Get<QLabel>(merge, "fileLines").text().toStdString(),
              HasSubstr("The merge would make 1 change. Nothing was changed yet."));
  auto& notes = User::Get<QTableView>(merge, "notes");
  EXPECT_EQ(notes.model()->index(0, 1).data().toString(), "2");  // row of the plan
  notes.setFocus();
  Key(Qt::Key_Down);
  const std::string both = "Build the desk (was Set up the desk)";
  EXPECT_THAT(Chosen(merge), HasSubstr("~ " + both));
  EXPECT_THAT(Marked(merge, "diagram"), HasSubstr("Build the desk"));
  EXPECT_THAT(Marked(merge, "chart"), HasSubstr("Build the desk"));
  ClickFigure(merge, "diagram", "Work on the first task");
  EXPECT_THAT(Notes(merge), IsEmpty());
  ClickFigure(merge, "diagram", "Build the desk");
  EXPECT_THAT(Notes(merge), ElementsAre("It was called 'Set up the desk'."));

  folder.Write("changed.mpx", "no plan");
  ASSERT_TRUE(QTest::qWaitFor([&] { return User::Find(merge, "fileChanged").isVisible(); }));
  User::Click(merge, "readAgain");
  EXPECT_EQ(notes.model()->index(0, 0).data().toString(), "stop");
  EXPECT_FALSE(Marked(merge, "diagram").empty());  // the model as it is
  EXPECT_EQ(ReadFile(plan), before);
  Trigger(merge, "bringBack");
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(TextOf(form, "txtMPX"), changed);
  EXPECT_EQ(TextOf(form, "txtInterimDB"), plan);
  EXPECT_THAT(user.boxes, IsEmpty());
}

TEST_F(WorkbenchWindowTest, WindowsAreTabsWhereTheUserPrefersThat) {
  Trigger(window, "mnuTabs");
  QMainWindow* opened = OpenFile(festival);
  QMainWindow* other = OpenFile(MERIVANE_SAMPLES "/bakery.txt");
  ASSERT_TRUE(opened != nullptr && other != nullptr);
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
  EXPECT_TRUE(form.isVisible());
  EXPECT_EQ(area.activeSubWindow(), form.parentWidget());
  User::Click(form, "cmdCancel");
  EXPECT_EQ(titles().size(), 2U);
  EXPECT_EQ(area.activeSubWindow(), other->parentWidget());
  other->parentWidget()->close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return titles().size() == 1; }));
  EXPECT_EQ(area.activeSubWindow(), opened->parentWidget());
  EXPECT_TRUE(MainWindow(desktop, main).findChild<QAction*>("mnuTabs")->isChecked());
  OpenToProject();
  Trigger(window, "mnuTabs");
  EXPECT_TRUE(opened->isVisible());
  EXPECT_FALSE(form.parentWidget()->isMaximized());  // a dialog, beside the workbench
  EXPECT_FALSE(QSettings().value("area/tabs").toBool());
}

TEST_F(WorkbenchWindowTest, ASmallScreenCutsNothingOffAlsoFromRightToLeft) {
  MakePlan();
  for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    SCOPED_TRACE(direction);
    QApplication::setLayoutDirection(direction);
    window.resize(1024, 600);
    QMainWindow* planned = OpenFile(plan);
    QMainWindow* opened = OpenFile(festival);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.size(), QSize(1024, 600));
    for (const QWidget* more : window.findChildren<QWidget*>("qt_toolbar_ext_button")) {
      EXPECT_FALSE(more->isVisible());  // all tools have room
    }
    for (const char* name : {"outline", "diagram", "chart", "properties", "notes"}) {
      const QWidget& part = User::Find(*opened, name);
      const QRect place(part.mapTo(opened, QPoint(0, 0)), part.size());
      EXPECT_TRUE(opened->rect().contains(place)) << name;
      EXPECT_GE(part.height(), part.fontMetrics().height() * 4) << name;
    }
    ClickFigure(*opened, "diagram", "Sell the tickets");
    EXPECT_EQ(Chosen(*opened), "3  Sell the tickets");
    for (QWidget* form : {&OpenToProject(), &OpenToModel()}) {
      for (const QWidget* button : form->findChildren<QAbstractButton*>()) {
        if (!button->isVisible()) continue;
        const QRect place(button->mapTo(&window, QPoint(0, 0)), button->size());
        EXPECT_TRUE(window.rect().contains(place)) << button->objectName().toStdString();
      }
      User::Click(*form, "cmdCancel");
    }
    Trigger(window, "mnuMessageLog");
    for (const QDialog* dialog : window.findChildren<QDialog*>()) {
      const QSize least = dialog->minimumSizeHint();
      EXPECT_LE(least.width(), 1024 * 9 / 10) << dialog->objectName().toStdString();
      EXPECT_LE(least.height(), 600 * 9 / 10) << dialog->objectName().toStdString();
    }
    window.findChild<QDialog*>("logWindow")->close();
    for (QMainWindow* workbench : {planned, opened}) workbench->parentWidget()->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return LastWorkbench() == nullptr; }));
  }
  QApplication::setLayoutDirection(Qt::LeftToRight);
}

TEST_F(WorkbenchWindowTest, PicturesFollowTheColoursOfTheSystem) {
  const QMainWindow* opened = OpenFile(festival);
  ASSERT_NE(opened, nullptr);
  const QPalette before = QApplication::palette();
  for (const char* name : {"diagram", "chart"}) {
    auto* view = opened->findChild<PictureView*>(name);
    const auto sheet = [view] {
      QCoreApplication::processEvents();
      view->ZoomTo(1);
      view->centerOn(0, 0);
      return view->viewport()->grab().toImage().pixelColor(4, 4).lightness();
    };
    EXPECT_GT(sheet(), 250) << name;
    QApplication::setPalette(QPalette(QColor(45, 47, 50)));
    EXPECT_LT(sheet(), 60) << name;
    QApplication::setPalette(before);
    EXPECT_GT(sheet(), 250) << name;
  }
}

TEST_F(WorkbenchWindowTest, AFileThatChangesOnTheDiskIsReadAgainWithTheSameSelection) {
  const std::string file = folder.Write("m.txt", ReadFile(festival));
  QMainWindow* opened = OpenFile(file);
  ASSERT_NE(opened, nullptr);
  QTest::keyClicks(&User::Find(*opened, "outlineSearch"), "Rent a roof");
  EXPECT_FALSE(User::Find(*opened, "fileChanged").isVisible());
  const std::string whole = ReadFile(festival);
  folder.Write("m.txt", whole.substr(0, whole.size() / 2));
  EXPECT_TRUE(QTest::qWaitFor([&] { return User::Find(*opened, "fileChanged").isVisible(); }));
  User::Click(*opened, "readAgain");
  EXPECT_FALSE(User::Find(*opened, "fileChanged").isVisible());
  EXPECT_THAT(User::Get<QLabel>(*opened, "fileLines").text().toStdString(),
              HasSubstr("Read in part"));
  EXPECT_THAT(User::Get<QLabel>(*opened, "noChart").text().toStdString(), HasSubstr("no plan"));
  EXPECT_EQ(Chosen(*opened), "Harbour Lights Festival");  // the unit is gone
  folder.Write("m.txt", "");
  ASSERT_TRUE(QTest::qWaitFor([&] { return User::Find(*opened, "fileChanged").isVisible(); }));
  User::Click(*opened, "readAgain");
  EXPECT_EQ(user.boxes.size(), 1U);
  EXPECT_EQ(Chosen(*opened), "Harbour Lights Festival");  // what was read stays
}

TEST_F(WorkbenchWindowTest, OpeningShowsABarAndItsCancelLeavesNoWindow) {
  bool cancels = false;
  bool wasShown = false;
  WhileRunning([&] {
    if (!ShowsProgress()) return;
    wasShown = true;
    if (cancels) User::Click(window, "progressCancel");
  });
  QMainWindow* opened = OpenFile(festival);
  ASSERT_NE(opened, nullptr);
  EXPECT_TRUE(wasShown);
  EXPECT_EQ(OpenFile(festival), opened);  // once
  opened->parentWidget()->close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return User::Find(window, "startPage").isVisible(); }));
  cancels = true;
  EXPECT_EQ(OpenFile(festival), nullptr);
  EXPECT_FALSE(ShowsProgress());
  EXPECT_THAT(user.boxes, IsEmpty());
}

}  // namespace
}  // namespace merivane::test
