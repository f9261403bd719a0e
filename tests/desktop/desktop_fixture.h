// The real main window over a program of its own; the machine behind it is scripted.
#pragma once

#include <gmock/gmock.h>

#include <QDir>
#include <QDropEvent>
#include <QMainWindow>
#include <QMimeData>
#include <QSettings>
#include <QTabWidget>
#include <QUrl>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "database_fixture.h"
#include "desktop/main_window.h"
#include "user.h"

namespace merivane::test {

using namespace desktop;

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
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

  std::string templatePath = TemplateDatabase();
  std::map<std::string, std::string> registry;
  std::vector<std::string> started;
  std::vector<Qt::CursorShape> pointersAtStart;  // while a handler runs
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
  std::string TemplatePath() const override { return templatePath; }
  std::optional<std::string> RegistryDefault(const std::string& key) const override {
    const auto entry = registry.find(key);
    if (entry == registry.end()) return std::nullopt;
    return entry->second;
  }
  bool StartProgram(const std::string& commandLine) override {
    started.push_back(commandLine);
    if (const QCursor* cursor = QApplication::overrideCursor()) {
      pointersAtStart.push_back(cursor->shape());
    }
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
  }

  QWidget& Open(const char* menuItem, const char* form) {
    Trigger(window, menuItem);
    return User::Find(window, form);
  }
  QWidget& OpenToProject() { return Open("mnuIDEF3ToProject", "frmIDEF3ToProject"); }
  QWidget& OpenToModel() { return Open("mnuProjectToIDEF3", "frmProjectToIDEF3"); }
  void Browse(QWidget& form, const char* button, const std::string& name) {
    names.names.push_back(name);
    User::Click(form, button);
  }
  static void SelectTab(QWidget& form, const char* tabs, int index) {
    User::Get<QTabWidget>(form, tabs).setCurrentIndex(index);
  }
  static std::string TextOf(QWidget& form, const char* name) {
    return User::Get<QLineEdit>(form, name).text().toStdString();
  }
  // Onto a control of the form. False where it is refused.
  static bool StartDrop(QWidget& form, const char* control, const char* file) {
    QWidget& place = User::Find(form, control);
    return DropAt(form, place.mapTo(&form, place.rect().center()), {file});
  }
  static bool DropAt(QWidget& target, QPoint at, const QStringList& files) {
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
  static bool Drop(QWidget& form, const char* control, const char* file) {
    const bool taken = StartDrop(form, control, file);
    QTest::qWait(10);
    return taken;
  }
  // A database with the plan of the sample, and the same plan as an MPX file.
  void MakePlan() {
    QWidget& form = OpenToProject();
    SelectTab(form, "SSTabGenerateOpt", 1);
    Browse(form, "cmdBrowseText", MERIVANE_SAMPLES "/onboarding.txt");
    Browse(form, "BrowsedbBt_mpx", plan);
    Browse(form, "cmdBrowseMPX", mpx);
    User::Click(form, "cmdOK");
  }
  std::string Result() { return window.Result().toStdString(); }
  // To the widget in hand.
  void Key(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(window.windowHandle(), key, with);
  }
  // The window that Ctrl+O opens for the file, or that came up last; null where none is open.
  QMainWindow* OpenFile(const std::string& file) {
    names.names.push_back(file);
    Key(Qt::Key_O, Qt::ControlModifier);
    QTest::qWait(10);
    return LastWorkbench();
  }
  QMainWindow* LastWorkbench() {
    const auto open = window.findChildren<QMainWindow*>("workbench");
    return open.isEmpty() ? nullptr : open.last();
  }
  static void Trigger(QWidget& in, const char* action) {
    in.findChild<QAction*>(action)->trigger();
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
  const std::string plan = folder.Path("plan.mdb");
  const std::string mpx = folder.Path("plan.mpx");
  const std::string text = folder.Path("model.txt");
};

}  // namespace merivane::test
