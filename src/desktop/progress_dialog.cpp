#include "progress_dialog.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include "qt_text.h"

namespace merivane::desktop {

namespace {

constexpr int kBarLength = 1000;
constexpr int kVisibleCharacters = 60;

const QWindow* ParentOf(const QWindow* window) {
  return window->parent(QWindow::IncludeTransients);
}

// The window that it belongs to in the end.
const QWindow* RootOf(const QWindow* window) {
  while (window != nullptr && ParentOf(window) != nullptr) window = ParentOf(window);
  return window;
}

}  // namespace

ProgressDialog::ProgressDialog(QWidget* parent)
    : QDialog(parent),
      stage_(new QLabel),
      bar_(new QProgressBar),
      cancel_(new QPushButton("Cancel")) {
  setObjectName("progress");
  setWindowTitle(kApplicationTitle);
  stage_->setObjectName("progressStage");
  stage_->setMinimumWidth(fontMetrics().averageCharWidth() * kVisibleCharacters);
  bar_->setObjectName("progressBar");
  bar_->setAccessibleName("Progress");
  cancel_->setObjectName("progressCancel");
  cancel_->setAccessibleName("Cancel");
  connect(cancel_, &QPushButton::clicked, this, &ProgressDialog::reject);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(cancel_);
  auto* column = new QVBoxLayout(this);
  column->addWidget(stage_);
  column->addWidget(bar_);
  column->addLayout(row);
  qApp->installEventFilter(this);
}

ProgressDialog::~ProgressDialog() { qApp->removeEventFilter(this); }

bool ProgressDialog::ShutsOut(const QWindow* window) const {
  for (const QWindow* at = window; at != nullptr; at = ParentOf(at)) {
    if (at == windowHandle()) return false;
  }
  return window != nullptr && RootOf(window) == RootOf(windowHandle());
}

bool ProgressDialog::eventFilter(QObject* object, QEvent* event) {
  const auto* window = qobject_cast<const QWindow*>(object);
  switch (event->type()) {
    case QEvent::ShortcutOverride:  // taken here, it can be no key of a menu
      if (!object->isWidgetType()) return false;
      if (!ShutsOut(static_cast<QWidget*>(object)->window()->windowHandle())) return false;
      event->accept();
      return true;
    case QEvent::Close:
      if (window == nullptr || !ShutsOut(window) || window == RootOf(window)) return false;
      event->ignore();
      return true;
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
      return window != nullptr && ShutsOut(window);
    default:
      return false;
  }
}

void ProgressDialog::Draw(const RunProgress& progress) {
  const QLocale english(QLocale::English);
  QString text = ToQt(progress.stage);
  if (progress.done > 0) text += ": " + english.toString(qlonglong{progress.done});
  if (progress.total > 0) text += " of " + english.toString(qlonglong{progress.total});
  if (!cancelled_) stage_->setText(text);
  bar_->setMaximum(progress.total > 0 ? kBarLength : 0);  // 0: a bar that only moves
  if (progress.total > 0) {
    const auto done = qMin(progress.done, progress.total);
    bar_->setValue(static_cast<int>(done * kBarLength / progress.total));
  }
}

void ProgressDialog::reject() {
  cancelled_ = true;
  cancel_->setEnabled(false);
  stage_->setText("Cancelling...");
}

}  // namespace merivane::desktop
