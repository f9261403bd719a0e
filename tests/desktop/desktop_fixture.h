// The real main window over a program of its own; the machine behind it is scripted.
#pragma once

#include <gmock/gmock.h>

#include <QDir>
#include <QDropEvent>
#include <QMainWindow>
#include <QMimeData>
#include <QSettings>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QUrl>

#include "changed_text.h"
#include "database_fixture.h"
#include "desktop/main_window.h"
#include "picture_view.h"
#include "user.h"

namespace merivane::test {

using namespace desktop;

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ContainsRegex;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

// A path as the system writes it.
inline std::string Native(const std::string& path) {
  return QDir::toNativeSeparators(QString::fromStdString(path)).toStdString();
}

class ScriptedNames : public FileNames {
 public:
  std::deque<std::string> names;
  std::vector<FileDialog> asked;
  std::vector<QWidget*> parents;  // of each dialog
  QString Ask(const FileDialog& dialog, QWidget* parent) override {
    asked.push_back(dialog);
    parents.push_back(parent);
    if (names.empty()) return {};
    const std::string name = names.front();
    names.pop_front();
    return QString::fromStdString(name);
  }
};

class TestDesktop : public QtDesktop {
 public:
  using QtDesktop::QtDesktop;

  std::map<std::string, std::string> registry;
  std::vector<std::string> started;
  Qt::CursorShape pointerAtStart = Qt::ArrowCursor;
  std::vector<int> helpContexts;
  int webPageResult = 2;  // a failure
  std::vector<std::string> opened;
  std::int64_t ticksPerLook = 0;  // time stands still
  std::function<void(const RunProgress&)> onProgress;

  std::int64_t Ticks() const override { return ticks_ += ticksPerLook; }
  void ShowProgress(const RunProgress& progress) override {
    QtDesktop::ShowProgress(progress);
    if (onProgress) onProgress(progress);
  }
  std::string TemplatePath() const override { return TemplateDatabase(); }
  std::optional<std::string> RegistryDefault(const std::string& key) const override {
    const auto entry = registry.find(key);
    if (entry == registry.end()) return std::nullopt;
    return entry->second;
  }
  bool StartProgram(const std::string& commandLine) override {
    started.push_back(commandLine);
    if (const auto* pointer = QApplication::overrideCursor()) pointerAtStart = pointer->shape();
    return true;
  }
  int OpenWebPage(const std::string& url) override {
    opened.push_back(url);
    return webPageResult;
  }
  void ShowHelp(const std::string& /*helpFile*/, int /*command*/, int context) override {
    helpContexts.push_back(context);
  }

 private:
  mutable std::int64_t ticks_ = 0;
};

class DesktopTest : public ::testing::Test {
 protected:
  DesktopTest() {
    desktop.OnEnd = [this] { ++ends; };
    main.Show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  }
  ~DesktopTest() override {
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(user.steps.empty());
    EXPECT_THAT(user.boxes, IsEmpty());  // that no test expects
  }
  // What was told since the last look.
  std::vector<std::string> Boxes() { return std::exchange(user.boxes, {}); }

