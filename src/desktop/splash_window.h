// The picture that greets the user.
#pragma once

#include <QWidget>

#include "shell/frmMain.h"

namespace merivane::desktop {

using namespace shell;

// Shows and hides with its form, in the middle of the screen, and paints at once.
class SplashWindow : public QWidget {
 public:
  SplashWindow(frmSplash& form, QWidget* parent);
  ~SplashWindow() override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Sync();

  frmSplash& form_;
};

}  // namespace merivane::desktop
