#include <QApplication>
#include <QEvent>
#include <QPalette>
#include <QStyle>

#include "desktop/system_look.h"
#include "paint_figure.h"

namespace merivane::desktop {

void SystemLook::WelcomeDark() {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "windows:darkmode=2");
  }
}

SystemLook::SystemLook() : usual_(QApplication::style()->name()) {
  Follow();
  qApp->installEventFilter(this);
}

bool SystemLook::eventFilter(QObject* object, QEvent* event) {
  if (object == qApp && event->type() == QEvent::ApplicationPaletteChange) Follow();
  return false;
}

void SystemLook::Follow() const {
  const bool isDark = GroundOf(QApplication::palette()) == Ground::kDark;
  const QString style = isDark ? "fusion" : usual_;
  if (QApplication::style()->name() != style) QApplication::setStyle(style);
}

}  // namespace merivane::desktop