  QWidget& Open(const char* menuItem, const char* form) {
    Trigger(window, menuItem);
    return User::Find(window, form);
  }
  QWidget& OpenToProject() { return Open("mnuIDEF3ToProject", "frmIDEF3ToProject"); }
  QWidget& OpenToModel() { return Open("mnuProjectToIDEF3", "frmProjectToIDEF3"); }
  // With the answer to the dialog that asks about the file.
  void Browse(QWidget& form, const char* button, const std::string& name,
              const std::function<void(QDialog&)>& answer = {}) {
    names.names.push_back(name);
    if (answer) user.steps.push_back(answer);
    User::Click(form, button);
  }
  using Files = std::initializer_list<std::pair<const char*, std::string>>;
  // Browses by each button, and translates.
  void Translate(QWidget& form, Files files) {
    for (const auto& [button, name] : files) Browse(form, button, name);
    User::Click(form, "cmdOK");
  }
  static void SelectTab(QWidget& form, int index) {
    form.findChild<QTabWidget*>()->setCurrentIndex(index);
  }
  // Of a box or a label.
  static std::string TextOf(QWidget& form, const char* name) {
    return User::Find(form, name).property("text").toString().toStdString();
  }
  // The texts of each row of a table that is shown, with bars between them.
  static std::vector<std::string> RowsOf(QWidget& in, const char* table,
                                         const std::vector<int>& columns) {
    const QAbstractItemModel& model = *User::Get<QAbstractItemView>(in, table).model();
    std::vector<std::string> rows;
    for (int row = 0; row < model.rowCount(); ++row) {
      QStringList texts;
      for (const int column : columns) texts += model.index(row, column).data().toString();
      rows.push_back(texts.join('|').toStdString());
    }
    return rows;
  }
  // False where it is refused.
  static bool StartDrop(QWidget& target, QPoint at, const QStringList& files) {
    QList<QUrl> urls;
    for (const QString& file : files) urls += QUrl::fromLocalFile(file);
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &drop);
    return enter.isAccepted();
  }
  static void DropAt(QWidget& target, QPoint at, const QStringList& files) {
    EXPECT_TRUE(StartDrop(target, at, files));
    QTest::qWait(10);
  }
  static void Drop(QWidget& form, const char* control, const std::string& file) {
    QWidget& place = User::Find(form, control);
    DropAt(form, place.mapTo(&form, place.rect().center()), {QString::fromStdString(file)});
  }
  // A database with the plan of the sample, and the same plan as an MPX file.
  void MakePlan() {
    QWidget& form = OpenToProject();
    SelectTab(form, 1);
    Translate(form, {{"cmdBrowseText", model}, {"BrowsedbBt_mpx", plan}, {"cmdBrowseMPX", mpx}});
  }
  // That plan, with another name of its second task.
  std::string ChangedMpx() {
    return folder.Write("changed.mpx", With(ReadFile(mpx), {{"Set up", "Build"}}));
  }
  std::string Result() { return window.Result().toStdString(); }
  // To the widget in hand.
  template <typename... Keys>
  void Press(Keys... keys) {
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    for (const QKeyCombination key : {QKeyCombination(keys)...}) {
      QTest::keyClick(window.windowHandle(), key.key(), key.keyboardModifiers());
    }
  }
  void OpenFile(const std::string& file) {
    names.names.push_back(file);
    Press(Qt::CTRL | Qt::Key_O);
    QTest::qWait(10);
  }
  QMainWindow& Opened(const std::string& file) {
    OpenFile(file);
    if (LastWorkbench() == nullptr) throw std::runtime_error("no window for " + file);
    return *LastWorkbench();
  }
  // Brings a changed plan back from the window in front; the dialog that opens.
  QWidget& BringBack(const std::string& changed) {
    names.names.push_back(changed);
    Press(Qt::CTRL | Qt::Key_B);
    return User::Find(window, "frmProjectToIDEF3");
  }
  // Null where none is open.
  QMainWindow* LastWorkbench() {
    const auto open = window.findChildren<QMainWindow*>("workbench");
    return open.isEmpty() ? nullptr : open.last();
  }
  static void Search(QMainWindow& opened, const char* text) {
    QTest::keyClicks(&User::Find(opened, "outlineSearch"), text);
  }
  static QTreeWidget& Outline(QMainWindow& opened) {
    return User::Get<QTreeWidget>(opened, "outline");
  }
  static std::string Chosen(QMainWindow& opened) {
    const QTreeWidgetItem* item = Outline(opened).currentItem();
    return item == nullptr ? "" : item->text(0).toStdString();
  }
  // The element that is chosen, and what is marked in both pictures.
  static std::vector<std::string> Shown(QMainWindow& opened) {
    return {Chosen(opened), Marked(opened, "diagram"), Marked(opened, "chart")};
  }
  static std::string Marked(QMainWindow& opened, const char* view) {
    const QString marked = User::Get<PictureView>(opened, view).Marked();
    return marked.section(" (", 0, 0).toStdString();
  }
  static std::string Page(QMainWindow& opened) {
    return User::Get<QTextBrowser>(opened, "properties").toPlainText().toStdString();
  }
  static void Trigger(QWidget& in, const char* action) {
    in.findChild<QAction*>(action)->trigger();
  }
  // An item that asks for a file.
  void TriggerFor(QWidget& in, const char* action, const std::string& file) {
    names.names.push_back(file);
    Trigger(in, action);
  }
  void Close(QMainWindow& opened) {
    opened.parentWidget()->close();
    EXPECT_TRUE(QTest::qWaitFor([this] { return LastWorkbench() == nullptr; }));
    QCoreApplication::processEvents();  // what is behind it comes up
  }
  // What a run does at its look at the clock, in each stage or in one of them.
  void WhileRunning(const std::function<void()>& action, const std::string& stage = "") {
    desktop.ticksPerLook = 500;  // long enough for a bar at the first look
    desktop.onProgress = [=](const RunProgress& progress) {
      if (stage.empty() || progress.stage == stage) action();
    };
  }
  bool ShowsProgress() { return window.findChild<QDialog*>("progress") != nullptr; }

  // Before a window looks for the place that the one of an earlier test had.
  struct NoSettings {
    NoSettings() { QSettings().clear(); }
  } noSettings;
  TemporaryFolder folder;
  ScriptedNames names;
  TestDesktop desktop{names};
  Program program{desktop};
  frmMain main{program};
  MainWindow window{desktop, main};
  User user;
  int ends = 0;
  const std::string model = MERIVANE_SAMPLES "/onboarding.txt";
  const std::string festival = MERIVANE_SAMPLES "/festival.txt";
  const std::string plan = folder.Path("plan.mdb");
  const std::string mpx = folder.Path("plan.mpx");
  const std::string text = folder.Path("model.txt");
};

}  // namespace merivane::test
