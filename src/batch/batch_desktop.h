// The desktop of a run on a command line: the options answer what the user would be asked, the log
// and standard error tell what would be shown.
#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <string>

#include "message_log.h"
#include "options.h"
#include "platform/desktop.h"

namespace merivane::batch {

using namespace platform;

// One line on a terminal that tells how far a run is.
class ProgressLine {
 public:
  explicit ProgressLine(std::ostream& terminal) : terminal_(terminal) {}

  void Show(const RunProgress& progress);
  void Clear();  // for whatever else is printed there

 private:
  std::ostream& terminal_;
  std::size_t shown_ = 0;  // characters of the line
};

// Questions are answered with Yes. There is no window, no program to start, no help and no
// registry.
class BatchDesktop : public Desktop {
 public:
  // The template and the help lie in `programFolder`; `line` shows progress, where that is wanted.
  // The log and the line outlive this.
  BatchDesktop(const CommonOptions& common, std::string programFolder, MessageLog& log,
               ProgressLine& line, bool showsProgress);

  // Runs `press`, in which the first file dialog picks `name` and any other is cancelled.
  template <typename Press>
  bool Pick(const std::string& name, Press press) {
    picked_ = name;
    const bool result = press();
    picked_.clear();
    return result;
  }
  // Plays the user of each form that opens; a form that it leaves open is closed.
  void OnModalForm(std::function<void(ModalForm&)> answer) { answer_ = std::move(answer); }
  // Windows-1252, empty before the first box.
  const std::string& LastMessage() const { return lastMessage_; }

  MessageAnswer ShowMessage(const Message& message) override;
  std::string AskFileName(const FileDialog& dialog) override;
  int MousePointer() const override { return kPointerDefault; }
  void SetMousePointer(int /*pointer*/) override {}
  void ShowModal(ModalForm& form) override;
  void ShowProgress(const RunProgress& progress) override;
  void EndProgress() override;
  std::string AppPath() const override { return programFolder_; }
  std::string TemplatePath() const override;
  DateTime Today() const override { return today_; }
  std::int32_t OemCodePage() const override { return codePage_; }
  std::optional<std::string> RegistryDefault(const std::string& /*key*/) const override {
    return std::nullopt;
  }
  bool StartProgram(const std::string& /*commandLine*/) override { return false; }
  int OpenWebPage(const std::string& /*url*/) override { return 0; }
  void ShowHelp(const std::string& /*helpFile*/, int /*command*/, int /*context*/) override {}
  std::string ProfileString(const std::string& /*section*/, const std::string& /*key*/,
                            const std::string& fallback,
                            const std::string& /*iniFile*/) const override {
    return fallback;
  }

 private:
  std::string programFolder_;
  std::string templateFile_;
  DateTime today_;
  std::int32_t codePage_;
  MessageLog& log_;
  ProgressLine& line_;
  bool showsProgress_;
  std::string picked_;
  std::function<void(ModalForm&)> answer_;
  std::string lastMessage_;
};

}  // namespace merivane::batch
