#include "picture_window.h"

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

#include "desktop/qt_desktop.h"
#include "elided_label.h"
#include "help_context.h"
#include "paint_figure.h"
#include "picture_view.h"
#include "pictures/picture_file.h"
#include "program_picture.h"
#include "qt_text.h"
#include "window_place.h"

namespace merivane::desktop {

namespace {

constexpr double kZoomStep = 1.25;

}  // namespace

PictureWindow::PictureWindow(std::vector<pictures::Picture> shown, const QString& note, Work& work,
                             QtDesktop& desktop, QWidget* parent)
    : QMainWindow(parent, Qt::Window),
      desktop_(desktop),
      pictures_(std::move(shown)),
      view_(new PictureView(pictures::Stacked(pictures_), work)),
      search_(new QLineEdit),
      found_(new QLabel),
      zoom_(new QLabel) {
  setObjectName("pictureWindow");
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowIcon(ApplicationIcon());
  setWindowTitle(ToQt(pictures_.front().title));
  SetHelpContext(this, kHelpContextId);
  setCentralWidget(view_);
  view_->OnZoom = [this] { zoom_->setText(QString("%1%").arg(qRound(view_->Scale() * 100))); };
  AddTools();
  auto* status = new ElidedLabel(note);
  status->setObjectName("pictureNote");
  status->setTextFormat(Qt::PlainText);
  statusBar()->addWidget(status, 1);
  statusBar()->addPermanentWidget(zoom_);
  new WindowPlace(*this, {fontMetrics().averageCharWidth() * 130, fontMetrics().height() * 40});
  view_->setFocus();
}

QAction* PictureWindow::AddAction(QToolBar& tools, const char* name, const QString& text,
                                  const QKeySequence& keys) {
  QAction* action = tools.addAction(text);
  action->setObjectName(name);
  action->setShortcut(keys);
  action->setToolTip(text + " (" + keys.toString(QKeySequence::NativeText) + ')');
  return action;
}

void PictureWindow::AddTools() {
  QToolBar* tools = addToolBar("Picture");
  tools->setMovable(false);
  const auto add = [&](const char* name, const char* text, const QKeySequence& keys, auto act) {
    connect(AddAction(*tools, name, text, keys), &QAction::triggered, this, act);
  };
  add("zoomIn", "Zoom in", QKeySequence::ZoomIn, [this] { view_->ZoomBy(kZoomStep); });
  add("zoomOut", "Zoom out", QKeySequence::ZoomOut, [this] { view_->ZoomBy(1 / kZoomStep); });
  add("actualSize", "Actual size", QKeySequence("Ctrl+1"), [this] { view_->ZoomTo(1); });
  add("fit", "Fit", QKeySequence("Ctrl+0"), [this] { view_->Fit(); });
  tools->addSeparator();
  add("export", "Export...", QKeySequence("Ctrl+E"),
      [this] { desktop_.RunIn(*this, [this] { Export(); }); });
  add("print", "Print...", QKeySequence::Print,
      [this] { desktop_.RunIn(*this, [this] { Print(); }); });
  tools->addSeparator();
  AddSearch(*tools);
  auto* close = new QAction(this);
  close->setShortcut(Qt::Key_Escape);
  addAction(close);
  connect(close, &QAction::triggered, this, &QWidget::close);
}

void PictureWindow::AddSearch(QToolBar& tools) {
  search_->setObjectName("search");
  search_->setPlaceholderText("Search (Ctrl+F)");
  search_->setAccessibleName("Search");
  search_->setClearButtonEnabled(true);
  search_->installEventFilter(this);
  search_->setMaximumWidth(fontMetrics().averageCharWidth() * 36);
  found_->setObjectName("found");
  found_->setMargin(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing) / 2);
  tools.addWidget(search_);
  tools.addWidget(found_);
  connect(search_, &QLineEdit::textChanged, this, [this] { Search(true); });
  connect(search_, &QLineEdit::returnPressed, this, [this] { Search(false); });
  auto* find = new QAction(this);
  find->setShortcut(QKeySequence::Find);
  addAction(find);
  connect(find, &QAction::triggered, this, [this] {
    search_->setFocus();
    search_->selectAll();
  });
}

// The window's keys come before those of the box that is typed in.
bool PictureWindow::eventFilter(QObject* object, QEvent* event) {
  if (object != search_ || event->type() != QEvent::ShortcutOverride) return false;
  const QKeySequence keys(static_cast<QKeyEvent*>(event)->keyCombination());
  for (const QAction* action : findChildren<QAction*>()) {
    if (!action->shortcuts().contains(keys)) continue;
    event->ignore();
    return true;
  }
  return false;
}

void PictureWindow::Search(bool anew) {
  const PictureView::Found found = view_->Find(search_->text(), anew);
  if (search_->text().isEmpty()) {
    found_->clear();
  } else if (found.count == 0) {
    found_->setText("Not found");
  } else {
    found_->setText(QString("%1 of %2").arg(found.place).arg(found.count));
  }
}

void PictureWindow::Export() {
  std::string patterns;
  for (const std::string& ending : pictures::PictureEndings()) {
    patterns += (patterns.empty() ? "*" : " *") + ending;
  }
  const std::string path =
      desktop_.AskFileName({"Pictures (" + patterns + ")|*.svg", "Export picture"});
  if (path.empty()) return;
  const std::string shown = FromUtf8(path);
  if (!pictures::IsPictureName(path)) {
    desktop_.ShowMessage(
        {shown + " is no name of a picture: " + pictures::PictureEndingWords() + ".",
         MessageIcon::kExclamation});
    return;
  }
  const bool written = desktop_.WriteAnew(
      path, [this](const Output& output) { pictures::WritePictures(pictures_, output); });
  if (!written) return;
  const QString result = "Written: " + PathToQt(path);
  statusBar()->showMessage(result);
  desktop_.LogResult(result, PathToQt(path));
}

void PictureWindow::Print() {
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageOrientation(QPageLayout::Landscape);
  printer.setDocName(windowTitle());
  QPrintDialog dialog(&printer, this);
  desktop_.Execute(dialog);
  if (dialog.result() == QDialog::Accepted) PrintPictures(printer, pictures_);
}

}  // namespace merivane::desktop
