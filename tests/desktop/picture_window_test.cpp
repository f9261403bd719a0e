#include <QGraphicsItem>
#include <QLabel>
#include <QMainWindow>
#include <QPrinter>

#include "desktop_fixture.h"
#include "paint_figure.h"
#include "picture_view.h"
#include "pictures/style.h"

namespace merivane::test {

namespace {

using ::testing::Each;
using ::testing::StartsWith;

class PictureWindowTest : public DesktopTest {
 protected:
  // The window that the menu item opens for the file; null where none opens.
  QMainWindow* Show(const char* item, const std::string& file) {
    names.names.push_back(file);
    window.findChild<QAction*>(item)->trigger();
    return window.findChild<QMainWindow*>("pictureWindow");
  }
  static PictureView& View(QMainWindow& picture) {
    return User::Get<PictureView>(picture, "picture");
  }
  static std::string Label(QMainWindow& picture, const char* name) {
    return User::Get<QLabel>(picture, name).text().toStdString();
  }
  static void Trigger(QMainWindow& picture, const char* action) {
    picture.findChild<QAction*>(action)->trigger();
  }
};

TEST_F(PictureWindowTest, SearchMarksAndCentresOneUnitAfterTheOther) {
  QMainWindow* picture = Show("mnuProcessDiagram", MERIVANE_SAMPLES "/festival.txt");
  ASSERT_NE(picture, nullptr);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(picture));
  PictureView& view = View(*picture);
  QTest::keyClick(&view, Qt::Key_F1);
  EXPECT_THAT(desktop.helpContexts, ElementsAre(7020));
  view.ZoomTo(4);
  QWidget& search = User::Find(*picture, "search");
  QTest::keyClicks(&search, "PRINT the");
  EXPECT_EQ(view.Marked().toStdString(), "Print the tickets (unit 8, A31)");
  EXPECT_EQ(Label(*picture, "found"), "1 of 2");
  QTest::keyClick(&search, Qt::Key_Return);
  EXPECT_EQ(view.Marked().toStdString(), "Print the tickets (unit 10, A31)");
  const QPoint middle = view.viewport()->rect().center();
  ASSERT_NE(view.itemAt(middle), nullptr);
  EXPECT_THAT(view.itemAt(middle)->toolTip().toStdString(), HasSubstr("unit 10, A31"));
  QTest::keyClicks(&search, "!");
  EXPECT_EQ(Label(*picture, "found"), "Not found");
  EXPECT_EQ(view.Marked(), QString());

  QTest::keyClick(&search, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&search, "Sell the tickets");
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, middle);
  EXPECT_EQ(view.Marked().toStdString(), "Sale at the box office");

