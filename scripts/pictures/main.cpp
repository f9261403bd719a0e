// Makes a picture of every window: merivane_window_pictures FOLDER. A picture of one colour is a
// failure.
#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QSettings>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>

#include "desktop/help_window.h"
#include "desktop/main_window.h"

namespace {

using namespace merivane::desktop;

// Always the same, so that a picture changes with its window alone.
constexpr const char* kScratch = "/tmp/bakery";

class Names : public FileNames {
 public:
  QStringList names;
  QString Ask(const FileDialog& /*dialog*/, QWidget* /*parent*/) override {
    if (names.empty()) return {};
    return names.takeFirst();
  }
};

// Paths as a machine with both programs has them.
class PictureDesktop : public QtDesktop {
 public:
  using QtDesktop::QtDesktop;
  std::optional<std::string> RegistryDefault(const std::string& key) const override {
    if (key == kCelvarKey) return "C:\\Program Files\\Vorn\\Celvar7\\celvar.exe \"%1\"";
    if (key == kProject2000Key) return "C:\\Office\\Office10\\winproj.exe \"%1\"";
    return std::nullopt;
  }
};

class Studio {
 public:
  Studio(const QString& samples, QString folder) : folder_(std::move(folder)) {
    QDir(kScratch).removeRecursively();
    QDir().mkpath(kScratch);
    QDir().mkpath(folder_);
    for (const char* name : {"bakery.txt", "festival.txt"}) {
      QFile::copy(samples + '/' + name, Scratch(name));
    }
  }
  ~Studio() { QDir(kScratch).removeRecursively(); }

  bool TakeAll();

 private:
  void Take(QWidget& widget, const QString& name);
  // Takes a picture of the dialog that the next click opens, then lets `then` answer it.
  void TakeNext(const QString& name, const std::function<void(QDialog&)>& then);
  QWidget& Open(const char* item, const char* form);
  void Browse(QWidget& form, const char* button, const QString& name);
  static void Click(QWidget& window, const char* name) {
    window.findChild<QAbstractButton*>(name)->click();
  }
  // Takes a picture of the list that the button opens.
  void TakeList(QWidget& form, const char* button, const char* list, const QString& name);
  static QString Scratch(const char* name) { return QString(kScratch) + '/' + name; }
  void TakeToProject();
  void TakeToModel();
  void TakeMerge(QWidget& form);
  QMainWindow* OpenFile(const char* item, const QString& file);
  QMainWindow* Opened();
  void TakeWorkbench();
  void TakeLog();
  void TakeRest();

  QString folder_;
  bool good_ = true;
  Names names_;
  PictureDesktop desktop_{names_};
  Program program_{desktop_};
  frmMain main_{program_};
  MainWindow window_{desktop_, main_};
};

void Studio::Take(QWidget& widget, const QString& name) {
  QTest::qWait(100);
  const QImage picture = widget.grab().toImage();
  const QRgb first = picture.pixel(0, 0);
  bool empty = true;
  for (int y = 0; y < picture.height() && empty; ++y) {
    for (int x = 0; x < picture.width() && empty; ++x) empty = picture.pixel(x, y) == first;
  }
  const QString file = folder_ + '/' + name + ".png";
  if (!empty && picture.convertToFormat(QImage::Format_RGB888).save(file)) return;
  std::fprintf(stderr, "%s is empty or can't be written\n", qPrintable(file));
  good_ = false;
}

void Studio::TakeNext(const QString& name, const std::function<void(QDialog&)>& then) {
  QTimer::singleShot(300, &window_, [this, name, then] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) {
      std::fprintf(stderr, "no dialog for %s\n", qPrintable(name));
      good_ = false;
      return;
    }
    then(*dialog);
  });
}

QWidget& Studio::Open(const char* item, const char* form) {
  window_.findChild<QAction*>(item)->trigger();
  return *window_.findChild<QWidget*>(form);
}

void Studio::Browse(QWidget& form, const char* button, const QString& name) {
  names_.names.push_back(name);
  Click(form, button);
}

