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
};

// A file dialog that starts in the folder where the last one ended.
class DialogFileNames : public FileNames {
 public:
  DialogFileNames();
  QString Ask(const FileDialog& dialog, QWidget* parent) override;

 private:
  QString folder_;
};

}  // namespace merivane::desktop
