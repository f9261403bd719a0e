#include "desktop/file_names.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

#include "qt_text.h"

namespace merivane::desktop {

DialogFileNames::DialogFileNames()
    : folder_(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)) {
  if (!QFileInfo::exists(folder_)) folder_ = QDir::homePath();
}

QString DialogFileNames::Ask(const FileDialog& dialog, QWidget* parent) {
  Remember(PathToQt(dialog.current));
  QFileDialog picker(parent, ToQt(dialog.title), folder_);
  picker.setWindowModality(Qt::WindowModal);
  if (dialog.newName) {
    picker.setAcceptMode(QFileDialog::AcceptSave);
    picker.setOption(QFileDialog::DontConfirmOverwrite);
  }
  picker.setFileMode(QFileDialog::AnyFile);
  const QStringList filter = ToQt(dialog.filter).split('|');
  picker.setNameFilter(filter.first());
  picker.setDefaultSuffix(QFileInfo(filter.last()).suffix());
  picker.setLabelText(QFileDialog::Accept, QStringLiteral("Select"));
  const bool picked = picker.exec() == QDialog::Accepted;
  folder_ = picker.directory().absolutePath();
  return picked ? QDir::toNativeSeparators(picker.selectedFiles().value(0)) : QString();
}

void DialogFileNames::Remember(const QString& name) {
  if (name.isEmpty()) return;
  const QString folder = QFileInfo(name).absolutePath();
  if (QFileInfo(folder).isDir()) folder_ = folder;
}

}  // namespace merivane::desktop
