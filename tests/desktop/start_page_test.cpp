#include "start_page.h"

#include <QListWidget>
#include <QScrollArea>

#include "desktop_fixture.h"

namespace merivane::test {

namespace {

class StartPageTest : public DesktopTest {
 protected:
  QTreeWidget& List() { return User::Get<QTreeWidget>(window, "recentList"); }
  // File and kind.
  std::vector<std::string> Rows() { return RowsOf(window, "recentList", {0, 1}); }
  // Tab until the control has the focus.
  void TabTo(const char* name) {
    constexpr int kMost = 20;
    for (int i = 0; i < kMost && window.focusWidget()->objectName() != name; ++i)
      Press(Qt::Key_Tab);
    ASSERT_EQ(window.focusWidget()->objectName(), name);
  }
  void DropOnPage(const QStringList& files) {
    DropAt(*User::Get<QScrollArea>(window, "startPage").viewport(), {9, 9}, files);
  }
};

TEST_F(StartPageTest, StandsInTheFrameWhileNoDialogIsLoaded) {
  QWidget& page = User::Find(window, "startPage");
  EXPECT_TRUE(page.isVisible());
  EXPECT_EQ(window.focusWidget(), &page);  // a stray key presses nothing
  TabTo("startToPlan");
  Press(Qt::Key_Space);
  QWidget& form = User::Find(window, "frmIDEF3ToProject");
  EXPECT_TRUE(form.isVisible());
  EXPECT_FALSE(page.isVisible());
  Browse(form, "BrowsedbBt", folder.Write("old.mdb", "none"), [&](QDialog& dialog) {
    EXPECT_FALSE(form.isVisible() || page.isVisible());
    User::Click(dialog, "CmdAppend");
  });
  Press(Qt::Key_Escape);
  EXPECT_TRUE(page.isVisible());
  TabTo("startToModel");
  Press(Qt::Key_Space);
  EXPECT_TRUE(User::Find(window, "frmProjectToIDEF3").isVisible());
}

TEST_F(StartPageTest, OpensEachKindOfFileAndKeepsItForTheNextSession) {
  MakePlan();
  EXPECT_THAT(Rows(), ElementsAre("plan.mpx|MPX plan", "onboarding.txt|model"));
  for (const std::string& file : {festival, folder.Write("plan.backup", ReadFile(plan))}) {
    Close(Opened(file));
  }
  DropOnPage({QString::fromStdString(mpx)});
  EXPECT_EQ(LastWorkbench()->windowTitle(), "plan.mpx (MPX plan)");
  frmMain later(program);
  MainWindow next(desktop, later);
  EXPECT_THAT(RowsOf(next, "recentList", {0}),
              ElementsAre("plan.mpx", "plan.backup", "festival.txt", "onboarding.txt"));
  desktop.SetWindow(&window);
}

TEST_F(StartPageTest, WhatCantBeOpenedIsToldAndStaysOutOfTheList) {
  OpenFile(folder.Write("wrong.txt", "none"));
  OpenFile(folder.Write("plan.mpp", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 and more"));
  DropOnPage({"/a.txt", "/b.txt"});
  OpenFile(folder.Path("none.txt"));
  OpenFile("");
  EXPECT_EQ(LastWorkbench(), nullptr);
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_THAT(
      Boxes(),
      ElementsAre(HasSubstr("holds nothing that can be shown"), HasSubstr("is not a database"),
                  "Please drop one file at a time.", EndsWith("none.txt is not there any more.")));
  EXPECT_THAT(user.advice[1], HasSubstr("XML"));
}

TEST_F(StartPageTest, TheLastTenAreOpenedRemovedAndForgottenByKeys) {
  for (int i = 0; i < 11; ++i) {
    Close(Opened(folder.Write(std::to_string(i) + ".txt", ReadFile(model))));
  }
  std::filesystem::remove(folder.Path("9.txt"));
  window.hide();
  window.show();
  EXPECT_EQ(Rows().size(), 10U);
  EXPECT_EQ(Rows().at(0), "10.txt|model");
  EXPECT_EQ(RowsOf(window, "recentList", {0, 3}).at(1), "9.txt|not there any more");
  EXPECT_EQ(List().topLevelItem(1)->foreground(0),
            List().palette().brush(QPalette::Disabled, QPalette::Text));
  TabTo("recentList");
  List().setCurrentItem(List().topLevelItem(1));
  Press(Qt::Key_Return);
  EXPECT_THAT(Boxes(), ElementsAre(EndsWith("9.txt is not there any more.")));
  Press(Qt::Key_Delete);
  EXPECT_EQ(Rows()[1], "8.txt|model");
  Press(Qt::Key_Return);
  Close(*LastWorkbench());
  EXPECT_EQ(Rows()[0], "8.txt|model");
  TabTo("recentForgetAll");
  Press(Qt::Key_Space);
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_FALSE(User::Find(window, "recentRemove").isEnabled());
}

TEST_F(StartPageTest, OffersTheSamplesBesideTheProgram) {
  auto& samples = User::Get<QListWidget>(window, "samples");
  ASSERT_EQ(samples.count(), 4);
  TabTo("samples");
  samples.setCurrentRow(3);
  Press(Qt::Key_Return);
  EXPECT_EQ(LastWorkbench()->windowTitle(), "onboarding.txt (model)");
}

TEST_F(StartPageTest, ASampleThatMayNotBeWrittenIsOpenedAsTheUsersOwnCopy) {
  const std::string sample = folder.Write("tour.txt", "sample");
  const std::string copy = folder.Path("mine/Merivane/tour.txt");
  const auto may = std::filesystem::perms::owner_write;
  std::filesystem::permissions(PathOf(sample), may, std::filesystem::perm_options::remove);
  if (MayBeReplaced(sample)) GTEST_SKIP() << "this user may write everything";
  StartPage page(QString::fromStdString(folder.Path("")),
                 QString::fromStdString(folder.Path("mine/Merivane")));
  QStringList opened;
  page.OnOpen = [&](const QStringList& names) { opened += names; };
  auto& samples = User::Get<QListWidget>(page, "samples");
  emit samples.itemActivated(samples.item(0));
  EXPECT_EQ(ReadFile(copy), "sample");
  std::ofstream(PathOf(copy)) << "changed";
  emit samples.itemActivated(samples.item(0));
  EXPECT_EQ(ReadFile(copy), "changed");
  for (const QString& name : opened) EXPECT_TRUE(IsSameFile(name.toStdString(), copy));
  EXPECT_EQ(opened.size(), 2);
  std::filesystem::permissions(PathOf(sample), may, std::filesystem::perm_options::add);
}

}  // namespace
}  // namespace merivane::test
