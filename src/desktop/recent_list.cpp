#include "recent_list.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QPushButton>
#include <QSettings>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "platform/program_run.h"
#include "workbench_file.h"

namespace merivane::desktop {

namespace {

constexpr int kMostFiles = 10;
constexpr int kNameRole = Qt::UserRole;

QTreeWidgetItem* ItemOf(const QString& name, const QPalette& palette) {
  const QFileInfo file(name);
  const bool there = file.exists();
  const QString date = there ? QLocale().toString(file.lastModified(), QLocale::ShortFormat)
                             : QString("not there any more");
  auto* item = new QTreeWidgetItem(
      {file.fileName(), KindWord(name), QDir::toNativeSeparators(file.absolutePath()), date});
  item->setData(0, kNameRole, name);
  for (int column = 0; column < item->columnCount(); ++column) {
    item->setToolTip(column, QDir::toNativeSeparators(name));
    if (!there) item->setForeground(column, palette.brush(QPalette::Disabled, QPalette::Text));
  }
  return item;
}

}  // namespace

RecentList::RecentList() : files_("opened", kMostFiles), list_(new QTreeWidget) {
  list_->setObjectName("recentList");
  list_->setAccessibleName("Last files");
  list_->setHeaderLabels({"File", "Kind", "Folder", "Changed"});
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setAllColumnsShowFocus(true);
  list_->setTextElideMode(Qt::ElideMiddle);
  list_->installEventFilter(this);
  connect(list_, &QTreeWidget::itemActivated, this, &RecentList::Open);
  connect(list_, &QTreeWidget::currentItemChanged, this, &RecentList::Sync);
  open_ = AddButton("recentOpen", "Open", &RecentList::Open);
  remove_ = AddButton("recentRemove", "Remove", &RecentList::Remove);
  forgetAll_ = AddButton("recentForgetAll", "Forget all", &RecentList::ForgetAll);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(list_, 1);
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {open_, remove_, forgetAll_}) buttons->addWidget(button);
  buttons->addStretch();
  column->addLayout(buttons);
  Fill();
}

QPushButton* RecentList::AddButton(const char* name, const char* caption,
                                   void (RecentList::*press)()) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAccessibleName(caption);
  connect(button, &QPushButton::clicked, this, press);
  return button;
}

void RecentList::Add(const QString& name) {
  const QString file = QFileInfo(name).absoluteFilePath();
  files_.Add(file);
  // A program that keeps its settings beside itself leaves nothing elsewhere.
  if (QSettings::defaultFormat() == QSettings::NativeFormat) RememberFile(file.toStdString());
  Fill();
}

void RecentList::Forget(const QString& name) {
  files_.Forget(name);
  Fill();
}

void RecentList::ForgetAll() {
  files_.ForgetAll();
  Fill();
}

// A file may have gone, or come back, while another window was in front.
void RecentList::showEvent(QShowEvent* event) {
  Fill();
  QWidget::showEvent(event);
}

// The row stays chosen by its place, so that several can be removed one after the other.
void RecentList::Fill() {
  const int row = list_->indexOfTopLevelItem(list_->currentItem());
  list_->clear();
  for (const QString& name : files_.Names()) list_->addTopLevelItem(ItemOf(name, palette()));
  const int last = list_->topLevelItemCount() - 1;
  if (row >= 0 && last >= 0) list_->setCurrentItem(list_->topLevelItem(qMin(row, last)));
  for (int column = 0; column < list_->columnCount(); ++column) {
    list_->resizeColumnToContents(column);
  }
  Sync();
}

void RecentList::Sync() {
  const bool chosen = !Current().isEmpty();
  open_->setEnabled(chosen);
  remove_->setEnabled(chosen);
  forgetAll_->setEnabled(list_->topLevelItemCount() > 0);
}

QString RecentList::Current() const {
  const QTreeWidgetItem* item = list_->currentItem();
  return item == nullptr ? QString() : item->data(0, kNameRole).toString();
}

void RecentList::Open() {
  if (const QString name = Current(); !name.isEmpty()) OnOpen(name);
}

void RecentList::Remove() { Forget(Current()); }

bool RecentList::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Delete) {
      Remove();
      return true;
    }
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {  // some styles activate by a click alone
      Open();
      return true;
    }
  }
  return QWidget::eventFilter(object, event);
}

}  // namespace merivane::desktop
