// Measures what a user waits for in the workbench: a file that opens, a click, another choice.
#include <QApplication>
#include <QComboBox>
#include <QMainWindow>
#include <QSettings>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "bench_support.h"
#include "desktop/main_window.h"
#include "model_generator.h"

namespace merivane::bench {
namespace {

using namespace desktop;

class NoNames : public FileNames {
  QString Ask(const FileDialog& /*dialog*/, QWidget* /*parent*/) override { return {}; }
};

// The program with its main window.
class Desk {
 public:
  Desk() {
    main_.Show();
    window_.resize(1280, 800);
    QApplication::processEvents();
  }

  // Gives the opened window.
  QMainWindow& Open(const std::string& file) {
    window_.OpenFiles({QString::fromStdString(file)});
    QApplication::processEvents();
    auto* opened = window_.findChild<QMainWindow*>("workbench");
    if (opened == nullptr) throw std::runtime_error("it doesn't open: " + file);
    return *opened;
  }

 private:
  NoNames names_;
  QtDesktop desktop_{names_};
  Program program_{desktop_};
  frmMain main_{program_};
  MainWindow window_{desktop_, main_};
};

void Tell(const char* what, double seconds, double goal) {
  std::printf("%-44s %8.3f s  (goal %.2f)\n", what, seconds, goal);
}

// Clicks on rows of the outline; each of them draws the diagram of another scenario.
void MeasureOpening(const std::string& file) {
  Desk desk;
  QMainWindow* opened = nullptr;
  Tell("2,000 units open", Seconds([&] { opened = &desk.Open(file); }), 1.5);
  auto* outline = opened->findChild<QTreeWidget*>("outline");
  double slowest = 0, sum = 0;
  int clicks = 0;
  for (QTreeWidgetItemIterator item(outline); *item != nullptr; item += 20, ++clicks) {
    const double seconds = Seconds([&] {
      outline->setCurrentItem(*item);
      QApplication::processEvents();
    });
    slowest = std::max(slowest, seconds);
    sum += seconds;
  }
  Tell("a click, on average", sum / clicks, 0.05);
  Tell("a click, the slowest", slowest, 0.05);
}

void MeasureChoice(const std::string& file) {
  Desk desk;
  QMainWindow& opened = desk.Open(file);
  auto* box = opened.findChild<QComboBox*>("choice1");
  if (box == nullptr) throw std::runtime_error("nothing is to be chosen");
  const double seconds = Seconds([&] {
    emit box->activated(1);
    QApplication::processEvents();
  });
  box = opened.findChild<QComboBox*>("choice1");
  if (box->currentIndex() != 1) throw std::runtime_error("the choice isn't made");
  Tell("another choice, 1,000 units", seconds, 0.3);
}

}  // namespace
}  // namespace merivane::bench

int main(int argc, char** argv) try {
  using namespace merivane::bench;
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  const TemporaryFolder folder;
  QSettings::setDefaultFormat(QSettings::IniFormat);
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope,
                     QString::fromStdString(folder.File("settings")));
  QApplication::setOrganizationName("merivane");
  QApplication::setQuitOnLastWindowClosed(false);
  WriteFile(folder.File("large.txt"), GenerateModel(2000));
  WriteFile(folder.File("choice.txt"), GenerateChoice(1000));
  MeasureOpening(folder.File("large.txt"));
  MeasureChoice(folder.File("choice.txt"));
  return 0;
} catch (const std::exception& error) {
  std::fprintf(stderr, "%s\n", error.what());
  return 1;
}
