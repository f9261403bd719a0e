#include <QClipboard>
#include <QDateTime>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>

#include "desktop_fixture.h"

namespace merivane::test {

namespace {

using ::testing::Ge;
using ::testing::Le;

class ResultTableTest : public DesktopTest {
 protected:
  QWidget& Check(QWidget& form) {
    Browse(form, "cmdBrowseText", festival);
    User::Click(form, "cmdCheck");
    return User::Find(window, "checkWindow");
  }
  QWidget& OpenLog() {
    Press(Qt::CTRL | Qt::Key_L);
    EXPECT_EQ(window.findChildren<QDialog*>("logWindow").size(), 1);
    return User::Find(window, "logWindow");
  }
  // Kind, file and message.
  static std::vector<std::string> Told(QWidget& log) { return RowsOf(log, "results", {0, 2, 3}); }
};

TEST_F(ResultTableTest, CheckListsFindingsThatCanBeFilteredAndCopied) {
  QWidget& form = OpenToProject();
  User::Click(form, "cmdCheck");
  EXPECT_THAT(Boxes(), ElementsAre("Please Select Source Celvar Text Filename"));
  QWidget& list = Check(form);
  EXPECT_LT(list.width(), window.screen()->availableSize().width());
  EXPECT_THAT(TextOf(list, "summary"), StartsWith("1 error, 4 warnings, 10 notes. "));
  auto& table = User::Get<QTableView>(list, "results");
  const int all = table.model()->rowCount();
  for (const int width : {300, 1000}) {
    list.resize(width, 300);
    QCoreApplication::processEvents();
    EXPECT_GT(table.columnWidth(3), table.fontMetrics().averageCharWidth() * 20);
  }
  EXPECT_EQ(table.horizontalScrollBar()->maximum(), 0);
  ASSERT_TRUE(QTest::qWaitForWindowActive(&list));
  QWidget& filter = User::Find(list, "filter");
  filter.setFocus();
  QTest::keyClicks(&filter, "weather");
  ASSERT_EQ(table.model()->rowCount(), 1);
  const QRect cell = table.visualRect(table.model()->index(0, 0));
  QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, cell.center());
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
            festival +
                ":632: warning: object 2 'Weather': No unit uses this object. Leave it out, or "
                "add it to the units that need it.");
  QTest::keyClick(&table, Qt::Key_F1);
  EXPECT_THAT(desktop.helpContexts, ElementsAre(7010));
  EXPECT_EQ(TextOf(list, "count"), "1 of " + std::to_string(all) + " rows");
  User::Get<QLineEdit>(list, "filter").clear();
  QTest::keyClick(&table, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text().count("festival.txt:"), all);
}

TEST_F(ResultTableTest, AListIsSavedAsItIsShownByTheEndingOfItsName) {
  QWidget& list = Check(OpenToProject());
  User::Get<QLineEdit>(list, "filter").setText("weather");
  const auto save = [&](const char* name) {
    Browse(list, "cmdSave", folder.Path(name));
    return std::filesystem::exists(folder.Path(name)) ? ReadFile(folder.Path(name)) : "none";
  };
  const std::string sentence = "No unit uses this object.";
  const std::string advice = "Leave it out, or add it to the units that need it.";
  EXPECT_EQ(save("a.csv"),
            "Kind,Line,Element,Finding,What to do\r\nwarning,632,object 2 'Weather'," + sentence +
                ",\"" + advice + "\"\r\n");
  EXPECT_EQ(save("a.TXT"),
            "Kind\tLine\tElement\tFinding\tWhat to do\nwarning\t632\tobject 2 "
            "'Weather'\t" +
                sentence + "\t" + advice + "\n");
  EXPECT_THAT(save("a.json"), HasSubstr("\"Finding\": \"" + sentence + "\""));
  EXPECT_EQ(save("a.doc"), "none");
  EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("no name of a list")));
}

TEST_F(ResultTableTest, TheLogHoldsEveryMessageWithItsTimeAndTheFileThatItIsAbout) {
  const QString start = QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm:ss");
  QWidget& form = OpenToProject();
  User::Click(form, "cmdOK");
  Browse(form, "cmdBrowseText", "/models/a.mpp");
  Browse(form, "cmdBrowseText", model);
  const std::string database = folder.Write("old.mdb", "none");
  Browse(form, "BrowsedbBt", database, User::Clicks("CmdOverwrite"));
  User::Click(form, "cmdOK");
  QWidget& log = OpenLog();
  EXPECT_EQ(Boxes().size(), 2U);
  EXPECT_THAT(Told(log), ElementsAre("message||Please Select Source Celvar Text Filename",
                                     "error|/models/a.mpp|Incorrect File Type",
                                     "result|" + database + "|" + database +
                                         " was emptied; the old one is " + database + ".bak",
                                     HasSubstr("result|" + database + "|5 tasks, ")));
  const QString now = QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm:ss");
  EXPECT_THAT(RowsOf(log, "results", {1}),
              Each(AllOf(Ge(start.toStdString()), Le(now.toStdString()))));
  EXPECT_THAT(RowsOf(log, "results", {4}).at(1), HasSubstr("XML"));
  QTest::keyClick(&log, Qt::Key_F1);
  EXPECT_THAT(desktop.helpContexts, ElementsAre(7012));
}

TEST_F(ResultTableTest, TheLogTakesInWhatIsToldWhileItIsOpenAndComesBackWhole) {
  QWidget& log = OpenLog();
  const std::string list = folder.Write("list.csv", "precious");
  user.answers = {QMessageBox::No, QMessageBox::Yes};
  for (int time = 0; time < 2; ++time) {
    EXPECT_EQ(ReadFile(list), "precious");
    Browse(log, "cmdSave", list);
  }
  EXPECT_THAT(ReadFile(list), StartsWith("Kind,"));
  const std::string question =
      "question|" + list + "|" + list + " exists. Do you want to replace it? Answer: ";
  EXPECT_THAT(Told(log), ElementsAre(question + "No.", question + "Yes."));
  EXPECT_EQ(TextOf(log, "count"), "2 rows");
  EXPECT_EQ(&OpenLog(), &log);
  delete &log;
  desktop.Run([this] { desktop.ShowMessage({"Behind\r\nit", MessageIcon::kExclamation}); });
  EXPECT_EQ(Told(OpenLog()).back(), "warning||Behind it");
  EXPECT_EQ(Boxes().size(), 3U);
}

}  // namespace
}  // namespace merivane::test
