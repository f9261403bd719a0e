#include "side_dialog.h"

#include <QPushButton>

#include "help_context.h"

namespace merivane::desktop {

SideDialog::SideDialog(Form& form, QtDesktop& desktop, QWidget* parent)
    : QDialog(parent), desktop_(desktop), form_(form) {
  form_.OnChange = [this] { Sync(); };
}

SideDialog::~SideDialog() { form_.OnChange = nullptr; }

void SideDialog::Sync() {
  Draw();
  if (form_.IsVisible()) {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
  } else {
    hide();
  }
}

void SideDialog::reject() {
  Run([this] { form_.Unload(); });
}

QPushButton* SideDialog::AddButton(const char* name, const char* caption) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(name);
  button->setAccessibleName(caption);
  return button;
}

QPushButton* SideDialog::AddHelpButton(const char* name, const char* caption, int helpContext) {
  QPushButton* button = AddButton(name, caption);
  SetHelpContext(button, helpContext);
  connect(button, &QPushButton::clicked, this, [this, button] { desktop_.RequestHelp(button); });
  return button;
}

}  // namespace merivane::desktop
