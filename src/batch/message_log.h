// What the user would have seen: each box and each chooser, on a stream and as lines of JSON.
#pragma once

#include <fstream>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "platform/desktop.h"

namespace merivane::batch {

using namespace platform;

class MessageLog {
 public:
  // `readable` null: boxes are not printed.
  explicit MessageLog(std::ostream* readable) : readable_(readable) {}

  // False where the file can't be written. It is emptied.
  bool OpenFile(const std::string& path);

  void AddMessage(const Message& message, MessageAnswer answer);
  // No answer: the user cancelled.
  void AddChooser(const std::string& label1, const std::string& label2,
                  const std::vector<std::string>& items, const std::optional<std::string>& answer);

  int MessageCount() const { return messages_; }
  // A box told a fault of the machine: what was written is not whole, whatever came of the run.
  bool ToldMachineFault() const { return machineFault_; }
  // False where a line could not be written to the file.
  bool IsWhole() const { return file_.good(); }

 private:
  std::ostream* readable_;
  std::ofstream file_;
  int messages_ = 0;
  bool machineFault_ = false;
};

}  // namespace merivane::batch
