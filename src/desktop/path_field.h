// A text box for the name of a file, its browse button, and the files that it took last.
#pragma once

#include <QToolButton>
#include <QWidget>
#include <functional>

#include "shell/form.h"
#include "user_settings.h"

class QLineEdit;
class QPushButton;

namespace merivane::desktop {

using namespace shell;

// The drop-down behind a browse button: the files that its box took last.
//
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

// Takes names of any length, without line breaks. Shows the end of a name that is too long, and the
// whole name as a tool tip.
class PathField : public QWidget {
 public:
  // `form` names the window, for what is kept of each box.
  PathField(const QString& form, const char* editName, const char* buttonName,
            const QString& accessibleName);

  void Draw(const TextBox& box);
  QSize sizeHint() const override;
  QLineEdit* Edit() const { return edit_; }
  QPushButton* Button() const { return button_; }
  RecentButton* Recent() const { return recent_; }

 private:
  void DropLineBreaks(const QString& text);

  QLineEdit* edit_;
  QPushButton* button_;
  RecentButton* recent_;
};

}  // namespace merivane::desktop
