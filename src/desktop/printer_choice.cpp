#include "printer_choice.h"

#include <QPrintDialog>
#include <QPrinter>

#include "desktop/qt_desktop.h"

namespace merivane::desktop {

bool ChoosePrinter(QPrinter& printer, QWidget& window, QtDesktop& desktop) {
#ifdef Q_OS_WIN
  // The dialog of Windows has no file to offer in a printer's place, and would not come up.
  if (printer.outputFormat() != QPrinter::NativeFormat) {
    desktop.ShowMessage({"No printer is installed.", MessageIcon::kExclamation});
    return false;
  }
#endif
  QPrintDialog dialog(&printer, &window);
  desktop.Execute(dialog);
  return dialog.result() == QDialog::Accepted;
}

}  // namespace merivane::desktop
