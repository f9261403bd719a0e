// The desktop of a run that nobody watches: what a preview, a check or a drawing runs the program
// on, behind a window or a command that shows their result itself.
//
//   QuietDesktop quiet;
//   quiet.ShowProgressOn(desktop);  // where it may take long: the user sees it, and can cancel
//   Program program(quiet);
//   ...
//   for (const Message& box : quiet.boxes) ...
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop.h"

namespace merivane::platform {

// Boxes are kept and answered with OK or Yes, file dialogs are cancelled, programs, pages and help
// stay closed, and the system tells nothing: no registry, no ini file.
class QuietDesktop : public Desktop {
 public:
  std::string appPath = ".";
  std::string templatePath;    // empty: beside the program
  std::vector<Message> boxes;  // that the run has shown, in order

  // Once a box is kept.
  std::function<void(const Message&)> onMessage;
  // Plays the user of a form while it is open; without it, the form is closed at once.
  std::function<void(ModalForm&)> onModalForm;

  // Progress is shown, and runs are cancelled, on `user`, which outlives this.
  void ShowProgressOn(Desktop& user) { user_ = &user; }
  // Texts of the boxes, Windows-1252.
  std::vector<std::string> MessageTexts() const;
  // Throws the first error that a box told and that is a full disk, a file that can't be opened or
  // the like: nothing that a model or a plan is to blame for.
  void ThrowMachineFault() const;

  MessageAnswer ShowMessage(const Message& message) override;
  std::string AskFileName(const FileDialog& /*dialog*/) override { return {}; }
  int MousePointer() const override { return kPointerDefault; }
  void SetMousePointer(int /*pointer*/) override {}
  void ShowModal(ModalForm& form) override;
  void ShowProgress(const RunProgress& progress) override;
  void EndProgress() override;
  std::int64_t Ticks() const override { return user_ ? user_->Ticks() : Desktop::Ticks(); }
  bool Breathe() override { return user_ ? user_->Breathe() : Desktop::Breathe(); }
  std::string AppPath() const override { return appPath; }
  std::string TemplatePath() const override;
  // A day of no meaning: what is made here, nobody keeps.
  DateTime Today() const override { return {2000, 1, 3, 0}; }
  std::int32_t OemCodePage() const override { return 437; }
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
  Desktop* user_ = nullptr;
};

}  // namespace merivane::platform
