#include "user_settings.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFileInfo>
#include <QScreen>
#include <QSettings>
#include <QWidget>

namespace merivane::desktop {

namespace {

QString KeyOf(const QWidget& window) { return "windows/" + window.objectName(); }

QString FolderKey(const QString& ending) { return "lastFolder/" + ending.toLower(); }

}  // namespace

RecentFiles::RecentFiles(const QString& key, qsizetype most)
    : key_("recentFiles/" + key), most_(most) {}

QStringList RecentFiles::Names() const {
  return QSettings().value(key_).toStringList().mid(0, most_);
}

void RecentFiles::Add(const QString& name) {
  QStringList names = Names();
  names.removeAll(name);
  names.prepend(name);
  Keep(names.mid(0, most_));
}

void RecentFiles::Forget(const QString& name) {
  QStringList names = Names();
  names.removeAll(name);
  Keep(names);
}

void RecentFiles::ForgetAll() { Keep({}); }

void RecentFiles::Keep(const QStringList& names) {
  QSettings settings;
  if (names.isEmpty()) {
    settings.remove(key_);
  } else {
    settings.setValue(key_, names);
  }
}

QString LastFolder(const QString& ending) {
  const QString folder = QSettings().value(FolderKey(ending)).toString();
  return QFileInfo(folder).isDir() ? folder : QString();
}

void KeepLastFolder(const QString& ending, const QString& folder) {
  QSettings().setValue(FolderKey(ending), folder);
}

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
