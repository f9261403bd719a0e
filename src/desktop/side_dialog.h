// Dialogs beside the main window, which stays usable.
#pragma once

#include <QDialog>
#include <functional>

#include "desktop/qt_desktop.h"
#include "shell/form.h"
#include "shell/frmMain.h"
#include "shell/modOptions.h"

class QListWidget;
class QPushButton;

namespace merivane::desktop {

using namespace shell;

// Shows and hides with its form. Enter presses the default button; Escape and the frame unload.
class SideDialog : public QDialog {
 public:
  SideDialog(Form& form, QtDesktop& desktop, QWidget* parent);
  ~SideDialog() override;
  void reject() override;

 protected:
  virtual void Draw() {}
  void Run(const std::function<void()>& handler) { desktop_.Run(form_, handler); }
  QPushButton* AddButton(const char* name, const char* caption);
  // Opens the help of its own context.
  QPushButton* AddHelpButton(const char* name, const char* caption, int helpContext);

  QtDesktop& desktop_;

 private:
  void Sync();

  Form& form_;
};

// Shows the application paths.
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

// Tells what the program is.
class AboutDialog : public SideDialog {
 public:
  AboutDialog(frmAbout& form, QtDesktop& desktop, QWidget* parent);
};

}  // namespace merivane::desktop
