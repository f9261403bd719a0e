// Shows how far a long run is, and lets the user cancel it.
#pragma once

#include <QDialog>

#include "platform/desktop.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace merivane::desktop {

using namespace platform;

// Modal to the program's windows, so that it takes all their input. Cancel, Escape and the frame
// all cancel, which takes effect where the run looks next.
class ProgressDialog : public QDialog {
 public:
  explicit ProgressDialog(QWidget* parent);
  void Draw(const RunProgress& progress);
  bool IsCancelled() const { return cancelled_; }
  void reject() override;

 private:
  QLabel* stage_;
  QProgressBar* bar_;
  QPushButton* cancel_;
  bool cancelled_ = false;
};

}  // namespace merivane::desktop
