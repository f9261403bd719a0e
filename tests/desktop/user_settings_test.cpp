#include "user_settings.h"

#include <QMenu>

#include "desktop_fixture.h"

namespace merivane::test {

namespace {

class RecentFilesTest : public DesktopTest {
 protected:
  static QMenu& MenuOf(QWidget& form, const char* button) {
    QWidget& recent = User::Find(form, button);
    return *recent.findChild<QMenu*>("recentFiles");
  }
  // What the drop-down holds; it is left open.
  static std::vector<std::string> OpenByKey(QWidget& form, const char* box, const char* button) {
    QTest::keyClick(&User::Find(form, box), Qt::Key_Down, Qt::AltModifier);
    std::vector<std::string> names;
    for (const QAction* entry : MenuOf(form, button).actions()) {
      names.push_back(entry->toolTip().toStdString());
    }
    return names;
  }
};

TEST_F(RecentFilesTest, ABrowseButtonOffersTheLastFiveFilesThatItsBoxTook) {
  QWidget& form = OpenToProject();
  EXPECT_FALSE(User::Find(form, "cmdBrowseText_recent").isEnabled());
  std::vector<std::string> paths;
  for (const char* name : {"1.txt", "2.txt", "3.txt", "4.txt", "5.txt", "6 & 7.txt"}) {
    paths.push_back(folder.Path(name));
    Browse(form, "cmdBrowseText", " " + paths.back());
  }
  Browse(form, "cmdBrowseText", folder.Path("refused.doc"));
  Browse(form, "cmdBrowseText", "");
  Drop(form, "txtCelvarFilename", paths[2]);
  QTest::keyClick(&User::Find(form, "txtCelvarFilename"), Qt::Key_Escape);

  QWidget& again = OpenToProject();
  EXPECT_FALSE(User::Find(again, "BrowsedbBt_recent").isEnabled());
  EXPECT_THAT(OpenByKey(again, "txtCelvarFilename", "cmdBrowseText_recent"),
              ElementsAre(paths[2], paths[5], paths[4], paths[3], paths[1]));
  QMenu& menu = MenuOf(again, "cmdBrowseText_recent");
  EXPECT_THAT(menu.actions()[1]->text().toStdString(), EndsWith("6 && 7.txt"));
  QTest::keyClick(&menu, Qt::Key_2);
  EXPECT_FALSE(menu.isVisible());
  EXPECT_EQ(TextOf(again, "txtCelvarFilename"), paths[5]);
  EXPECT_EQ(OpenByKey(again, "cmdBrowseText", "cmdBrowseText_recent").front(), paths[5]);
  QTest::keyClick(&menu, Qt::Key_Escape);
  EXPECT_TRUE(again.isVisible());
  EXPECT_EQ(Boxes().size(), 1U);
}

TEST_F(RecentFilesTest, APickThereAsksWhatABrowseAsks) {
  MakePlan();
  QWidget& form = OpenToProject();
  SelectTab(form, 1);
  user.steps.emplace_back([&](QDialog& dialog) {
    EXPECT_EQ(TextOf(dialog, "fileName"), plan);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible() && !form.isVisible());
    User::Click(dialog, "CmdAppend");
  });
  User::Click(form, "BrowsedbBt_mpx_recent");
  QTest::keyClick(&MenuOf(form, "BrowsedbBt_mpx_recent"), Qt::Key_Return);
  EXPECT_TRUE(form.isVisible() && form.isAncestorOf(window.focusWidget()));
  EXPECT_EQ(TextOf(form, "txtDatabase_mpx"), plan);
  EXPECT_EQ(program.modelToProject.gMspProjId, 2);
}

}  // namespace
}  // namespace merivane::test
