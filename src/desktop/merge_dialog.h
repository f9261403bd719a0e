// Asks whether an existing interim database is overwritten or merged with.
#pragma once

#include "modal_dialogs.h"
#include "shell/modal_forms.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QRadioButton;

namespace merivane::desktop {

using namespace shell;

class MergeDialog : public ModalDialog {
 public:
  MergeDialog(frmDBMerge& form, QtDesktop& desktop, QWidget* parent);

 protected:
  void Draw() override;
  void Escape() override;

 private:
  QWidget* MakeOptions();
  QLayout* MakeButtons();

  frmDBMerge& form_;
  QRadioButton* overwrite_;
  QRadioButton* merge_;
  QCheckBox* complete_;
  QLabel* label_;
  QComboBox* projects_;
};

}  // namespace merivane::desktop
