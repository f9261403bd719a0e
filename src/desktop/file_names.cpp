#include "desktop/file_names.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

#include "qt_text.h"
#include "user_settings.h"

namespace merivane::desktop {

DialogFileNames::DialogFileNames()
    : folder_(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)) {
  if (!QFileInfo::exists(folder_)) folder_ = QDir::homePath();
}

QString DialogFileNames::Ask(const FileDialog& dialog, QWidget* parent) {
  const QStringList filter = ToQt(dialog.filter).split('|');
  const QString ending = QFileInfo(filter.last()).suffix();
  QFileDialog picker(parent, ToQt(dialog.title), StartOf(PathToQt(dialog.current), ending));
  picker.setWindowModality(Qt::WindowModal);
  if (dialog.newName) {
    picker.setAcceptMode(QFileDialog::AcceptSave);
    picker.setOption(QFileDialog::DontConfirmOverwrite);
  }
  picker.setFileMode(QFileDialog::AnyFile);
  picker.setNameFilter(filter.first());
  picker.setDefaultSuffix(ending);
  picker.setLabelText(QFileDialog::Accept, QStringLiteral("Select"));
  const bool picked = picker.exec() == QDialog::Accepted;
  folder_ = picker.directory().absolutePath();
  if (!picked) return {};
  const QString name = picker.selectedFiles().value(0);
  KeepLastFolder(ending, QFileInfo(name).absolutePath());
  return QDir::toNativeSeparators(name);
}

void DialogFileNames::Remember(const QString& name) {
  if (name.isEmpty()) return;
  const QString folder = QFileInfo(name).absolutePath();
  if (!QFileInfo(folder).isDir()) return;
  folder_ = folder;
  KeepLastFolder(QFileInfo(name).suffix(), folder);
}

QString DialogFileNames::StartOf(const QString& current, const QString& ending) const {
  QString folder = QFileInfo(current).absolutePath();
  if (!current.isEmpty() && QFileInfo(folder).isDir()) return folder;
  const QString last = LastFolder(ending);
  return last.isEmpty() ? folder_ : last;
}

}  // namespace merivane::desktop
