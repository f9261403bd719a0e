#include "picture_view.h"

#include <QLabel>
#include <QMainWindow>
#include <QPrinter>

#include "desktop_fixture.h"
#include "paint_figure.h"
#include "pictures/style.h"

namespace merivane::test {

namespace {

using ::testing::Each;
using ::testing::Not;

class PictureViewTest : public DesktopTest {
 protected:
  // The window that the menu item opens for the file; null where none opens.
  QMainWindow* Show(const char* item, const std::string& file) {
    names.names.push_back(file);
    Trigger(window, item);
    return LastWorkbench();
  }
  static PictureView& View(QMainWindow& opened, const char* name) {
    return User::Get<PictureView>(opened, name);
  }
  void Close(QMainWindow& opened) {
    opened.parentWidget()->close();
    EXPECT_TRUE(QTest::qWaitFor([this] { return LastWorkbench() == nullptr; }));
  }
};

TEST_F(PictureViewTest, TheMenuShowsAllScenariosInOnePictureAndOneAgain) {
  QMainWindow* opened = Show("mnuProcessDiagram", MERIVANE_SAMPLES "/festival.txt");
  ASSERT_NE(opened, nullptr);
  PictureView& view = View(*opened, "diagram");
  EXPECT_TRUE(view.hasFocus());
  const double all = view.Drawn().height;
  QTest::keyClicks(&User::Find(*opened, "outlineSearch"), "Raise the stage");
  EXPECT_EQ(view.Drawn().height, all);
  EXPECT_THAT(view.Marked().toStdString(), StartsWith("Raise the stage"));
  view.ZoomTo(4);
  EXPECT_EQ(User::Get<QLabel>(*opened, "zoom").text(), "400%");
  const std::string file = folder.Path("all.svg");
  names.names.push_back(file);
  Trigger(*opened, "export");
  EXPECT_THAT(ReadFile(file), HasSubstr("Sale at the box office"));
  Trigger(*opened, "allScenarios");
  EXPECT_LT(view.Drawn().height, all);
  EXPECT_THAT(view.Marked().toStdString(), StartsWith("Raise the stage"));
  EXPECT_EQ(view.Drawn().title, "Stage building");
  user.answers = {QMessageBox::Yes};
  names.names.push_back(file);
  Trigger(*opened, "export");
  EXPECT_THAT(ReadFile(file), Not(HasSubstr("Sale at the box office")));
}

TEST_F(PictureViewTest, ExportWritesByTheEndingAndAsksBeforeItReplaces) {
  QMainWindow* opened = Show("mnuProcessDiagram", MERIVANE_SAMPLES "/onboarding.txt");
  ASSERT_NE(opened, nullptr);
  const std::string file = folder.Write("a.png", "precious");
  user.answers = {QMessageBox::No, QMessageBox::Yes};
  User::Find(*opened, "outlineSearch").setFocus();
  for (const auto& name : {file, folder.Path("a.jpg"), file}) {
    names.names.push_back(name);
    EXPECT_EQ(ReadFile(file), "precious");
    Key(Qt::Key_E, Qt::ControlModifier);
    EXPECT_EQ(names.parents.back(), opened);
  }
#ifndef _WIN32  // whose own dialog needs a printer
  user.steps.emplace_back([&](QDialog& dialog) {
    EXPECT_EQ(dialog.parentWidget(), opened);
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  Trigger(*opened, "print");
#endif
  EXPECT_THAT(user.parents, Each(opened));
  EXPECT_THAT(ReadFile(file), StartsWith("\x89PNG"));
  names.names.push_back(folder.Path("gone/b.svg"));
  Trigger(*opened, "export");
  EXPECT_THAT(user.boxes, ElementsAre(HasSubstr("replace"), HasSubstr("no name of a picture"),
                                      HasSubstr("replace"), HasSubstr("b.svg")));
}

TEST_F(PictureViewTest, ZoomFitsAndEachPictureGetsItsPages) {
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
  EXPECT_TRUE(view.Choose("end"));
  EXPECT_THAT(view.accessibleDescription().toStdString(), StartsWith("Chosen: End"));
  EXPECT_EQ(view.Scale(), 1);  // marked where it can be read

  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(QString::fromStdString(folder.Path("a.pdf")));
  PrintPictures(printer, {wide, wide});
  const std::string pdf = ReadFile(folder.Path("a.pdf"));
  EXPECT_THAT(pdf, HasSubstr("/Count 6"));
}

TEST_F(PictureViewTest, BlanksShowAsInTheFile) {
  const auto seen = [](const std::string& name) {
    pictures::Picture picture;
    picture.width = 300;
    picture.height = 100;
    pictures::Figure& figure = picture.figures.emplace_back();
    double base = 0;
    for (const auto anchor : {Anchor::kStart, Anchor::kMiddle, Anchor::kEnd}) {
      base += 25;
      figure.shapes.push_back(Text{Ink::kUnitName, {150, base}, name, anchor});
    }
    Work nobody;
    PictureView view(picture, nobody);
    view.resize(400, 200);
    view.show();
    return view.viewport()->grab().toImage();
  };
  EXPECT_EQ(seen(" Drill \t holes "), seen("Drill holes"));
  EXPECT_NE(seen("Drill\xa0 holes"), seen("Drill holes"));  // that blank is a letter
}

TEST_F(PictureViewTest, ChartsAndTranslatedModelsComeFromADatabaseAndItsChosenProject) {
  MakePlan();
  QMainWindow* chart = Show("mnuPlanChart", plan);
  ASSERT_NE(chart, nullptr);
  PictureView& view = View(*chart, "chart");
  EXPECT_TRUE(view.hasFocus());
  EXPECT_THAT(view.Drawn().description, HasSubstr("5 tasks"));
  bool isFound = false;
  for (const pictures::Figure& figure : view.Drawn().figures) {
    for (const pictures::Shape& shape : figure.shapes) {
      const auto* bar = std::get_if<pictures::Box>(&shape);
      if (isFound || bar == nullptr || bar->ink != pictures::Ink::kCritical) continue;
      isFound = true;
      const pictures::Point centre = bar->area.Centre();
      view.ZoomTo(2);
      view.centerOn(centre.x, centre.y);
      const QPoint middle = view.mapFromScene(centre.x, centre.y);
      const QColor colour(pictures::StyleOf(pictures::Ink::kCritical).fill);
      EXPECT_EQ(view.viewport()->grab().toImage().pixelColor(middle), colour);  // it has an inside
    }
  }
  EXPECT_TRUE(isFound);
  Close(*chart);
  EXPECT_EQ(Show("mnuPlanChart", folder.Write("wrong.mdb", "none")), nullptr);
  EXPECT_EQ(Show("mnuProcessDiagram", folder.Write("wrong.txt", "")), nullptr);
  EXPECT_EQ(Show("mnuProcessDiagram", folder.Path("none.txt")), nullptr);
  EXPECT_EQ(user.boxes.size(), 3U);
}

}  // namespace
}  // namespace merivane::test
