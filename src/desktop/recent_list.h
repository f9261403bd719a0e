// The list of the files that the user worked with last.
#pragma once

#include <QWidget>
#include <functional>

#include "user_settings.h"

class QPushButton;
class QTreeWidget;

namespace merivane::desktop {

// Kind, folder and date of each, the latest first. A file that is there no more is grey. Enter, a
// double click or "Open" opens one, Delete or "Remove" takes it from the list.
class RecentList : public QWidget {
 public:
  RecentList();

  // REQUIRES: set before a file is opened. Also called for a file that is there no more.
  std::function<void(const QString& name)> OnOpen;

  void Add(const QString& name);
  void Forget(const QString& name);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  QPushButton* AddButton(const char* name, const char* caption, void (RecentList::*press)());
  QString Current() const;
  void Fill();
  void Sync();
  void Open();
  void Remove();
  void ForgetAll();

  RecentFiles files_;
  QTreeWidget* list_;
  QPushButton* open_;
  QPushButton* remove_;
  QPushButton* forgetAll_;
};

}  // namespace merivane::desktop
