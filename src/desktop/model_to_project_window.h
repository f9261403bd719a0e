// The window of the direction from model to plan.
#pragma once

#include "form_window.h"
#include "shell/frmIDEF3ToProject.h"

namespace merivane::desktop {

class ModelToProjectWindow : public FormWindow {
 public:
  ModelToProjectWindow(frmIDEF3ToProject& form, QtDesktop& desktop);

 private:
  void Ok();
  void Check();

  frmIDEF3ToProject& form_;
};

}  // namespace merivane::desktop
