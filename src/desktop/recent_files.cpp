#include "recent_files.h"

#include <QFileInfo>
#include <QSettings>

namespace merivane::desktop {

namespace {

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

}  // namespace merivane::desktop
