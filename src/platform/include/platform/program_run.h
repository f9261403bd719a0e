// The program among others: what it was started with and from which terminal, the wish that it
// ends, and the programs that it starts.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace merivane::platform {

// The words behind the program's name, UTF-8.
std::vector<std::string> ProgramArguments(int argc, char** argv);

// The folder of the program's file, UTF-8; `name` is what it was called by.
std::string ProgramFolder(const std::string& name);

// Libraries that are loaded from now on come from the system's folder or the program's own, never
// from the current one or those of PATH. Linux does so anyway.
void TakeLibrariesOfTheSystemAlone();

// Whether somebody may be watching.
bool StandardErrorIsTerminal();

// Runs while the terminal takes what is written to it as UTF-8. Gives what `run` gives.
int OnUtf8Terminal(const std::function<int()>& run);

// Programs live on without the one that started them. Starts a command line (UTF-8, read up to a
// NUL) without waiting; False where it can't be started. Words end at blanks outside double quotes;
// a program without a folder is searched on the path. Outside Windows the program gets a session of
// its own and none of the standard streams.
[[nodiscard]] bool StartDetached(const std::string& commandLine);

// Opens a page, or a file by its address, in the user's program for it. A result below 33 is a
// failure, as of the Windows shell; 2 says that there is no opener, or that it failed within three
// seconds. `meanwhile` is called now and then during that time.
[[nodiscard]] int OpenInBrowser(
    const std::string& url, const std::function<void()>& meanwhile = [] {});

// Puts a file among those that the system offers for this program: on Windows the list behind its
// button. `path` is absolute.
void RememberFile(const std::string& path);

// The wish of the system, or of who is at the keyboard, that the program ends: Ctrl+C, a log-out,
// `kill`. From now on the first such signal is only kept, so that the work can be undone and what
// is temporary removed; a second one ends the program in place. `wake` is called by the handler of
// the signal, so it may do no more than write to a pipe. What was ignored before stays so, as under
// nohup.
void ListenForEnd(void (*wake)() = nullptr);

bool EndIsAsked();

// Ends the program as the signal would have done; returns where none came.
void EndAsAsked();

}  // namespace merivane::platform
