#include "start_page.h"

#include <QListWidget>
#include <QMainWindow>
#include <QScrollArea>
#include <QTreeWidget>
#include <filesystem>
#include <fstream>

#include "desktop_fixture.h"
#include "runtime/file_names.h"

namespace merivane::test {

namespace {

class StartPageTest : public DesktopTest {
 protected:
  QTreeWidget& List() { return User::Get<QTreeWidget>(window, "recentList"); }
  // File and kind of each row, and "missing" where it is grey.
  std::vector<std::string> Rows() {
    std::vector<std::string> rows;
    const QColor grey = List().palette().color(QPalette::Disabled, QPalette::Text);
    for (int i = 0; i < List().topLevelItemCount(); ++i) {
      const QTreeWidgetItem& item = *List().topLevelItem(i);
      const bool missing = item.foreground(0).color() == grey && item.text(3).contains("not there");
      rows.push_back(
          (item.text(0) + '|' + item.text(1) + (missing ? "|missing" : "")).toStdString());
    }
    return rows;
  }
  void Choose(int row) { List().setCurrentItem(List().topLevelItem(row)); }
  // Tab until the control has the focus.
  void TabTo(const char* name) {
    constexpr int kMost = 20;
    for (int i = 0; i < kMost && window.focusWidget()->objectName() != name; ++i) Key(Qt::Key_Tab);
    ASSERT_EQ(window.focusWidget()->objectName(), name);
  }
  // The title of the workbench that came up, which is closed; empty without one.
  std::string Picture() {
    QMainWindow* opened = LastWorkbench();
    if (opened == nullptr) return {};
    std::string title = opened->windowTitle().toStdString();
    opened->parentWidget()->close();
    EXPECT_TRUE(QTest::qWaitFor([&] { return User::Find(window, "startPage").isVisible(); }));
    return title;
  }
  bool DropOnPage(const QStringList& files) {
    const bool taken =
        DropAt(*User::Get<QScrollArea>(window, "startPage").viewport(), {9, 9}, files);
    QTest::qWait(10);
    return taken;
  }
};

TEST_F(StartPageTest, StandsInTheFrameWhileNoDialogIsLoaded) {
  QWidget& page = User::Find(window, "startPage");
  EXPECT_TRUE(page.isVisible());
  EXPECT_EQ(window.focusWidget(), &page);  // a stray key presses nothing
  TabTo("startToPlan");
  Key(Qt::Key_Space);
  QWidget& form = User::Find(window, "frmIDEF3ToProject");
  EXPECT_TRUE(form.isVisible());
  EXPECT_FALSE(page.isVisible());
  const std::string database = folder.Write("old.mdb", "none");
  user.steps.emplace_back([&](QDialog& dialog) {
    EXPECT_FALSE(form.isVisible() || page.isVisible());
    User::Click(dialog, "CmdAppend");
  });
  Browse(form, "BrowsedbBt", database);
  Key(Qt::Key_Escape);
  EXPECT_TRUE(page.isVisible());
  TabTo("startToModel");
  Key(Qt::Key_Space);
  EXPECT_TRUE(User::Find(window, "frmProjectToIDEF3").isVisible());
  EXPECT_THAT(user.boxes, IsEmpty());
}

TEST_F(StartPageTest, OpensEachKindOfFileAndKeepsItForTheNextSession) {
  MakePlan();
  EXPECT_THAT(Rows(), ElementsAre("plan.mpx|MPX plan", "onboarding.txt|model"));
  const std::string model = MERIVANE_SAMPLES "/festival.txt";
  const std::string other = folder.Path("plan.backup");
  std::filesystem::copy(plan, other);
  OpenFile(model);
  EXPECT_NE(Picture(), "");
  OpenFile(other);
  EXPECT_NE(Picture(), "");
  EXPECT_TRUE(DropOnPage({QString::fromStdString(mpx)}));
  EXPECT_EQ(Picture(), "plan.mpx (MPX plan)");
  frmMain later(program);
  MainWindow next(desktop, later);
  auto& list = User::Get<QTreeWidget>(next, "recentList");
  ASSERT_EQ(list.topLevelItemCount(), 4);
  for (const auto& [row, name] :
       {std::pair{0, "plan.mpx"}, {1, "plan.backup"}, {2, "festival.txt"}}) {
    EXPECT_EQ(list.topLevelItem(row)->text(0), name);
  }
  desktop.SetWindow(&window);
}

TEST_F(StartPageTest, WhatCantBeOpenedIsToldAndStaysOutOfTheList) {
  OpenFile(folder.Write("wrong.txt", "none"));
  OpenFile(folder.Write("plan.mpp", "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1 and more"));
  EXPECT_TRUE(DropOnPage({"/a.txt", "/b.txt"}));
  OpenFile(folder.Path("none.txt"));
  OpenFile("");
  EXPECT_EQ(Picture(), "");
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_THAT(
      user.boxes,
      ElementsAre(HasSubstr("holds nothing that can be shown"), HasSubstr("is not a database"),
                  "Please drop one file at a time.", EndsWith("none.txt is not there any more.")));
  EXPECT_THAT(user.advice[1], HasSubstr("XML"));
}

TEST_F(StartPageTest, TheLastTenAreOpenedRemovedAndForgottenByKeys) {
  for (int i = 0; i < 11; ++i) {
    const std::string copy = folder.Path(std::to_string(i) + ".txt");
    std::filesystem::copy(MERIVANE_SAMPLES "/onboarding.txt", copy);
    OpenFile(copy);
    EXPECT_NE(Picture(), "");
  }
  std::filesystem::remove(folder.Path("9.txt"));
  window.hide();
  window.show();
  ASSERT_EQ(Rows().size(), 10U);
  EXPECT_EQ(Rows()[0], "10.txt|model");
  EXPECT_EQ(Rows()[1], "9.txt|model|missing");
  TabTo("recentList");
  Choose(1);
  Key(Qt::Key_Return);
  EXPECT_THAT(user.boxes, ElementsAre(EndsWith("9.txt is not there any more.")));
  Key(Qt::Key_Delete);
  EXPECT_EQ(Rows()[1], "8.txt|model");
  Key(Qt::Key_Return);
  EXPECT_NE(Picture(), "");
  EXPECT_EQ(Rows()[0], "8.txt|model");
  TabTo("recentForgetAll");
  Key(Qt::Key_Space);
  EXPECT_THAT(Rows(), IsEmpty());
  EXPECT_FALSE(User::Find(window, "recentRemove").isEnabled());
}

TEST_F(StartPageTest, OffersTheSamplesBesideTheProgram) {
  auto& samples = User::Get<QListWidget>(window, "samples");
  ASSERT_EQ(samples.count(), 4);
  TabTo("samples");
  samples.setCurrentRow(3);
  EXPECT_EQ(samples.currentItem()->text(), "onboarding.txt");
  Key(Qt::Key_Return);
  EXPECT_NE(Picture(), "");
  EXPECT_EQ(Rows()[0], "onboarding.txt|model");
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
