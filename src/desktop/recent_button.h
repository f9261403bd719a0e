// The drop-down behind a browse button: the files that its box took last.
#pragma once

#include <QToolButton>
#include <functional>

#include "recent_files.h"

namespace merivane::desktop {

// It takes no focus, so that the keyboard goes through the boxes as ever: Alt+Down in the box or
// on its browse button opens it. Grey while the box has taken nothing yet.
class RecentButton : public QToolButton {
 public:
  // `key` of RecentFiles.
  RecentButton(const QString& key, const QString& accessibleName);

  // Called with the name that the user chose.
  std::function<void(const QString& name)> OnPick;

  void Took(const QString& name);
  void OpenFrom(QWidget& widget);  // by its Alt+Down

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void Open();
  void Sync();

  RecentFiles files_;
  QMenu* menu_;
};

}  // namespace merivane::desktop
