#include "path_field.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>
#include <QUrl>

#include "qt_text.h"

namespace merivane::desktop {

namespace {

constexpr int kVisibleCharacters = 52;

QString DroppedFile(const QDropEvent& event) {
  const QList<QUrl> urls = event.mimeData()->urls();
  return urls.size() == 1 ? QDir::toNativeSeparators(urls.first().toLocalFile()) : QString();
}

}  // namespace

PathField::PathField(const char* editName, const char* buttonName, const QString& accessibleName)
    : edit_(new QLineEdit), button_(new QPushButton("...")) {
  edit_->setObjectName(editName);
  edit_->setAccessibleName(accessibleName);
  edit_->setAcceptDrops(false);  // the field takes them
  edit_->setMinimumWidth(edit_->fontMetrics().averageCharWidth() * kVisibleCharacters);
  button_->setObjectName(buttonName);
  button_->setAccessibleName("Browse: " + accessibleName);
  button_->setToolTip("Browse");
  button_->setMaximumWidth(button_->fontMetrics().horizontalAdvance("......") * 2);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(edit_, 1);
  row->addWidget(button_);
  setAcceptDrops(true);
}

void PathField::Draw(const TextBox& box) {
  const QString text = PathToQt(box.text);
  if (edit_->text() != text) {
    edit_->setText(text);
    edit_->end(false);
  }
  edit_->setToolTip(text);
  edit_->setEnabled(box.enabled);
}

void PathField::dragEnterEvent(QDragEnterEvent* event) {
  if (isEnabled() && !DroppedFile(*event).isEmpty()) event->acceptProposedAction();
}

void PathField::dropEvent(QDropEvent* event) {
  const QString name = DroppedFile(*event);
  if (!isEnabled() || name.isEmpty() || !OnDrop) return;
  event->acceptProposedAction();
  // Later, so that the program that the file comes from needn't wait for questions asked here.
  QTimer::singleShot(0, this, [this, name] { OnDrop(name.toStdString()); });
}

}  // namespace merivane::desktop
