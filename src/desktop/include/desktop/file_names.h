// Where the names of files come from: the file dialog, or a test's script.
#pragma once

#include <QString>
#include <QWidget>

#include "platform/desktop.h"

namespace merivane::desktop {

using namespace platform;

class FileNames {
 public:
  virtual ~FileNames() = default;
  // The name that the user picked, of a file that need not exist; empty when cancelled.
  virtual QString Ask(const FileDialog& dialog, QWidget* parent) = 0;
  // A name that came another way: typed or dropped.
  virtual void Remember(const QString& /*name*/) {}
};

// A file dialog that starts in the folder of the name chosen so far, otherwise in that of the last
// file of this kind, which is kept for each user, otherwise in that of the last name, otherwise
// among the user's documents. For a file to be written it is a dialog that takes a
// new name, and it doesn't ask about one that stands: the forms do.
class DialogFileNames : public FileNames {
 public:
  DialogFileNames();
  QString Ask(const FileDialog& dialog, QWidget* parent) override;
  void Remember(const QString& name) override;

 private:
  QString StartOf(const QString& current, const QString& ending) const;

  QString folder_;
};

}  // namespace merivane::desktop