  search.setFocus();
  QTest::keyClick(&search, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(&search, "print the");
  EXPECT_TRUE(view.GoTo("unit-1"));  // no hit
  for (const char* place : {"1 of 2", "2 of 2", "1 of 2"}) {
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_EQ(Label(*picture, "found"), place);
  }
  EXPECT_EQ(view.Marked().toStdString(), "Print the tickets (unit 8, A31)");
}

TEST_F(PictureWindowTest, ExportWritesByTheEndingAndAsksBeforeItReplaces) {
  QMainWindow* picture = Show("mnuProcessDiagram", MERIVANE_SAMPLES "/onboarding.txt");
  ASSERT_NE(picture, nullptr);
  const std::string file = folder.Write("a.png", "precious");
  user.answers = {QMessageBox::No, QMessageBox::Yes};
  User::Find(*picture, "search").setFocus();
  for (const auto& name : {file, folder.Path("a.jpg"), file}) {
    names.names.push_back(name);
    EXPECT_EQ(ReadFile(file), "precious");
    picture->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(picture));
    QTest::keyClick(picture->windowHandle(), Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(names.parents.back(), picture);
  }
  user.steps.emplace_back([&](QDialog& dialog) {
    EXPECT_EQ(dialog.parentWidget(), picture);
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  Trigger(*picture, "print");
  EXPECT_THAT(user.parents, Each(picture));
  EXPECT_THAT(ReadFile(file), StartsWith("\x89PNG"));
  names.names.push_back(folder.Path("gone/b.svg"));
  Trigger(*picture, "export");
  EXPECT_THAT(user.boxes, ElementsAre(HasSubstr("replace"), HasSubstr("no name of a picture"),
                                      HasSubstr("replace"), EndsWith("/gone/b.svg'")));
}

TEST_F(PictureWindowTest, ZoomFitsAndEachPictureGetsItsPages) {
  pictures::Picture wide;
  wide.width = 4000;
  wide.height = 30;
  pictures::Figure figure;
  figure.id = "end";
  figure.title = "End";
  figure.area = {3900, 0, 50, 30};
  figure.shapes.push_back(pictures::Box{pictures::Ink::kUnit, figure.area});
  wide.figures.push_back(figure);
  Work nobody;
  PictureView view(wide, nobody);
  view.resize(400, 300);
  view.show();
  view.Fit();
  EXPECT_LT(view.Scale(), 0.11);
  EXPECT_TRUE(view.GoTo("end"));
  EXPECT_EQ(view.Scale(), 1);  // marked where it can be read

  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(QString::fromStdString(folder.Path("a.pdf")));
  PrintPictures(printer, {wide, wide});
  const std::string pdf = ReadFile(folder.Path("a.pdf"));
  EXPECT_THAT(pdf, HasSubstr("/Count 6"));
}

TEST_F(PictureWindowTest, DrawingIsARunWithABarThatCanBeCancelled) {
  const std::string database = folder.Path("plan.mdb");
  MakePlan(database, folder.Path("plan.mpx"));
  std::vector<std::string> stages;
  bool cancels = false;
  desktop.ticksPerLook = 200;
  desktop.onProgress = [&](const RunProgress& progress) {
    if (stages.empty() || stages.back() != progress.stage) stages.push_back(progress.stage);
    if (cancels && window.findChild<QDialog*>("progress") != nullptr) {
      User::Click(window, "progressCancel");
    }
  };
  const std::string text = MERIVANE_SAMPLES "/festival.txt";
  EXPECT_NE(Show("mnuProcessDiagram", text), nullptr);
  EXPECT_THAT(stages, ElementsAre("Copying the database", "Reading the model",
                                  "Laying out the diagrams", "Drawing the diagrams"));
  delete window.findChild<QMainWindow*>("pictureWindow");
  cancels = true;
  EXPECT_EQ(Show("mnuProcessDiagram", text), nullptr);
  EXPECT_EQ(Show("mnuProcessDiagram", database), nullptr);
  EXPECT_EQ(Show("mnuPlanChart", database), nullptr);
  EXPECT_EQ(window.findChild<QDialog*>("progress"), nullptr);
  EXPECT_THAT(user.boxes, IsEmpty());
}

TEST_F(PictureWindowTest, ChartsAndTranslatedModelsComeFromADatabaseAndItsChosenProject) {
  const std::string database = folder.Path("plan.mdb");
  MakePlan(database, folder.Path("plan.mpx"));
  QMainWindow* chart = Show("mnuPlanChart", database);
  EXPECT_THAT(Label(*chart, "pictureNote"), HasSubstr("5 tasks"));
  ASSERT_TRUE(QTest::qWaitForWindowExposed(chart));
  const QImage image = View(*chart).viewport()->grab().toImage();
  const QRgb fill = QColor(pictures::StyleOf(pictures::Ink::kCritical).fill).rgb();
  int filled = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) filled += image.pixel(x, y) == fill ? 1 : 0;
  }
  EXPECT_GT(filled, 500);  // bars have an inside
  delete window.findChild<QMainWindow*>("pictureWindow");
  EXPECT_THAT(Label(*Show("mnuProcessDiagram", database), "pictureNote"), HasSubstr("Grey"));
  delete window.findChild<QMainWindow*>("pictureWindow");
  EXPECT_EQ(Show("mnuPlanChart", folder.Write("wrong.mdb", "none")), nullptr);
  EXPECT_EQ(Show("mnuProcessDiagram", folder.Write("wrong.txt", "none")), nullptr);
  EXPECT_EQ(Show("mnuProcessDiagram", folder.Path("none.txt")), nullptr);
  EXPECT_EQ(user.boxes.size(), 3U);
}

}  // namespace
}  // namespace merivane::test
