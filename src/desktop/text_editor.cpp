#include "text_editor.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <QUrl>

namespace merivane::desktop {

namespace {

struct Editor {
  const char* program;
  const char* arguments;  // %1 the line, %2 the file; words end at bars
};

constexpr Editor kEditors[] = {
    {"kate", "--line|%1|%2"},   {"gedit", "+%1|%2"},          {"xed", "+%1|%2"},
    {"pluma", "+%1|%2"},        {"mousepad", "--line=%1|%2"}, {"geany", "--line=%1|%2"},
    {"kwrite", "--line|%1|%2"}, {"gvim", "+%1|%2"},           {"notepad++", "-n%1|%2"},
};

}  // namespace

void OpenAtLine(const QString& path, std::size_t line) {
  for (const Editor& editor : kEditors) {
    const QString program = QStandardPaths::findExecutable(editor.program);
    if (program.isEmpty()) continue;
    QStringList arguments = QString(editor.arguments).split('|');
    for (QString& argument : arguments) {
      if (argument == "%2") {
        argument = path;
      } else {
        argument.replace("%1", QString::number(line));
      }
    }
    if (QProcess::startDetached(program, arguments)) return;
  }
  QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

}  // namespace merivane::desktop
