// The forms that are shown modally, as dialogs.
#pragma once

#include <QDialog>
#include <functional>
#include <memory>

#include "platform/desktop.h"

class QPushButton;

namespace merivane::desktop {

using namespace platform;

class QtDesktop;

// Closes once its form has been unloaded.
class ModalDialog : public QDialog {
 public:
  ModalDialog(ModalForm& form, QtDesktop& desktop, QWidget* parent);

 protected:
  virtual void Draw() {}
  virtual void Escape() = 0;
  void Run(const std::function<void()>& handler);
  QPushButton* AddButton(const char* name, const char* caption, const std::function<void()>& click);

  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

  QtDesktop& desktop_;

 private:
  ModalForm& form_;
};

// The dialog of one of the modal forms.
std::unique_ptr<QDialog> MakeModalDialog(ModalForm& form, QtDesktop& desktop, QWidget* parent);

}  // namespace merivane::desktop
