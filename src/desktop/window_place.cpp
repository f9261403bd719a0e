#include "window_place.h"

#include <QCoreApplication>
#include <QEvent>
#include <QScreen>
#include <QSettings>
#include <QWidget>

namespace merivane::desktop {

namespace {

QString KeyOf(const QWidget& window) { return "windows/" + window.objectName(); }

}  // namespace

WindowPlace::WindowPlace(QWidget& window, const QSize& usual) : QObject(&window), window_(window) {
  const QSize room = window.screen()->availableSize() * 9 / 10;  // with its frame
  if (!window.restoreGeometry(QSettings().value(KeyOf(window)).toByteArray())) window.resize(usual);
  if (!window.isMaximized()) window.resize(window.size().boundedTo(room));
  window.installEventFilter(this);
  connect(qApp, &QCoreApplication::aboutToQuit, this, &WindowPlace::Keep);
}

bool WindowPlace::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::Hide && !event->spontaneous()) Keep();
  return QObject::eventFilter(object, event);
}

void WindowPlace::Keep() { QSettings().setValue(KeyOf(window_), window_.saveGeometry()); }

}  // namespace merivane::desktop
