#include "help_context.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>

#include "desktop/qt_desktop.h"

namespace merivane::desktop {

namespace {

constexpr const char* kContextProperty = "helpContext";
constexpr const char* kFileProperty = "helpFile";

}  // namespace

void SetHelpContext(QObject* object, int context) {
  object->setProperty(kContextProperty, context);
}

void SetHelpFile(QWidget* window, const QString& file) { window->setProperty(kFileProperty, file); }

HelpTarget HelpTargetOf(const QWidget* widget) {
  HelpTarget target;
  for (; widget != nullptr; widget = widget->parentWidget()) {
    if (target.context == 0) target.context = widget->property(kContextProperty).toInt();
    if (target.file.isEmpty()) target.file = widget->property(kFileProperty).toString();
  }
  return target;
}

HelpKey::HelpKey(QtDesktop& desktop) : desktop_(desktop) { qApp->installEventFilter(this); }

HelpKey::~HelpKey() { qApp->removeEventFilter(this); }

bool HelpKey::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::KeyPress || !object->isWidgetType()) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  if (key->key() != Qt::Key_F1 || key->modifiers() != Qt::NoModifier) return false;
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  const QAction* item = menu != nullptr ? menu->activeAction() : nullptr;
  if (item != nullptr && item->property(kContextProperty).isValid()) {
    const int context = item->property(kContextProperty).toInt();
    while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
    desktop_.Run([&] {
      if (desktop_.OnHelpRequest) desktop_.OnHelpRequest(context);
    });
    return true;
  }
  const QWidget* active = QApplication::focusWidget();
  desktop_.RequestHelp(active != nullptr ? active : static_cast<QWidget*>(object));
  return true;
}

}  // namespace merivane::desktop
