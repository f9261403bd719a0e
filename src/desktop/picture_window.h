// The window that shows diagrams or a chart.
#pragma once

#include <QMainWindow>
#include <vector>

#include "pictures/picture.h"
#include "store/work.h"

class QLabel;
class QLineEdit;
class QToolBar;

namespace merivane::desktop {

using namespace pictures;
using namespace store;

class PictureView;
class QtDesktop;

// Shows the pictures one below the other, and goes away when it is closed. `note` stands in the
// status bar.
class PictureWindow : public QMainWindow {
 public:
  static constexpr int kHelpContextId = 7020;

  // `work` is told that its making goes on.
  PictureWindow(std::vector<pictures::Picture> shown, const QString& note, Work& work,
                QtDesktop& desktop, QWidget* parent);

 private:
  void AddTools();
  void AddSearch(QToolBar& tools);
  void Search(bool anew);

  QtDesktop& desktop_;
  std::vector<pictures::Picture> pictures_;
  PictureView* view_;
  QLineEdit* search_;
  QLabel* found_;
  QLabel* zoom_;
};

}  // namespace merivane::desktop
