// The batch program as a function: arguments in, text on two streams, files, an exit status.
//
//   std::ostringstream out;
//   std::ostringstream err;
//   const std::vector<std::string> line = {"to-project", "model.txt", "--database", "plan.mdb"};
//   const int status = RunBatch(line, programFolder, out, err);
//   if (status != kDone) std::cerr << err.str();
//
// Arguments and both streams are UTF-8. What a command was asked for goes to `out`, every word
// about the run to `err`. Nothing is thrown: a failure is a word and a status, and the files that
// stood before stand again, save under --keep-partial. No call keeps anything for the next one; the
// streams are the caller's.
#pragma once

#include <chrono>
#include <optional>
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

struct RunSetting {
  bool terminal =
      false;  // `err` is one: how far a run is stands there in a line that comes and goes
  // How long to wait for another process that holds a database, each time; empty: as ever.
  std::optional<std::chrono::milliseconds> patience = {};
};

// Runs one command line (without the program's name). `programFolder` is where the template lies.
int RunBatch(const std::vector<std::string>& arguments, const std::string& programFolder,
             std::ostream& out, std::ostream& err, const RunSetting& setting = {});

}  // namespace merivane::batch
