#include "modal_dialogs.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPushButton>
#include <stdexcept>

#include "append_dialog.h"
#include "chooser_dialog.h"
#include "desktop/qt_desktop.h"
#include "merge_dialog.h"

namespace merivane::desktop {

ModalDialog::ModalDialog(ModalForm& form, QtDesktop& desktop, QWidget* parent)
    : QDialog(parent), desktop_(desktop), form_(form) {}

void ModalDialog::Run(const std::function<void()>& handler) {
  if (!form_.IsLoaded()) return;
  desktop_.Run(handler);
  if (desktop_.Ended()) return;
  Draw();
  if (!form_.IsLoaded()) accept();
}

QPushButton* ModalDialog::AddButton(const char* name, const char* caption,
                                    const std::function<void()>& click) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAccessibleName(QString(caption).remove('&'));
  connect(button, &QPushButton::clicked, this, [this, click] { Run(click); });
  return button;
}

void ModalDialog::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    Escape();
  } else {
    QDialog::keyPressEvent(event);
  }
}

void ModalDialog::closeEvent(QCloseEvent* event) {
  event->ignore();
  Run([this] { form_.Unload(); });
}

std::unique_ptr<QDialog> MakeModalDialog(ModalForm& form, QtDesktop& desktop, QWidget* parent) {
  if (auto* append = dynamic_cast<frmDbFileAppend*>(&form)) {
    return std::make_unique<AppendDialog>(*append, desktop, parent);
  }
  if (auto* merge = dynamic_cast<frmDBMerge*>(&form)) {
    return std::make_unique<MergeDialog>(*merge, desktop, parent);
  }
  if (auto* chooser = dynamic_cast<multi*>(&form)) {
    return std::make_unique<ChooserDialog>(*chooser, desktop, parent);
  }
  throw std::logic_error("a form without a dialog");
}

}  // namespace merivane::desktop
