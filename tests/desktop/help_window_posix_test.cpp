#include <QListWidget>
#include <QProcess>

#include "desktop/help_window.h"
#include "desktop_fixture.h"

namespace merivane::test {

namespace {

constexpr const char* kSiteMap =
    R"(<HTML><BODY><UL>
<LI><OBJECT type="text/sitemap"><param name="Name" value="Start &amp; go"><param name="Local" value="start.html"></OBJECT>
<UL><LI><OBJECT type="text/sitemap"><param name="Name" value="Plans"><param name="Local" value="plans.html"></OBJECT></UL>
</UL></BODY></HTML>)";

// A help file of two pages, made by the compiler that makes the program's.
class HelpWindowTest : public ::testing::Test {
 protected:
  HelpWindowTest() {
    folder.Write("toc.hhc", kSiteMap);
    folder.Write("index.hhk", kSiteMap);
    folder.Write("start.html", R"(<html><body>First <a href="plans.html">on</a></body></html>)");
    folder.Write("plans.html", "<html><body>Second</body></html>");
    folder.Write("small.hhp",
                 "[OPTIONS]\nCompiled file=small.chm\nContents file=toc.hhc\n"
                 "Index file=index.hhk\nDefault topic=start.html\nTitle=Small help\n"
                 "[FILES]\nstart.html\nplans.html\n"
                 "[ALIAS]\nplans=plans.html\n[MAP]\n#define plans 2000\n");
    QProcess compiler;
    compiler.setWorkingDirectory(QString::fromStdString(folder.Path("")));
    compiler.start("chmcmd", {"small.hhp"});
    EXPECT_TRUE(compiler.waitForFinished());
  }
  std::string Text() {
    return User::Get<QTextBrowser>(window, "helpTopic").toPlainText().toStdString();
  }

  TemporaryFolder folder;
  std::string file = folder.Path("small.chm");
  HelpWindow window;
};

TEST_F(HelpWindowTest, ShowsContentsIndexAndTheTopicOfANumber) {
  ASSERT_TRUE(window.Open(QString::fromStdString(file)));
  EXPECT_EQ(window.windowTitle(), "Small help");
  auto& contents = User::Get<QTreeWidget>(window, "helpContents");
  ASSERT_EQ(contents.topLevelItemCount(), 1);
  EXPECT_EQ(contents.topLevelItem(0)->text(0), "Start & go");
  EXPECT_EQ(contents.topLevelItem(0)->child(0)->text(0), "Plans");

  window.ShowContext(2000);
  EXPECT_EQ(Text(), "Second");
  EXPECT_EQ(contents.currentItem(), contents.topLevelItem(0)->child(0));
  window.ShowContext(7);  // no page has it
  EXPECT_EQ(Text(), "First on");

  window.ShowContext(2000);
  window.ShowContents();
  EXPECT_EQ(Text(), "First on");
  EXPECT_EQ(contents.currentItem(), contents.topLevelItem(0));

  window.ShowIndex();
  auto& index = User::Get<QListWidget>(window, "helpIndex");
  EXPECT_TRUE(index.isVisible());
  QTest::keyClicks(&User::Find(window, "helpIndexText"), "plan");
  EXPECT_FALSE(index.item(0)->isHidden());
  EXPECT_TRUE(index.item(1)->isHidden());
  index.setCurrentRow(0);
  EXPECT_EQ(Text(), "Second");
}

TEST_F(HelpWindowTest, DamagedFilesAreRefusedOrShownWithGaps) {
  const std::string whole = ReadFile(file);
  for (std::size_t size = 0; size < whole.size(); size += 97) {
    const std::string cut = folder.Write("cut.chm", whole.substr(0, size));
    HelpWindow other;
    if (!other.Open(QString::fromStdString(cut))) continue;
    other.ShowContents();
    other.ShowContext(2000);
  }
  // Without one of the two lists that a number is looked up in.
  for (const auto& [list, name] : {std::pair{"/#IVB", "/#IV~"}, {"/#STRINGS", "/#STRING~"}}) {
    const std::string lacking = With(whole, {{list, name}});
    HelpWindow other;
    ASSERT_TRUE(other.Open(QString::fromStdString(folder.Write("lacking.chm", lacking))));
    other.ShowContext(2000);
    EXPECT_EQ(User::Get<QTextBrowser>(other, "helpTopic").toPlainText(), "First on");
  }
  ASSERT_TRUE(window.Open(QString::fromStdString(file)));
  EXPECT_FALSE(window.Open(QString::fromStdString(folder.Path("none.chm"))));
  window.ShowContext(2000);
  EXPECT_EQ(Text(), "Second");
}

TEST_F(HelpWindowTest, AMissingFileIsToldAndTheProgramGoesOn) {
  User user;
  ScriptedNames names;
  QtDesktop desktop(names);
  desktop.ShowHelp(folder.Path("none.chm"), kHelpContents, 0);
  EXPECT_THAT(user.boxes, ElementsAre("Cannot open the help file: " + folder.Path("none.chm")));
  desktop.ShowHelp(file, kHelpContext, 2000);
  EXPECT_EQ(desktop.Help()->Topic(), "plans.html");
}

}  // namespace
}  // namespace merivane::test
