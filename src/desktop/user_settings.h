// What is kept for each user: the files that were taken last, their folders, the places of windows.
#pragma once

#include <QObject>
#include <QSize>
#include <QString>
#include <QStringList>

class QWidget;

namespace merivane::desktop {

// One list under a key of the settings; lists of the same key are the same. A name stands in it
// once, whatever it is that takes it again.
class RecentFiles {
 public:
  RecentFiles(const QString& key, qsizetype most);

  // The latest first, whether they are still there or not.
  QStringList Names() const;
  void Add(const QString& name);
  void Forget(const QString& name);
  void ForgetAll();

 private:
  void Keep(const QStringList& names);

  QString key_;
  qsizetype most_;
};

// The folder of the file that was taken last of each kind, which an ending tells ("mdb"). Empty
// where none was taken, or where the folder is there no more.
QString LastFolder(const QString& ending);
void KeepLastFolder(const QString& ending, const QString& folder);

// Gives a window the place and the size that it had last under its object name, or the usual size,
// and never more than its screen has room for; keeps both when it goes. It belongs to the window.
class WindowPlace : public QObject {
 public:
  WindowPlace(QWidget& window, const QSize& usual);
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void Keep();

  QWidget& window_;
};

}  // namespace merivane::desktop
