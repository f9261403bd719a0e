// The batch program as a function: arguments in, text on two streams, files, an exit status.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace merivane::batch {

enum ExitStatus {
  kDone = 0,
  kFailed = 1,           // the driver returned False, or a box ended the program
  kRefused = 2,          // wrong usage, or a name that the dialog refuses: nothing was touched
  kDoneWithMessages = 3  // the driver returned True, but boxes were shown on the way
};

// Runs one command line (without the program's name). `programFolder` is where the template lies.
// With `terminal`, `err` is one: how far a run is stands there in a line that comes and goes.
int RunBatch(const std::vector<std::string>& arguments, const std::string& programFolder,
             std::ostream& out, std::ostream& err, bool terminal = false);

}  // namespace merivane::batch
