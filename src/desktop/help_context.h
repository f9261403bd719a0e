// Help numbers of controls, windows and menu items.
#pragma once

#include <QObject>
#include <QString>
#include <QWidget>

namespace merivane::desktop {

class QtDesktop;

void SetHelpContext(QObject* object, int context);
// Windows below this one have their topics in a help file of their own.
void SetHelpFile(QWidget* window, const QString& file);

struct HelpTarget {
  int context = 0;  // of the widget or its nearest ancestor with a number; 0: none has one
  QString file;     // empty: the application's
};
HelpTarget HelpTargetOf(const QWidget* widget);

// Opens the help of the active control, or of the active menu item, when F1 is pressed. Installed
// on the application.
class HelpKey : public QObject {
 public:
  explicit HelpKey(QtDesktop& desktop);
  ~HelpKey() override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  QtDesktop& desktop_;
};

}  // namespace merivane::desktop
