#include "picture_tools.h"

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPrinter>
#include <QStatusBar>
#include <QToolBar>
#include <string>
#include <utility>

#include "desktop/qt_desktop.h"
#include "paint_figure.h"
#include "picture_view.h"
#include "pictures/picture_file.h"
#include "printer_choice.h"
#include "qt_text.h"

namespace merivane::desktop {

namespace {

constexpr double kZoomStep = 1.25;

}  // namespace

PictureTools::PictureTools(QMainWindow& window, QToolBar& bar, QtDesktop& desktop, Shown shown)
    : QObject(&window), window_(window), bar_(bar), desktop_(desktop), shown_(std::move(shown)) {}

QAction* PictureTools::Add(const char* name, const QString& text, const QKeySequence& keys,
                           const std::function<void()>& act) {
  QAction* action = bar_.addAction(text);
  window_.addAction(action);
  action->setObjectName(name);
  action->setShortcut(keys);
  action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  const QString key = keys.toString(QKeySequence::NativeText);
  action->setToolTip(key.isEmpty() ? text : text + " (" + key + ')');
  connect(action, &QAction::triggered, this, act);
  return action;
}

void PictureTools::AddZoom() {
  Add("zoomIn", "Zoom in", QKeySequence::ZoomIn, [this] { shown_.view()->ZoomBy(kZoomStep); });
  Add("zoomOut", "Zoom out", QKeySequence::ZoomOut,
      [this] { shown_.view()->ZoomBy(1 / kZoomStep); });
  Add("actualSize", "Actual size", QKeySequence("Ctrl+1"), [this] { shown_.view()->ZoomTo(1); });
  Add("fit", "Fit", QKeySequence("Ctrl+0"), [this] { shown_.view()->Fit(); });
  zoom_ = new QLabel;
  zoom_->setObjectName("zoom");
  bar_.addWidget(zoom_);
}

void PictureTools::AddExport() {
  Add("export", "Export...", QKeySequence("Ctrl+E"),
      [this] { desktop_.RunIn(window_, [this] { Export(); }); });
  Add("print", "Print...", QKeySequence::Print,
      [this] { desktop_.RunIn(window_, [this] { Print(); }); });
}

void PictureTools::TellZoom() {
  if (zoom_ != nullptr) zoom_->setText(QString("%1%").arg(qRound(shown_.view()->Scale() * 100)));
}

void PictureTools::ComeBefore(QLineEdit& box) { box.installEventFilter(this); }

bool PictureTools::eventFilter(QObject* /*object*/, QEvent* event) {
  if (event->type() != QEvent::ShortcutOverride) return false;
  const QKeySequence keys(static_cast<QKeyEvent*>(event)->keyCombination());
  for (const QAction* action : window_.actions()) {
    if (!action->shortcuts().contains(keys)) continue;
    event->ignore();
    return true;
  }
  return false;
}

void PictureTools::Export() {
  const std::vector<pictures::Picture> pictures = shown_.pictures();
  std::string patterns;
  for (const std::string& ending : pictures::PictureEndings()) {
    patterns += (patterns.empty() ? "*" : " *") + ending;
  }
  const std::string path = desktop_.AskFileName(
      {.filter = "Pictures (" + patterns + ")|*.svg", .title = "Export picture", .newName = true});
  if (path.empty()) return;
  const std::string shown = FromUtf8(path);
  if (!pictures::IsPictureName(path)) {
    desktop_.ShowMessage(
        {shown + " is no name of a picture: " + pictures::PictureEndingWords() + ".",
         MessageIcon::kExclamation});
    return;
  }
  const bool written = desktop_.WriteAnew(
      path, [&](const Output& output) { pictures::WritePictures(pictures, output); });
  if (!written) return;
  const QString result = "Written: " + PathToQt(path);
  window_.statusBar()->showMessage(result);
  desktop_.LogResult(result, PathToQt(path));
}

void PictureTools::Print() {
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageOrientation(QPageLayout::Landscape);
  printer.setDocName(window_.windowTitle());
  if (ChoosePrinter(printer, window_, desktop_)) PrintPictures(printer, shown_.pictures());
}

}  // namespace merivane::desktop
