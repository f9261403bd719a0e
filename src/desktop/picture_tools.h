// What a window does with the pictures that it shows: zoom, fit, export, print.
#pragma once

#include <QKeySequence>
#include <QObject>
#include <functional>
#include <vector>

#include "pictures/picture.h"

class QAction;
class QLabel;
class QLineEdit;
class QMainWindow;
class QToolBar;

namespace merivane::desktop {

using namespace pictures;

class PictureView;
class QtDesktop;

// The window owns it. Its keys count within that window alone, and come before those of a box that
// is typed in where the box was told of.
class PictureTools : public QObject {
 public:
  struct Shown {
    std::function<PictureView*()> view;                        // that is meant; never null
    std::function<std::vector<pictures::Picture>()> pictures;  // that are written and printed
  };
  PictureTools(QMainWindow& window, QToolBar& bar, QtDesktop& desktop, Shown shown);

  // `keys` may be empty.
  QAction* Add(const char* name, const QString& text, const QKeySequence& keys,
               const std::function<void()>& act);
  void AddZoom();
  // Shows how large the view is; for whoever changes that.
  void TellZoom();
  void AddExport();
  void ComeBefore(QLineEdit& box);
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void Export();
  void Print();

  QMainWindow& window_;
  QToolBar& bar_;
  QtDesktop& desktop_;
  Shown shown_;
  QLabel* zoom_ = nullptr;
};

}  // namespace merivane::desktop