void Studio::TakeList(QWidget& form, const char* button, const char* list, const QString& name) {
  Click(form, button);
  auto* window = window_.findChild<QDialog*>(list);
  if (window == nullptr) {
    std::fprintf(stderr, "no window for %s\n", qPrintable(name));
    good_ = false;
    return;
  }
  Take(*window, name);
  window->close();
}

// A name, a duration and a new task.
void ChangePlan(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadWrite)) return;
  QByteArray plan = file.readAll();
  plan.replace("Bake the loaves,0.50d", "Bake the rye loaves,0.75d");
  const qsizetype last = plan.lastIndexOf("\r\n70,");
  plan.insert(last + 2,
              "70,9,9,Feed the sourdough,0.25d,Yes,1,,\"1\"" + QByteArray(34, ',') + "\r\n");
  file.seek(0);
  file.write(plan);
}

void Studio::TakeToProject() {
  QWidget& form = Open("mnuIDEF3ToProject", "frmIDEF3ToProject");
  Browse(form, "cmdBrowseText", Scratch("festival.txt"));
  TakeList(form, "cmdCheck", "checkWindow", "check");
  Browse(form, "cmdBrowseText", Scratch("bakery.txt"));
  Browse(form, "BrowsedbBt", Scratch("bakery.mdb"));
  Take(window_, "model-to-project");
  form.findChild<QTabWidget*>("SSTabGenerateOpt")->setCurrentIndex(1);
  Browse(form, "cmdBrowseMPX", Scratch("bakery.mpx"));
  Browse(form, "BrowsedbBt_mpx", Scratch("interim.mdb"));
  Take(window_, "model-to-mpx");
  form.findChild<QTabWidget*>("SSTabGenerateOpt")->setCurrentIndex(2);
  Browse(form, "cmdBrowseXML", Scratch("bakery.xml"));
  Take(window_, "model-to-xml");
  form.findChild<QTabWidget*>("SSTabGenerateOpt")->setCurrentIndex(1);
  TakeNext("choose", [this](QDialog& dialog) {
    QTest::keyClick(dialog.findChild<QWidget*>("List1"), Qt::Key_Down);
    Take(dialog, "choose");
    Click(dialog, "Command1");
  });
  Click(form, "cmdOK");
  Take(window_, "main");
  Open("mnuIDEF3ToProject", "frmIDEF3ToProject");
  TakeNext("append", [this](QDialog& dialog) {
    Take(dialog, "append");
    Click(dialog, "CmdAppend");
  });
  Browse(form, "BrowsedbBt", Scratch("interim.mdb"));
  Click(form, "cmdCancel");
}

// Of the preview that is open: its pictures.
void Studio::TakeMerge(QWidget& form) {
  const QSize before = window_.size();
  window_.resize(1200, 800);
  Click(form, "cmdPreview");
  auto* preview = window_.findChild<QDialog*>("previewWindow");
  if (preview == nullptr) return;
  Click(*preview, "cmdShow");
  QMainWindow* merge = Opened();
  if (merge == nullptr) return;
  QTest::keyClicks(merge->findChild<QWidget*>("outlineSearch"), "rye");
  Take(window_, "merge-pictures");
  merge->parentWidget()->close();
  QTest::qWait(100);
  window_.resize(before);
}

void Studio::TakeToModel() {
  QWidget& form = Open("mnuProjectToIDEF3", "frmProjectToIDEF3");
  Browse(form, "cmdBrowseText", Scratch("bakery-again.txt"));
  Browse(form, "cmdBrowseDatabase", Scratch("interim.mdb"));
  QTest::keyClick(form.findChild<QWidget*>("comboProject"), Qt::Key_Down);
  Take(window_, "project-to-model");
  form.findChild<QTabWidget*>("SSTabInput")->setCurrentIndex(1);
  Browse(form, "cmdBrowseMPX", Scratch("bakery.mpx"));
  TakeNext("merge", [this](QDialog& dialog) {
    dialog.findChild<QRadioButton*>("OptMerge")->click();
    QTest::keyClick(dialog.findChild<QWidget*>("comboInterimProject"), Qt::Key_Down);
    Take(dialog, "merge");
    Click(dialog, "CmdOK");
  });
  Browse(form, "cmdInterimDB", Scratch("interim.mdb"));
  Take(window_, "mpx-to-model");
  ChangePlan(Scratch("bakery.mpx"));
  TakeList(form, "cmdPreview", "previewWindow", "preview");
  TakeMerge(form);
  form.findChild<QLineEdit*>("txtCelvarFilename")->clear();
  TakeNext("message", [this](QDialog& box) {
    Take(box, "message");
    box.accept();
  });
  Click(form, "cmdOK");
  Browse(form, "cmdBrowseText", Scratch("bakery-again.txt"));
  TakeList(form, "cmdOK", "proofWindow", "proof");
}

