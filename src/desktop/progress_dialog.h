// Shows how far a long run is, and lets the user cancel it.
#pragma once

#include <QDialog>

#include "platform/desktop.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace merivane::desktop {

using namespace platform;

// Takes all input of the main window and of what belongs to it, but that of dialogs of its own. It
// isn't modal to Qt, which would keep the main window from hearing that its frame is closed.
// Cancel, Escape and the frame all cancel, which takes effect where the run looks next.
class ProgressDialog : public QDialog {
 public:
  explicit ProgressDialog(QWidget* parent);
  ~ProgressDialog() override;
  void Draw(const RunProgress& progress);
  bool IsCancelled() const { return cancelled_; }
  void reject() override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  bool ShutsOut(const QWindow* window) const;

  QLabel* stage_;
  QProgressBar* bar_;
  QPushButton* cancel_;
  bool cancelled_ = false;
};

}  // namespace merivane::desktop
