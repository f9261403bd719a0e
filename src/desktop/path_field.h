// A text box for the name of a file, its browse button, and the files that it took last.
#pragma once

#include <QWidget>

#include "shell/form.h"

class QLineEdit;
class QPushButton;

namespace merivane::desktop {

using namespace shell;

class RecentButton;

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