// Opens the file by that item of the menu; null where no window comes up.
QMainWindow* Studio::OpenFile(const char* item, const QString& file) {
  names_.names.push_back(file);
  window_.findChild<QAction*>(item)->trigger();
  return Opened();
}

QMainWindow* Studio::Opened() {
  QTest::qWait(100);
  const auto opened = window_.findChildren<QMainWindow*>("workbench");
  if (!opened.isEmpty()) return opened.last();
  std::fputs("no window with an opened file\n", stderr);
  good_ = false;
  return nullptr;
}

void Studio::TakeWorkbench() {
  const QSize before = window_.size();
  window_.resize(1200, 800);
  for (const auto& [item, name] :
       {std::pair{"mnuOpen", "workbench"}, {"mnuProcessDiagram", "view-diagram"}}) {
    QMainWindow* opened = OpenFile(item, Scratch("festival.txt"));
    if (opened == nullptr) return;
    opened->parentWidget()->showMaximized();
    QTest::keyClicks(opened->findChild<QWidget*>("outlineSearch"), "raise");
    Take(window_, name);
    opened->parentWidget()->close();
    QTest::qWait(100);
  }
  window_.resize(before);
}

void Studio::TakeLog() {
  window_.findChild<QAction*>("mnuMessageLog")->trigger();
  auto* log = window_.findChild<QDialog*>("logWindow");
  Take(*log, "log");
  log->close();
}

void Studio::TakeRest() {
  QWidget& paths = Open("mnuPath", "frmOptions");
  Take(paths, "paths");
  Click(paths, "cmdOK");
  QWidget& about = Open("mnuAboutMerivane", "frmAbout");
  Take(about, "about");
  Click(about, "cmdOk");
  main_.splash.Show();
  Take(*window_.findChild<QWidget*>("frmSplash"), "splash");
  main_.splash.Unload();
  const std::string help = desktop_.AppPath() + "/merivane.chm";
  if (!QFile::exists(QString::fromStdString(help))) {
    std::fprintf(stderr, "%s is missing\n", help.c_str());
    good_ = false;
    return;
  }
  desktop_.ShowHelp(help, kHelpContents, 0);
  QTest::qWait(100);
  Take(*desktop_.Help(), "help");
  desktop_.Help()->close();
}

bool Studio::TakeAll() {
  desktop_.Run([this] { main_.Show(); });
  window_.resize(window_.fontMetrics().averageCharWidth() * 112,
                 window_.fontMetrics().height() * 30);
  TakeToProject();
  TakeToModel();
  TakeWorkbench();
  TakeLog();
  TakeRest();
  return good_;
}

// MERIVANE_PICTURES_DARK=1 makes them in dark colours.
void UseDarkPalette() {
  const QColor window(45, 47, 50);
  QPalette palette(window);
  palette.setColor(QPalette::Base, QColor(30, 31, 33));
  palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
  palette.setColor(QPalette::Link, QColor(110, 180, 250));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, QColor(130, 130, 130));
  }
  QApplication::setPalette(palette);
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc != 3) {
    std::fputs("usage: merivane_window_pictures SAMPLES OUT_FOLDER\n", stderr);
    return 2;
  }
  const QTemporaryDir settings;  // so that windows have their usual sizes
  QSettings::setDefaultFormat(QSettings::IniFormat);
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, settings.path());
  QApplication::setOrganizationName("merivane");
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  if (qEnvironmentVariableIsSet("MERIVANE_PICTURES_DARK")) UseDarkPalette();
  Studio studio(QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]));
  return studio.TakeAll() ? 0 : 1;
}
