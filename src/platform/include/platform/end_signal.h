// The wish of the system, or of who is at the keyboard, that the program ends: Ctrl+C, a log-out,
// `kill`.
#pragma once

namespace merivane::platform {

// From now on the first such signal is only kept, so that the work can be undone and what is
// temporary removed; a second one ends the program in place. `wake` is called by the handler of the
// signal, so it may do no more than write to a pipe. What was ignored before stays so, as under
// nohup.
void ListenForEnd(void (*wake)() = nullptr);

bool EndIsAsked();

// Ends the program as the signal would have done; returns where none came.
void EndAsAsked();

}  // namespace merivane::platform
