// Asks whether an existing database is overwritten or gets a further project.
#pragma once

#include "platform/desktop.h"

namespace merivane::shell {

using namespace platform;

// Caption "Database Create Options". Closing it by its frame leaves the flag as it stood.
class frmDbFileAppend : public ModalForm {
 public:
  static constexpr int kHelpContextId = 5000;

  explicit frmDbFileAppend(bool& gOverwriteDb) : gOverwriteDb_(gOverwriteDb) {}

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
