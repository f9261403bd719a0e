// A desktop without a screen: answers from a script and records what was asked. The batch program
// runs on it, and so do the tests.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/desktop.h"
#include "runtime/run_time_error.h"

namespace merivane::platform {

class ScriptedDesktop : public Desktop {
 public:
  struct ShownMessage {
    Message message;
    MessageAnswer answer = MessageAnswer::kOk;
  };
  // A list that a modal form offered; without an answer the user cancelled it.
  struct Chooser {
    std::string label1;
    std::string label2;
    std::vector<std::string> items;
    std::optional<std::string> answer;
  };
  struct HelpCall {
    std::string file;
    int command = 0;
    int context = 0;
  };

  // The script. Members may be set at any time.
  std::deque<std::string> fileNames;       // answers of AskFileName; then every one is cancelled
  std::deque<MessageAnswer> yesNoAnswers;  // answers of Yes and No boxes; then every one is Yes
  std::function<void(ModalForm&)> modalHandler;  // plays the user of a form; without it, closes it
  std::function<void(const ShownMessage&)> onMessage;  // after a box was answered and recorded
  std::function<void(const Chooser&)> onChooser;       // after a chooser was recorded
  std::function<void(const RunProgress&)> onProgress;
  std::function<void()> onProgressEnd;
  std::function<bool()> onBreath;  // False cancels the run
  std::function<std::int64_t()> clock;
  std::string appPath = ".";
  std::string templatePath;  // empty: beside the program
  DateTime today{2000, 1, 3, 0};
  std::int32_t oemCodePage = 437;
  std::optional<RunTimeError> oemCodePageFailure;
  std::map<std::string, std::string> registry;  // key to default value, without the NUL
  std::map<std::pair<std::string, std::string>, std::string> profile;  // (section, key) to value
  bool startResult = true;
  int webPageResult = 33;
  int pointer = kPointerDefault;

  // The record, each list in order of the calls.
  std::vector<std::variant<ShownMessage, Chooser>> shown;
  std::vector<FileDialog> fileDialogs;
  std::vector<std::string> startedCommands;
  std::vector<std::string> openedPages;
  std::vector<HelpCall> helpCalls;
  int beeps = 0;

  // Texts of the boxes shown so far.
  std::vector<std::string> MessageTexts() const;
  // The progress of its runs is shown, and cancelled, on `shown`, which outlives them.
  void ShowProgressOn(Desktop& shown);
  // For the modal handler: the platform knows no form's lists.
  void RecordChooser(Chooser chooser);

  MessageAnswer ShowMessage(const Message& message) override;
  void Beep() override { ++beeps; }
  std::string AskFileName(const FileDialog& dialog) override;
  int MousePointer() const override { return pointer; }
  void SetMousePointer(int value) override { pointer = value; }
  void ShowModal(ModalForm& form) override;
  void ShowProgress(const RunProgress& progress) override;
  void EndProgress() override;
  std::int64_t Ticks() const override { return clock ? clock() : Desktop::Ticks(); }
  bool Breathe() override;
  std::string AppPath() const override { return appPath; }
  std::string TemplatePath() const override;
  DateTime Today() const override { return today; }
  std::int32_t OemCodePage() const override;
  std::optional<std::string> RegistryDefault(const std::string& key) const override;
  bool StartProgram(const std::string& commandLine) override;
  int OpenWebPage(const std::string& url) override;
  void ShowHelp(const std::string& helpFile, int command, int context) override;
  std::string ProfileString(const std::string& section, const std::string& key,
                            const std::string& fallback, const std::string& iniFile) const override;
};

}  // namespace merivane::platform
