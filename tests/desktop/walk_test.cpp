// A user's whole work, by keys alone: from the model to a plan, and with the changed plan back.
#include <QTabBar>

#include "desktop_fixture.h"

namespace merivane::test {

namespace {

class WalkTest : public DesktopTest {
 protected:
  static void PressOn(QWidget& in, const char* name, Qt::Key key = Qt::Key_Space) {
    QWidget& widget = User::Find(in, name);
    ASSERT_TRUE(widget.isVisible() && widget.isEnabled()) << name;
    widget.setFocus();
    QTest::keyClick(&widget, key);
  }
  void PressBrowse(QWidget& form, const char* name, const std::string& file) {
    names.names.push_back(file);
    PressOn(form, name);
  }
  // What is found in the outline, with its place in the chart.
  static std::string Found(QMainWindow& opened, const char* text) {
    User::Get<QLineEdit>(opened, "outlineSearch").clear();
    Search(opened, text);
    return Chosen(opened) + ": " + Marked(opened, "chart");
  }
};

TEST_F(WalkTest, AModelBecomesAPlanAndTheChangedPlanComesBackAndIsAPlanAgain) {
  const std::string model = folder.Write("bakery.txt", ReadFile(MERIVANE_SAMPLES "/bakery.txt"));
  const std::string xml = folder.Path("bakery.xml");

  // The model, and the other choice.
  QMainWindow& opened = Opened(model);
  EXPECT_THAT(Found(opened, "Bake the cakes"), EndsWith("Bake the cakes: "));
  EXPECT_THAT(Page(opened), HasSubstr("Not in the plan"));
  PressOn(opened, "choice1", Qt::Key_Down);
  QTest::qWait(20);
  EXPECT_THAT(Page(opened), Not(HasSubstr("Not in the plan")));  // of the same unit
  EXPECT_EQ(User::Get<QComboBox>(opened, "choice1").currentText(), "Saturday cakes");
  EXPECT_THAT(Found(opened, "Bake the cakes"), HasSubstr(": Bake the cakes"));

  // The plan, with that choice.
  Press(Qt::CTRL | Qt::Key_T);
  QWidget& out = User::Find(window, "frmIDEF3ToProject");
  QTabBar& kinds = *User::Get<QTabWidget>(out, "SSTabGenerateOpt").tabBar();
  kinds.setFocus();
  for (int tab = 0; tab < 2; ++tab) QTest::keyClick(&kinds, Qt::Key_Right);
  PressBrowse(out, "cmdBrowseXML", xml);
  PressBrowse(out, "BrowsedbBt_xml", plan);
  user.steps.emplace_back([](QDialog& chooser) { QTest::keyClick(&chooser, Qt::Key_Return); });
  PressOn(out, "cmdOK");
  EXPECT_THAT(Result(), HasSubstr(xml));
  User::Click(window, "seePlan");
  EXPECT_THAT(Found(*LastWorkbench(), "Bake the cakes"), HasSubstr(": Bake the cakes"));

  // Somebody changes the plan, and it is tried.
  folder.Write("bakery.xml", With(ReadFile(xml), {{"Bake the cakes", "Bake the tarts"}}));
  const QMainWindow& planned = Opened(plan);
  QWidget& back = BringBack(xml);
  user.steps.emplace_back([](QDialog& preview) { PressOn(preview, "cmdShow"); });
  PressOn(back, "cmdPreview");
  ASSERT_TRUE(QTest::qWaitFor([&] { return LastWorkbench() != &planned; }));

  // It is merged, and the merged model is a plan again.
  Press(Qt::CTRL | Qt::Key_B);
  PressBrowse(back, "cmdBrowseText", text);
  PressOn(back, "cmdOK");
  EXPECT_THAT(Found(Opened(text), "Bake the tarts"), HasSubstr(": Bake the tarts"));
}

}  // namespace
}  // namespace merivane::test
