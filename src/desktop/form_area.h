// The area in which the windows of both directions lie.
#pragma once

#include <QMdiArea>

namespace merivane::desktop {

// Shows the program's picture, faintly, where no window lies.
class FormArea : public QMdiArea {
 public:
  FormArea();

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace merivane::desktop
