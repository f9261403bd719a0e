#include "picture_view.h"

#include <QPrinter>

#include "desktop_fixture.h"
#include "paint_figure.h"
#include "pictures/style.h"

namespace merivane::test {

namespace {

using PictureViewTest = DesktopTest;

TEST_F(PictureViewTest, TheMenuShowsAllScenariosInOnePictureAndOneAgain) {
  TriggerFor(window, "mnuProcessDiagram", festival);
  QMainWindow& opened = *LastWorkbench();
  PictureView& view = User::Get<PictureView>(opened, "diagram");
  EXPECT_TRUE(view.hasFocus());
  const double all = view.Drawn().height;
  Search(opened, "Raise the stage");
  EXPECT_EQ(view.Drawn().height, all);
  EXPECT_THAT(Marked(opened, "diagram"), StartsWith("Raise the stage"));
  view.ZoomTo(4);
  EXPECT_EQ(TextOf(opened, "zoom"), "400%");
  TriggerFor(opened, "export", folder.Path("all.svg"));
  EXPECT_THAT(ReadFile(folder.Path("all.svg")), HasSubstr("Sale at the box office"));
  Trigger(opened, "allScenarios");
  EXPECT_LT(view.Drawn().height, all);
  EXPECT_THAT(Marked(opened, "diagram"), StartsWith("Raise the stage"));
  EXPECT_EQ(view.Drawn().title, "Stage building");
  TriggerFor(opened, "export", folder.Path("one.svg"));
  EXPECT_THAT(ReadFile(folder.Path("one.svg")), Not(HasSubstr("Sale at the box office")));
}

TEST_F(PictureViewTest, ExportWritesByTheEndingAndAsksBeforeItReplaces) {
  QMainWindow& opened = Opened(model);
  const std::string file = folder.Write("a.png", "precious");
  user.answers = {QMessageBox::No, QMessageBox::Yes};
  User::Find(opened, "outlineSearch").setFocus();
  for (const auto& name : {file, folder.Path("a.jpg"), file}) {
    names.names.push_back(name);
    EXPECT_EQ(ReadFile(file), "precious");
    Press(Qt::CTRL | Qt::Key_E);
    EXPECT_EQ(names.parents.back(), &opened);
  }
#ifndef _WIN32  // whose own dialog needs a printer
  user.steps.emplace_back([&](QDialog& dialog) {
    EXPECT_EQ(dialog.parentWidget(), &opened);
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  Trigger(opened, "print");
#endif
  EXPECT_THAT(user.parents, Each(&opened));
  EXPECT_THAT(ReadFile(file), StartsWith("\x89PNG"));
  TriggerFor(opened, "export", folder.Path("gone/b.svg"));
  EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("replace"), HasSubstr("no name of a picture"),
                                   HasSubstr("replace"), HasSubstr("b.svg")));
}

TEST_F(PictureViewTest, ZoomFitsAndEachPictureGetsItsPages) {
  const Area area{3900, 0, 50, 30};
  const Figure end{"end", "End", "", false, area, {Box{Ink::kUnit, area}}};
  const Picture wide{"", "", "", 4000, 30, {end}};
  WorkListener nobody;
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
  EXPECT_THAT(ReadFile(folder.Path("a.pdf")), HasSubstr("/Count 6"));
}

TEST_F(PictureViewTest, BlanksShowAsInTheFile) {
  const auto seen = [](const std::string& name) {
    Picture picture{"", "", "", 300, 100, {}};
    Figure& figure = picture.figures.emplace_back();
    double base = 0;
    for (const auto anchor : {Anchor::kStart, Anchor::kMiddle, Anchor::kEnd}) {
      base += 25;
      figure.shapes.push_back(Text{Ink::kUnitName, {150, base}, name, anchor});
    }
    WorkListener nobody;
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
  TriggerFor(window, "mnuPlanChart", plan);
  QMainWindow& chart = *LastWorkbench();
  PictureView& view = User::Get<PictureView>(chart, "chart");
  EXPECT_TRUE(view.hasFocus());
  EXPECT_THAT(view.Drawn().description, HasSubstr("5 tasks"));
  std::vector<Point> bars;
  for (const Figure& figure : view.Drawn().figures) {
    for (const Shape& shape : figure.shapes) {
      const auto* bar = std::get_if<Box>(&shape);
      if (bar != nullptr && bar->ink == Ink::kCritical) bars.push_back(bar->area.Centre());
    }
  }
  const auto [x, y] = bars.at(0);
  view.ZoomTo(2);
  view.centerOn(x, y);
  EXPECT_EQ(view.viewport()->grab().toImage().pixelColor(view.mapFromScene(x, y)),
            QColor(StyleOf(Ink::kCritical).fill));  // it has an inside
  Close(chart);
  TriggerFor(window, "mnuPlanChart", folder.Write("wrong.mdb", "none"));
  EXPECT_EQ(LastWorkbench(), nullptr);
  EXPECT_EQ(Boxes().size(), 1U);
}

}  // namespace
}  // namespace merivane::test
