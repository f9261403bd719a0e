// Dark windows, with a dark frame, where Windows is dark.
#pragma once

#include <QObject>
#include <QString>

namespace merivane::desktop {

// The style of Windows itself has no dark colours: while those of the system are dark, the program
// takes another one.
class SystemLook : public QObject {
 public:
  // Tells Qt that dark colours are welcome. REQUIRES: before the application is made.
  static void WelcomeDark();

  // REQUIRES: the application is made.
  SystemLook();
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void Follow() const;

  QString usual_;
};

}  // namespace merivane::desktop
