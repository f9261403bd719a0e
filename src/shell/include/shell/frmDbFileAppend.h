// Asks whether an existing database is overwritten or gets a further project.
#pragma once

#include <string>
#include <utility>

#include "platform/desktop.h"

namespace merivane::shell {

using namespace platform;

// Caption "Database Create Options". Closing it by its frame leaves the flag as it stood.
class frmDbFileAppend : public ModalForm {
 public:
  static constexpr int kHelpContextId = 5000;

  frmDbFileAppend(bool& gOverwriteDb, std::string fileName)
      : FileName(std::move(fileName)), gOverwriteDb_(gOverwriteDb) {}

  const std::string FileName;  // of the database, UTF-8

  void CmdAppend() {
    gOverwriteDb_ = false;
    Unload();
  }
  void CmdOverwrite() {
    gOverwriteDb_ = true;
    Unload();
  }

 private:
  bool& gOverwriteDb_;
};

}  // namespace merivane::shell
