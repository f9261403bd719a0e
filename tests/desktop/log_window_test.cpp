#include <QDateTime>
#include <QLabel>
#include <QTableView>

#include "desktop_fixture.h"

namespace merivane::test {

namespace {

class LogWindowTest : public DesktopTest {
 protected:
  QWidget& OpenByKey() {
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(window.windowHandle(), Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(window.findChildren<QDialog*>("logWindow").size(), 1);
    return User::Find(window, "logWindow");
  }
  // Kind, file and message of each row.
  static std::vector<std::string> RowsOf(QWidget& list) {
    const QAbstractItemModel& model = *User::Get<QTableView>(list, "results").model();
    std::vector<std::string> rows;
    for (int row = 0; row < model.rowCount(); ++row) {
      QStringList texts;
      for (const int column : {0, 2, 3}) texts += model.index(row, column).data().toString();
      rows.push_back(texts.join('|').toStdString());
    }
    return rows;
  }
};

TEST_F(LogWindowTest, HoldsEveryMessageWithItsTimeAndTheFileThatItIsAbout) {
  const QString start = QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm:ss");
  QWidget& form = OpenToProject();
  User::Click(form, "cmdOK");
  Browse(form, "cmdBrowseText", "/models/a.mpp");
  const std::string model = MERIVANE_SAMPLES "/onboarding.txt";
  Browse(form, "cmdBrowseText", model);
  const std::string database = folder.Write("old.mdb", "none");
  user.steps.emplace_back(User::Clicks("CmdOverwrite"));
  Browse(form, "BrowsedbBt", database);
  User::Click(form, "cmdOK");
  QWidget& log = OpenByKey();
  const auto rows = RowsOf(log);
  EXPECT_THAT(rows, ElementsAre("message||Please Select Source Celvar Text Filename",
                                "error|/models/a.mpp|Incorrect File Type",
                                "result|" + database + "|" + database +
                                    " was emptied; the old one is " + database + ".bak",
                                HasSubstr("result|" + database + "|5 tasks, ")));
  const QAbstractItemModel& messages = *User::Get<QTableView>(log, "results").model();
  for (int row = 0; row < messages.rowCount(); ++row) {
    const QString time = messages.index(row, 1).data().toString();
    EXPECT_LE(start, time);
    EXPECT_LE(time, QDateTime::currentDateTime().toString("yyyy-MM-dd HH:mm:ss"));
  }
  EXPECT_THAT(messages.index(1, 4).data().toString().toStdString(), HasSubstr("XML"));
  QTest::keyClick(&log, Qt::Key_F1);
  EXPECT_THAT(desktop.helpContexts, ElementsAre(7012));
}

TEST_F(LogWindowTest, TakesInWhatIsToldWhileItIsOpenAndComesBackWhole) {
  QWidget& log = OpenByKey();
  const std::string list = folder.Write("list.csv", "precious");
  user.answers = {QMessageBox::No, QMessageBox::Yes};
  for (int time = 0; time < 2; ++time) Browse(log, "cmdSave", list);
  const std::string question =
      "question|" + list + "|" + list + " exists. Do you want to replace it? Answer: ";
  EXPECT_THAT(RowsOf(log), ElementsAre(question + "No.", question + "Yes."));
  EXPECT_EQ(User::Get<QLabel>(log, "count").text(), "2 rows");
  EXPECT_EQ(&OpenByKey(), &log);
  delete &log;
  desktop.Run([this] { desktop.ShowMessage({"Behind\r\nit", MessageIcon::kExclamation}); });
  EXPECT_EQ(RowsOf(OpenByKey()).back(), "warning||Behind it");
}

}  // namespace
}  // namespace merivane::test
