// A user's whole work, by keys alone: from the model to a plan, and with the changed plan back.
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMainWindow>
#include <QTabBar>
#include <QTableView>
#include <QTreeWidget>
#include <fstream>

#include "changed_text.h"
#include "desktop_fixture.h"
#include "picture_view.h"

namespace merivane::test {

namespace {

class WalkTest : public DesktopTest {
 protected:
  static void Press(QWidget& in, const char* name, Qt::Key key = Qt::Key_Space) {
    QWidget& widget = User::Find(in, name);
    ASSERT_TRUE(widget.isVisible() && widget.isEnabled()) << name;
    widget.setFocus();
    QTest::keyClick(&widget, key);
  }
  void PressBrowse(QWidget& form, const char* name, const std::string& file) {
    names.names.push_back(file);
    Press(form, name);
  }
  // What is found in the outline, with its place in the chart.
  static std::string Found(QMainWindow& opened, const char* text) {
    auto& search = User::Get<QLineEdit>(opened, "outlineSearch");
    search.clear();
    QTest::keyClicks(&search, text);
    const std::string bar = User::Get<PictureView>(opened, "chart").Marked().toStdString();
    return User::Get<QTreeWidget>(opened, "outline").currentItem()->text(0).toStdString() + ": " +
           bar;
  }
};

TEST_F(WalkTest, AModelBecomesAPlanAndTheChangedPlanComesBackAndIsAPlanAgain) {
  const std::string model = folder.Write("bakery.txt", ReadFile(MERIVANE_SAMPLES "/bakery.txt"));
  const std::string database = folder.Path("bakery.mdb");
  const std::string xml = folder.Path("bakery.xml");
  const std::string merged = folder.Path("merged.txt");

  // The model, its findings, and the other choice.
  QMainWindow& opened = *OpenFile(model);
  EXPECT_THAT(Found(opened, "Bake the cakes"), EndsWith("Bake the cakes: "));
  Key(Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
  QTest::keyClicks(QApplication::focusWidget(), "left out");
  EXPECT_THAT(User::Get<QLabel>(opened, "count").text().toStdString(), HasSubstr(" of "));
  Press(opened, "choice1", Qt::Key_Down);
  QTest::qWait(20);
  EXPECT_THAT(Found(opened, "Bake the cakes"), HasSubstr(": Bake the cakes"));

  // The check and the plan, with that choice.
  Key(Qt::Key_T, Qt::ControlModifier);
  QWidget& out = User::Find(window, "frmIDEF3ToProject");
  Press(out, "cmdCheck");
  QWidget& check = User::Find(window, "checkWindow");
  EXPECT_GT(User::Get<QTableView>(check, "results").model()->rowCount(), 0);
  QTest::keyClick(&check, Qt::Key_Escape);
  QTabBar& kinds = *User::Get<QTabWidget>(out, "SSTabGenerateOpt").tabBar();
  kinds.setFocus();
  for (int tab = 0; tab < 2; ++tab) QTest::keyClick(&kinds, Qt::Key_Right);
  PressBrowse(out, "cmdBrowseXML", xml);
  PressBrowse(out, "BrowsedbBt_xml", database);
  user.steps.emplace_back([](QDialog& chooser) { QTest::keyClick(&chooser, Qt::Key_Return); });
  Press(out, "cmdOK");
  EXPECT_THAT(Result(), HasSubstr(xml));
  User::Click(window, "seePlan");
  EXPECT_THAT(Found(*LastWorkbench(), "Bake the cakes"), HasSubstr(": Bake the cakes"));

  // Somebody changes the plan, and it is tried.
  const std::string changed = With(ReadFile(xml), {{"Bake the cakes", "Bake the tarts"}});
  std::ofstream(xml, std::ios::binary) << changed;
  QMainWindow& planned = *OpenFile(database);
  EXPECT_THAT(Found(planned, "Bake the cakes"), HasSubstr(": Bake the cakes"));
  names.names.push_back(xml);
  Key(Qt::Key_B, Qt::ControlModifier);
  QWidget& back = User::Find(window, "frmProjectToIDEF3");
  const std::string before = ReadFile(database);
  user.steps.emplace_back([](QDialog& preview) { Press(preview, "cmdShow"); });
  Press(back, "cmdPreview");
  ASSERT_TRUE(QTest::qWaitFor([&] { return LastWorkbench() != &planned; }));
  QMainWindow& merge = *LastWorkbench();
  EXPECT_THAT(Found(merge, "tarts"),
              HasSubstr("~ Bake the tarts (was Bake the cakes): Bake the tarts"));
  EXPECT_EQ(ReadFile(database), before);

  // It is merged, and the merged model is a plan again.
  Key(Qt::Key_B, Qt::ControlModifier);
  PressBrowse(back, "cmdBrowseText", merged);
  Press(back, "cmdOK");
  EXPECT_THAT(Result(), HasSubstr(merged));
  QMainWindow& again = *OpenFile(merged);
  EXPECT_THAT(Found(again, "Bake the tarts"), HasSubstr(": Bake the tarts"));
  EXPECT_THAT(user.boxes, IsEmpty());
}

}  // namespace
}  // namespace merivane::test
