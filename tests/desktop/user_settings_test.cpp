#include "user_settings.h"

#include <QFileDialog>
#include <QMenu>
#include <QToolButton>
#include <filesystem>

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
  Drop(form, "txtCelvarFilename", paths[2].c_str());
  QTest::keyClick(&User::Find(form, "txtCelvarFilename"), Qt::Key_Escape);

  QWidget& again = OpenToProject();
  EXPECT_EQ(TextOf(again, "txtCelvarFilename"), "");
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
  EXPECT_EQ(user.boxes.size(), 1U);
}

TEST_F(RecentFilesTest, APickThereAsksWhatABrowseAsks) {
  MakePlan();
  QWidget& form = OpenToProject();
  SelectTab(form, "SSTabGenerateOpt", 1);
  user.steps.emplace_back(User::Clicks("CmdAppend"));
  User::Click(form, "BrowsedbBt_mpx_recent");
  QTest::keyClick(&MenuOf(form, "BrowsedbBt_mpx_recent"), Qt::Key_Return);
  EXPECT_TRUE(user.steps.empty());
  EXPECT_EQ(TextOf(form, "txtDatabase_mpx"), plan);
  EXPECT_EQ(program.modelToProject.gMspProjId, 2);

  QWidget& model = OpenToModel();
  Browse(model, "cmdBrowseDatabase", plan);
  QTest::keyClick(&model, Qt::Key_Escape);
  std::filesystem::rename(plan, folder.Path("moved.mdb"));
  OpenToModel();
  OpenByKey(model, "cmdBrowseDatabase", "cmdBrowseDatabase_recent");
  QTest::keyClick(&MenuOf(model, "cmdBrowseDatabase_recent"), Qt::Key_1);
  EXPECT_EQ(user.boxes.size(), 1U);
}

TEST_F(RecentFilesTest, EachKindOfFileHasALastFolderThatOutlivesTheProgram) {
  const auto folderOf = [&](DialogFileNames& names, const char* filter, const std::string& pick) {
    std::string start;
    user.steps.emplace_back([&](QDialog& dialog) {
      start = dynamic_cast<QFileDialog&>(dialog).directory().absolutePath().toStdString();
      if (pick.empty()) {
        dialog.reject();
      } else {
        User::Get<QLineEdit>(dialog, "fileNameEdit").setText(QString::fromStdString(pick));
        QTest::keyClick(&User::Find(dialog, "fileNameEdit"), Qt::Key_Return);
      }
    });
    names.Ask({filter, "Pick"}, &window);
    return start;
  };
  const char* text = "Text (*.txt)|*.txt";
  const char* plan = "Plans (*.mdb)|*.mdb";
  const std::string models = folder.Path("models");
  const std::string plans = folder.Path("plans");
  std::filesystem::create_directory(models);
  std::filesystem::create_directory(plans);
  DialogFileNames first;
  folderOf(first, text, models + "/a.txt");
  first.Remember(QString::fromStdString(plans + "/typed.MDB"));
  DialogFileNames second;
  EXPECT_EQ(Native(folderOf(second, text, "")), models);
  EXPECT_EQ(Native(folderOf(second, plan, "")), plans);
  std::filesystem::remove(plans);
  EXPECT_EQ(LastFolder("mdb"), "");
}

TEST_F(RecentFilesTest, ANameStandsOnceAndCanBeForgotten) {
  RecentFiles files("a list", 3);
  for (const char* name : {"a", "b", "a", "c", "d"}) files.Add(name);
  EXPECT_EQ(RecentFiles("a list", 3).Names(), QStringList({"d", "c", "a"}));
  files.Forget("c");
  EXPECT_EQ(files.Names(), QStringList({"d", "a"}));
  files.ForgetAll();
  EXPECT_EQ(files.Names(), QStringList());
}

}  // namespace
}  // namespace merivane::test
