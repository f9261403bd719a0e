// What every command shares: the program, its desktop that answers from the command line, the log.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "batch/batch.h"
#include "message_log.h"
#include "neutraltext/modGlobal.h"
#include "options.h"
#include "platform/scripted_desktop.h"
#include "shell/frmMain.h"

namespace merivane {

class Session {
 public:
  Session(const CommonOptions& common, const std::string& programFolder, std::ostream& out,
          std::ostream& err);

  // False, with a word on standard error, where the log can't be written.
  bool OpenLog(const std::string& path);

  // Shown modally: frmDbFileAppend, frmDBMerge or multi.
  void OnModalForm(std::function<void(ModalForm&)> handler) {
    desktop.modalHandler = std::move(handler);
  }

  // Runs the handler of a browse button with `name` as the file that the user picks.
  template <typename Handler>
  void Browse(const std::string& name, Handler handler) {
    desktop.fileNames.push_back(name);
    handler();
  }

  // A word of the batch program itself on standard error.
  void Say(const std::string& text) const { err << "merivane-batch: " << text << '\n'; }
  int Refuse(const std::string& text) const {
    Say(text);
    return kRefused;
  }
  // A line on standard output unless --quiet.
  void Report(const std::string& line) const;

  // Shows the box that the program's guards would show for this error.
  void ShowError(const RunTimeError& error) { ShowDescription(desktop, error); }

  // Runs `step`; a box that ends the program is kFailed.
  template <typename Step>
  int UntilProgramEnd(Step step) {
    try {
      return step();
    } catch (const ProgramEnd&) {
      return kFailed;
    }
  }

  // What a driver's result and the boxes shown make of the exit status.
  ExitStatus StatusOf(const std::optional<bool>& driverResult) const;
  // "; 2 messages were shown" behind the report of a run with boxes.
  std::string MessageNote() const;

  std::ostream& out;
  std::ostream& err;
  bool quiet;
  MessageLog log;
  ScriptedDesktop desktop;
  Program program;
  frmMain main;
};

int RunToProject(Session& session, const ToProjectOptions& options);
int RunToModel(Session& session, const ToModelOptions& options);
int RunProjects(Session& session, const ProjectsOptions& options);

}  // namespace merivane
