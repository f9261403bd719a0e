// Asks for one of several scenarios or decompositions.
#pragma once

#include <string>

#include "modal_dialogs.h"
#include "translator/multi.h"

class QListWidget;

namespace merivane::desktop {

using namespace translator;

class ChooserDialog : public ModalDialog {
 public:
  ChooserDialog(multi& form, QtDesktop& desktop, QWidget* parent);

 protected:
  void Escape() override;

 private:
  QListWidget* MakeList();
  QLayout* MakeButtons();
  void ChooseReady(QListWidget& list, const std::string& name);

  multi& form_;
};

}  // namespace merivane::desktop
