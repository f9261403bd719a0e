// This program without a window, as the one that renders pictures for others (Windows).
#pragma once

namespace merivane::desktop {

// Takes the pictures from the standard input, and gives what `argv` asks for on the standard output
// (pictures/packed_pictures.h), or why it can't. Gives the exit status.
int RenderForAnother(int argc, char** argv);

}  // namespace merivane::desktop
