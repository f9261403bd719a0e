#include "program/error_boxes.h"

#include "runtime/text.h"

namespace merivane::program {

void ReportError(Desktop& desktop, const RunTimeError& error) {
  desktop.Beep();
  desktop.ShowMessage({.text = error.Description() + std::string(kCrLf),
                       .icon = MessageIcon::kExclamation,
                       .title = "Error",
                       .error = error.Number()});
  if (error.Number() == kPermissionDenied) {
    desktop.ShowMessage(
        {"The selected file may be already open for editing.  Please close it and retry."});
  }
}

void FatalAbort(Desktop& desktop, const RunTimeError& error) {
  desktop.SetMousePointer(kPointerArrow);
  desktop.ShowMessage({.text = error.Description(),
                       .icon = MessageIcon::kCritical,
                       .title = "IDEF3 to Project",
                       .error = error.Number(),
                       .endsProgram = true});
  desktop.EndProgram();
}

void RestoreMousePointer(Desktop& desktop) { desktop.SetMousePointer(kPointerDefault); }

void ShowDescription(Desktop& desktop, const RunTimeError& error) {
  desktop.ShowMessage({.text = error.Description(), .error = error.Number()});
}

}  // namespace merivane::program
