// The boxes that tell a run-time error, as the guards of all parts show them. Who throws chooses
// the number and the words (RunTimeError); who guards chooses one of these, and so what the user
// can still do.
#pragma once

#include "platform/desktop.h"
#include "runtime/run_time_error.h"

namespace merivane::program {

using namespace platform;

// General reporter: beeps, shows the description and CR LF (exclamation, title "Error"); after
// error 70 a second box advises to close the file.
void ReportError(Desktop& desktop, const RunTimeError& error);

// Last resort of the reader and the translator: pointer to 1, the error's text (critical, title
// "IDEF3 to Project"), then the program ends.
[[noreturn]] void FatalAbort(Desktop& desktop, const RunTimeError& error);

void RestoreMousePointer(Desktop& desktop);

// A box with a description alone, no icon and no title: what most guards show.
void ShowDescription(Desktop& desktop, const RunTimeError& error);

}  // namespace merivane::program
