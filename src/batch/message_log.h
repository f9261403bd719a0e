// What the user would have seen: each box and each chooser, on a stream and as lines of JSON.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "platform/desktop.h"
#include "runtime/new_file.h"

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
  bool IsWhole() const { return isWhole_; }

 private:
  void AddLine(const std::string& line);  // to the file

  std::ostream* readable_;
  std::optional<runtime::OutputFile> file_;
  bool isWhole_ = true;
  int messages_ = 0;
  bool machineFault_ = false;
};

}  // namespace merivane::batch
