// Asks whether an existing database is overwritten or gets a further project.
#pragma once

#include "modal_dialogs.h"
#include "shell/frmDbFileAppend.h"

namespace merivane::desktop {

using namespace shell;

class AppendDialog : public ModalDialog {
 public:
  AppendDialog(frmDbFileAppend& form, QtDesktop& desktop, QWidget* parent);

 protected:
  void Escape() override {}  // there is no Cancel: the question wants an answer
};

}  // namespace merivane::desktop
