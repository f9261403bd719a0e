// The desktop drawn with widgets: boxes, dialogs, pointer, help window.
//
//   DialogFileNames names;
//   QtDesktop desktop(names);
//   Program program(desktop);
//   frmMain main(program);
//   MainWindow window(desktop, main);
//   desktop.Run([&] { main.Start(); });   // every handler goes through Run
//
// There is one thread. A run shows its progress and lets events in by ShowProgress and Breathe,
// which the program calls; until the run is over all windows but the bar with Cancel are deaf.
#pragma once

#include <QPointer>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "desktop/file_names.h"
#include "desktop/session_log.h"
#include "platform/desktop.h"
#include "runtime/new_file.h"
#include "shell/form.h"

class QDialog;

namespace merivane::desktop {

using namespace shell;

class HelpWindow;
class ProgressDialog;

// REQUIRES: a QApplication that outlives it.
class QtDesktop : public Desktop {
 public:
  explicit QtDesktop(FileNames& fileNames);
  ~QtDesktop() override;

  // The window in front of which boxes and dialogs open.
  void SetWindow(QWidget* window) { window_ = window; }

  // Runs a form's handler. Every slot goes through here, so that no exception crosses Qt: a failure
  // that the handler did not guard shows its description, and the end of the program leaves all
  // open dialogs, unwinds the handlers that wait for them and calls OnEnd. Nothing once ended, and
  // nothing while the screen catches up with a run.
  void Run(const std::function<void()>& handler);
  // The same; boxes and dialogs of the handler open in front of `window`, to which the user comes
  // back. Without this they open in front of the main window.
  void RunIn(QWidget& window, const std::function<void()>& handler);
  // The same for an event of a form's window. An event that comes while the form isn't shown, a key
  // on its way when it was unloaded for instance, is dropped.
  void Run(const Form& form, const std::function<void()>& handler);
  // The same for a browse handler, with `name` as the answer of its file dialog.
  void RunWithFileName(const Form& form, const std::string& name,
                       const std::function<void()>& handler);
  // True for the name that the running handler was given by its file dialog, without outer blanks.
  bool WasPicked(const std::string& name) const;
  // A name that was typed into a box.
  void RememberName(const std::string& name);
  bool Ended() const { return ended_; }
  std::function<void()> OnEnd;

  // For the frame of the main window. True while a run is under way: it asks whether to cancel the
  // run, and ends the program behind it where that is wanted.
  bool AskInRun();

  // Ends the program without a question; a run is undone first. For an event loop.
  void EndUnasked();

  // F1 or a help button: the topic of the widget's help context.
  void RequestHelp(const QWidget* widget);
  std::function<void(int context)> OnHelpRequest;
  HelpWindow* Help() const { return help_.get(); }

  // Shows a dialog until it is closed, also by the end of the program, which leaves the handler.
  // REQUIRES: called in a handler. It is no child of a window that may go away meanwhile.
  void Execute(QDialog& dialog);

  // Why the database of a run isn't open, UTF-8, while that run lasts: told behind the boxes that
  // say no more than that. Empty: not known.
  void SetWhyNotOpen(const std::string& why) { whyNotOpen_ = why; }

  // The name that is chosen already when this question is asked, once; both Windows-1252.
  void SetReadyChoice(const std::string& question, const std::string& name) {
    readyChoices_[question] = name;
  }
  // It; empty without one.
  std::string TakeReadyChoice(const std::string& question);

  // While set, the question whether a database is overwritten or merged with is answered: merged,
  // with this project.
  void SetReadyMerge(std::optional<std::int32_t> project) { readyMerge_ = project; }

  // Writes the file anew, under another name beside it until it is whole, and asks before it
  // replaces one. False where that isn't wanted. Errors of `write` come up with the name of `path`.
  bool WriteAnew(const std::string& path, const std::function<void(const Output& output)>& write);

  // Opens a file or a folder in the program that the user has for it.
  void OpenPlace(const QString& path);

  // All that was told so far. What a handler tells is about the file that it last asked for, or
  // that it named by TellAbout (UTF-8).
  SessionLog& Log() { return log_; }
  void TellAbout(const std::string& file) { about_ = file; }
  // A line of a status bar, and the file that it is about; empty: that of the handler.
  void LogResult(const QString& text, const QString& file);

  // Boxes shown so far, without those that asked something.
  int MessageCount() const { return messageCount_; }

  MessageAnswer ShowMessage(const Message& message) override;
  void Beep() override;
  std::string AskFileName(const FileDialog& dialog) override;
  int MousePointer() const override { return pointer_; }
  void SetMousePointer(int pointer) override;
  void ShowProgress(const RunProgress& progress) override;
  void EndProgress() override;
  bool Breathe() override;
  void ShowModal(ModalForm& form) override;
  void Sleep(int milliseconds) override;
  std::string AppPath() const override;
  DateTime Today() const override;
  std::int32_t OemCodePage() const override;
  std::optional<std::string> RegistryDefault(const std::string& key) const override;
  bool StartProgram(const std::string& commandLine) override;
  int OpenWebPage(const std::string& url) override;
  void ShowHelp(const std::string& helpFile, int command, int context) override;
  std::string ProfileString(const std::string& section, const std::string& key,
                            const std::string& fallback, const std::string& iniFile) const override;

 private:
  class Wait;
  QWidget* Parent() const;
  QString AdviceOn(const Message& message) const;
  void RunReported(const std::function<void()>& handler);
  void End();
  void ApplyPointer();

  FileNames& fileNames_;
  QWidget* window_ = nullptr;
  QPointer<QWidget> caller_;  // the window whose handler runs; empty: the main window
  std::unique_ptr<HelpWindow> help_;
  std::unique_ptr<ProgressDialog> progress_;   // while a run shows how far it is
  std::optional<std::int64_t> progressSince_;  // ticks when it was told first
  bool breathing_ = false;
  bool endsBehindRun_ = false;
  bool undoesRun_ = false;
  std::optional<std::string> givenName_;
  std::vector<std::function<void()>> waits_;  // leaves each nested event loop, innermost last
  std::string whyNotOpen_;
  SessionLog log_;
  std::string about_;
  std::map<std::string, std::string> readyChoices_;  // by question
  std::optional<std::int32_t> readyMerge_;
  int pointer_ = kPointerDefault;
  bool pointerShown_ = false;  // an override cursor of ours is on Qt's stack
  int messageCount_ = 0;
  bool ended_ = false;
};

}  // namespace merivane::desktop
