// The desktop as the program sees it: boxes, dialogs, pointer, registry, programs, help, clock.
// The desktop program draws it with widgets; the batch program and the tests answer from a script.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "runtime/dates.h"

namespace merivane::platform {

using namespace runtime;

enum class MessageIcon { kNone = 0, kCritical = 16, kExclamation = 48 };
enum class MessageButtons { kOk, kYesNo };
enum class MessageAnswer { kOk, kYes, kNo };

inline constexpr const char* kApplicationTitle = "Merivane";

// Texts are Windows-1252, also where they hold a path. An empty title shows the application's.
struct Message {
  std::string text;
  MessageIcon icon = MessageIcon::kNone;
  std::string title = {};
  MessageButtons buttons = MessageButtons::kOk;
  int error = 0;  // number of the run-time error that the box tells, 0 without one
  bool endsProgram = false;
  std::string advice = {};  // what to do about it, shown behind the text
};

// One file type in the form "Text (*.txt)|*.txt".
struct FileDialog {
  std::string filter;
  std::string title;
  bool newName = false;      // the file is to be written, and may be new
  std::string current = {};  // the name chosen so far, UTF-8; empty without one
};

// Values of the pointer that handlers set.
inline constexpr int kPointerDefault = 0;
inline constexpr int kPointerArrow = 1;
inline constexpr int kPointerHourglass = 11;
inline constexpr int kPointerArrowHourglass = 13;

// How far a long run has come.
struct RunProgress {
  std::string stage = {};  // "Reading the model", Windows-1252
  std::int64_t done = 0;   // rows
  std::int64_t total = 0;  // 0: not known
};

// A form that can be shown modally. Its handlers call Unload to end the wait.
class ModalForm {
 public:
  virtual ~ModalForm() = default;
  virtual void Load() {}
  bool IsLoaded() const { return loaded_; }
  void Unload() { loaded_ = false; }
  void MarkLoaded() { loaded_ = true; }

 private:
  bool loaded_ = false;
};

// Thrown to end the whole program at once; only `main` and the event loop's edge catch it. It is
// no std::exception, so that no guard takes it for a failure.
struct ProgramEnd {};

// Commands of the help call.
inline constexpr int kHelpContents = 1;
inline constexpr int kHelpIndex = 2;
inline constexpr int kHelpContext = 15;

class Desktop {
 public:
  virtual ~Desktop() = default;

  virtual MessageAnswer ShowMessage(const Message& message) = 0;
  virtual void Beep() {}

  // The name that the user picked; empty when cancelled. The name need not exist. Paths are UTF-8
  // everywhere in the program, and become Windows-1252 where they enter a text.
  virtual std::string AskFileName(const FileDialog& dialog) = 0;

  virtual int MousePointer() const = 0;
  virtual void SetMousePointer(int pointer) = 0;

  // Loads the form, shows it and returns once it has been unloaded.
  virtual void ShowModal(ModalForm& form) = 0;

  // Waits with the windows painted; nothing where there is no window.
  virtual void Sleep(int /*milliseconds*/) {}

  // Shows how far a run is, at most ten times a second, until EndProgress.
  virtual void ShowProgress(const RunProgress& /*progress*/) {}
  virtual void EndProgress() {}
  // Milliseconds of a clock that never goes back.
  virtual std::int64_t Ticks() const;
  // Lets the screen catch up while a run is under way. False once the user, or a signal to
  // end, has cancelled it.
  virtual bool Breathe();

  [[noreturn]] void EndProgram() { throw ProgramEnd(); }

  // Directory of the program's file, without a separator at its end.
  virtual std::string AppPath() const = 0;
  // The template database; beside the program unless the user named another.
  virtual std::string TemplatePath() const { return AppPath() + "/MerivaneTemplate.mdb"; }
  virtual DateTime Today() const = 0;
  // The system's OEM code page; a RunTimeError where it can't be told.
  virtual std::int32_t OemCodePage() const = 0;

  // Default value of a key under the class root: the characters that the query returned, the
  // terminating NUL included, UTF-8 as they name a program; nothing where the key or its default
  // value can't be read.
  virtual std::optional<std::string> RegistryDefault(const std::string& key) const = 0;
  // Starts a command line (UTF-8) without waiting; False where it can't be started.
  virtual bool StartProgram(const std::string& commandLine) = 0;
  // Opens a page, or a file by its address, in the program for it; a result below kLowestSuccess is
  // a failure.
  static constexpr int kLowestSuccess = 33;
  virtual int OpenWebPage(const std::string& url) = 0;
  virtual void ShowHelp(const std::string& helpFile, int command, int context) = 0;
  // Value of a key in an ini file; `fallback` where there is none. At most 255 characters.
  virtual std::string ProfileString(const std::string& section, const std::string& key,
                                    const std::string& fallback,
                                    const std::string& iniFile) const = 0;
};

// MousePointer saved at the start of a handler and restored on every path.
class SavedMousePointer {
 public:
  explicit SavedMousePointer(Desktop& desktop, int shown) : desktop_(desktop) {
    saved_ = desktop.MousePointer();
    desktop.SetMousePointer(shown);
  }
  ~SavedMousePointer() { desktop_.SetMousePointer(saved_); }
  SavedMousePointer(const SavedMousePointer&) = delete;
  SavedMousePointer& operator=(const SavedMousePointer&) = delete;

 private:
  Desktop& desktop_;
  int saved_ = 0;
};

}  // namespace merivane::platform
