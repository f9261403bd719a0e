#include <QClipboard>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>
#include <filesystem>

#include "desktop_fixture.h"

namespace merivane::test {

namespace {

class CheckWindowTest : public DesktopTest {
 protected:
  QWidget& form = OpenToProject();
};

TEST_F(CheckWindowTest, CheckListsFindingsThatCanBeFilteredAndCopied) {
  User::Click(form, "cmdCheck");
  EXPECT_THAT(user.boxes, ElementsAre("Please Select Source Celvar Text Filename"));
  const std::string model = MERIVANE_SAMPLES "/festival.txt";
  Browse(form, "cmdBrowseText", model);
  User::Click(form, "cmdCheck");
  QWidget& list = User::Find(window, "checkWindow");
  EXPECT_LT(list.width(), window.screen()->availableSize().width());
  EXPECT_THAT(User::Get<QLabel>(list, "summary").text().toStdString(),
              testing::StartsWith("1 error, 4 warnings, 10 notes. "));
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
  QTest::keyClick(&filter, Qt::Key_Return);
  EXPECT_TRUE(list.isVisible());
  ASSERT_EQ(table.model()->rowCount(), 1);
  EXPECT_GT(all, 1);
  const QRect cell = table.visualRect(table.model()->index(0, 0));
  QTest::mouseClick(table.viewport(), Qt::LeftButton, {}, cell.center());
  EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
            model +
                ":632: warning: object 2 'Weather': No unit uses this object. Leave it out, or "
                "add it to the units that need it.");
  QApplication::clipboard()->clear();
  QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
  EXPECT_THAT(QApplication::clipboard()->text().toStdString(), HasSubstr(":632: warning"));
  QTest::keyClick(&table, Qt::Key_F1);
  EXPECT_THAT(desktop.helpContexts, ElementsAre(7010));
  const QString many = QString("1 of %1 rows").arg(all);
  EXPECT_EQ(User::Get<QLabel>(list, "count").text(), many);
  User::Get<QLineEdit>(list, "filter").clear();
  EXPECT_EQ(User::Get<QLabel>(list, "count").text(), QString("%1 rows").arg(all));
  QTest::keyClick(&table, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text().count("festival.txt:"), all);
}

TEST_F(CheckWindowTest, AListIsSavedAsItIsShownByTheEndingOfItsName) {
  Browse(form, "cmdBrowseText", MERIVANE_SAMPLES "/festival.txt");
  User::Click(form, "cmdCheck");
  QWidget& list = User::Find(window, "checkWindow");
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
  folder.Write("a.csv", "precious");
  user.answers = {QMessageBox::No};
  EXPECT_EQ(save("a.csv"), "precious");
  EXPECT_THAT(user.boxes, ElementsAre(HasSubstr("no name of a list"), HasSubstr("replace")));
}

}  // namespace
}  // namespace merivane::test
