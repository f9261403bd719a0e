// The printer that a window's pictures or lists go to.
#pragma once

class QPrinter;
class QWidget;

namespace merivane::desktop {

class QtDesktop;

// Asks in front of the window. False where the user thought better of it, or where there is no
// printer to choose from, which is told.
[[nodiscard]] bool ChoosePrinter(QPrinter& printer, QWidget& window, QtDesktop& desktop);

}  // namespace merivane::desktop
