#include "modal_dialogs.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPushButton>

#include "append_dialog.h"
#include "chooser_dialog.h"
#include "desktop/qt_desktop.h"
#include "merge_dialog.h"
#include "shell/modal_forms.h"

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
  using Dialog = std::unique_ptr<QDialog>;
  return std::visit(ForEach{[&](frmDbFileAppend* append) -> Dialog {
                              return std::make_unique<AppendDialog>(*append, desktop, parent);
                            },
                            [&](frmDBMerge* merge) -> Dialog {
                              return std::make_unique<MergeDialog>(*merge, desktop, parent);
                            },
                            [&](multi* chooser) -> Dialog {
                              return std::make_unique<ChooserDialog>(*chooser, desktop, parent);
                            }},
                    AsAny(form));
}

}  // namespace merivane::desktop
