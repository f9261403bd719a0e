#include "picture_window.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

#include "elided_label.h"
#include "help_context.h"
#include "picture_tools.h"
#include "picture_view.h"
#include "program_picture.h"
#include "qt_text.h"
#include "window_place.h"

namespace merivane::desktop {

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

void PictureWindow::AddTools() {
  QToolBar* bar = addToolBar("Picture");
  bar->setMovable(false);
  auto* tools = new PictureTools(*this, *bar, desktop_,
                                 {[this] { return view_; }, [this] { return pictures_; }});
  tools->AddZoom();
  bar->addSeparator();
  tools->AddExport();
  bar->addSeparator();
  AddSearch(*bar);
  tools->ComeBefore(*search_);
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

}  // namespace merivane::desktop
