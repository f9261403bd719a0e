// What every command shares: the program, its desktop that answers from the command line, the log.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "batch/batch.h"
#include "batch_desktop.h"
#include "message_log.h"
#include "options.h"
#include "program/program.h"
#include "shell/frmMain.h"
#include "shell/kept_files.h"
#include "shell/modal_forms.h"
#include "shell/named_files.h"

namespace merivane::batch {

using namespace shell;

class Session {
 public:
  Session(const CommonOptions& common, const std::string& programFolder, std::ostream& out,
          std::ostream& err, const RunSetting& setting);

  // The door for the names that a command was given; the log and the template stand beside them.
  // False, with a word on standard error, where they refuse the run: nothing was touched then.
  bool Admits(std::vector<NamedFile> files);

  // Runs a command that gives an exit status, and settles the files by how it ended: after 0 and 3
  // what it wrote stays, otherwise what stood before stands again. Nothing that is thrown leaves
  // it.
  int Run(const std::function<int()>& command);

  // Functions over pointers to the modal forms; a form that they leave open is closed.
  template <typename Answers>
  void OnModalForm(Answers answers) {
    desktop.OnModalForm([answers](ModalForm& form) { std::visit(answers, AsAny(form)); });
  }

  // Runs what presses a browse button, with `name` as the file that the user picks.
  template <typename Press>
  bool Browse(const std::string& name, Press press) {
    return desktop.Pick(name, press);
  }

  // Keeps the database that the form is about to replace or change, until it is told how the run
  // ended; `changed`: what stays of one that is changed.
  template <typename Form>
  void KeepDatabase(Form& form, const std::string& path, Copy changed) {
    form.OnDatabaseReplaced = [this, &form, path](const std::string& copy) {
      kept.KeepReplaced(program.workspace, path, desktop.TemplatePath(), copy, form.CopyOfReplaced);
    };
    if (!FileIsThere(path)) return;
    form.OnDatabaseTaken = [this, path, changed] {
      kept.KeepDatabase(program.workspace, path, changed);
    };
  }

  // A word of the batch program itself on standard error.
  void Say(const std::string& text) const;
  int Refuse(const std::string& text) const {
    Say(text);
    return kRefused;
  }
  // Tells what failed a command on `file`. An error that names a file is told as it is.
  int TellFailure(const std::string& file, const RunTimeError& error) const;

  // The error's description, and what to do where the file is one of another kind of plan.
  static std::string ReasonOf(const std::string& file, const RunTimeError& error);
  // Tells a fault that the program keeps to itself where the user picks `file`: the run's failure,
  // or a refusal where it is a file of another kind.
  int Fail(const std::string& file, const RunTimeError& error) const;
  // The exit status behind the OK button, told in the closing line with `report` and `proof` in
  // front, or in a word where it gave no file. A proof that can't be made leaves the status.
  int AfterOk(const std::optional<bool>& driverResult, const RunResult& result,
              const std::function<std::string()>& report = nullptr,
              const std::function<std::string()>& proof = nullptr);
  // Does what stands beside the work: where it can't be done, a word tells why and the work stands.
  bool Add(const std::string& what, const std::function<void()>& step);
  // The closing line of a run that succeeds, unless --quiet.
  void Report(const std::string& line) { report_ = line; }

  // What a driver's result and the boxes shown make of the exit status.
  ExitStatus StatusOf(const std::optional<bool>& driverResult) const;
  // Behind the report: the backup, and "; 2 messages were shown".
  std::string Notes() const;

  std::ostream& out;
  std::ostream& err;
  bool quiet;
  MessageLog log;
  mutable ProgressLine progressLine;  // goes whenever something is said
  BatchDesktop desktop;
  Program program;
  KeptFiles kept;
  frmMain main;

 private:
  bool CloseAll();
  int Conclude(int status);
  int KeepPartial();

  const CommonOptions& common_;
  std::string report_;
};

int RunToProject(Session& session, const ToProjectOptions& options);
int RunToModel(Session& session, const ToModelOptions& options);
int RunCheck(Session& session, const CheckOptions& options);
int RunDiff(Session& session, const DiffOptions& options);
int RunExport(Session& session, const ExportOptions& options);
int RunProjects(Session& session, const ProjectsOptions& options);
int RunDraw(Session& session, const DrawOptions& options);
int RunChart(Session& session, const ChartArguments& options);
int RunReport(Session& session, const ReportOptions& options);

// An output, which may stand already where --force was said.
NamedFile OutputNamed(const std::string& option, const std::string& path, bool force);

// True, with a word, for a name that is no picture's, that is one of the sources, or that stands
// already without --force.
bool PictureIsRefused(Session& session, std::vector<NamedFile> files, const std::string& output,
                      bool force);
// "clinic.txt, Nov 26, 2026, Merivane 3.1.0" in Windows-1252: the source, today and the program.
std::string FootOf(const Session& session, const std::string& source);
// A word where the picture had to be made smaller by `factor`, as WritePictures tells it.
void SayIfSmall(const Session& session, const std::string& output, double factor);

}  // namespace merivane::batch
