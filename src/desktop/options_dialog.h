// Shows the application paths.
#pragma once

#include "shell/frmOptions.h"
#include "side_dialog.h"

class QListWidget;

namespace merivane::desktop {

class OptionsDialog : public SideDialog {
 public:
  OptionsDialog(frmOptions& form, QtDesktop& desktop, QWidget* parent);

 protected:
  void Draw() override;

 private:
  void AddHiddenControls();

  frmOptions& form_;
  QListWidget* paths_;
};

}  // namespace merivane::desktop
