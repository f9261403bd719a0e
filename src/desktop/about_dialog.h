// Tells what the program is.
#pragma once

#include "shell/frmMain.h"
#include "side_dialog.h"

namespace merivane::desktop {

class AboutDialog : public SideDialog {
 public:
  AboutDialog(frmAbout& form, QtDesktop& desktop, QWidget* parent);
};

}  // namespace merivane::desktop
