// The area in which the windows of both directions and the workbenches lie.
#pragma once

#include <QMdiArea>

namespace merivane::desktop {

// The program's picture shows, faintly, where no window is. The windows have frames, or are tabs
// where the user prefers that, which is remembered.
class FormArea : public QMdiArea {
 public:
  FormArea();

  bool HasTabs() const { return viewMode() == TabbedView; }
  void UseView(ViewMode view);

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void TakeView(ViewMode view);
  void ShowTabs();
};

}  // namespace merivane::desktop
