#include "session.h"

#include "guarded.h"
#include "pictures/chart.h"
#include "pictures/picture_file.h"
#include "platform/program_run.h"
#include "printable.h"
#include "runtime/code_page.h"
#include "runtime/text.h"
#include "shell/run_result.h"

namespace merivane::batch {

using namespace pictures;

namespace {

bool Succeeded(int status) { return status == kDone || status == kDoneWithMessages; }

}  // namespace

Session::Session(const CommonOptions& common, const std::string& programFolder,
                 std::ostream& standardOut, std::ostream& standardError, const RunSetting& setting)
    : out(standardOut),
      err(standardError),
      quiet(common.quiet),
      log(common.quiet ? nullptr : &standardError),
      progressLine(standardError),
      desktop(common, programFolder, log, progressLine, setting.terminal && !quiet),
      program(desktop),
      main(program),
      common_(common) {
  if (setting.patience) program.workspace.patience = *setting.patience;
}

bool Session::Admits(std::vector<NamedFile> files) {
  files.push_back({"the template", desktop.TemplatePath()});
  files.push_back({"--log", common_.logFile, FileUse::kWrite});
  if (const auto refusal = RefusalOf(files)) {
    Say(*refusal);
    return false;
  }
  if (common_.logFile.empty() || log.OpenFile(common_.logFile)) return true;
  Say("the log " + common_.logFile + " can't be written.");
  return false;
}

void Session::Say(const std::string& text) const {
  progressLine.Clear();
  err << "merivane-batch: " << PrintableText(text) << '\n';
}

std::string Session::ReasonOf(const std::string& file, const RunTimeError& error) {
  const std::string advice = PlanFileAdvice(file, error);
  return ToUtf8(error.Description()) + (advice.empty() ? "" : " " + advice);
}

int Session::TellFailure(const std::string& file, const RunTimeError& error) const {
  const std::string reason = ReasonOf(file, error);
  const bool namesFile =
      kept.NamesOutput(reason) || reason.find("'" + file + "'") != std::string::npos;
  Say((namesFile ? "" : file + ": ") + reason);
  return kFailed;
}

int Session::Fail(const std::string& file, const RunTimeError& error) const {
  Say(file + " can't be used: " + ReasonOf(file, error));
  return error.Number() == kDatabaseError ? kRefused : kFailed;
}

int Session::Run(const std::function<int()>& command) {
  int status = Guarded(err, command);
  const bool closed = CloseAll();
  if (Succeeded(status)) {
    status = closed ? Guarded(err, [&] { return Conclude(status); }) : kFailed;
  } else if (status == kFailed && common_.keepPartial) {
    Guarded(err, [&] { return KeepPartial(); });
  }
  if (!Succeeded(status)) {
    for (const std::string& failure : kept.PutBack()) Say(failure);
    if (platform::EndIsAsked()) Say("the run was ended by a signal.");
  }
  return status;
}

bool Session::CloseAll() {
  const int committed = Guarded(err, [this] {
    program.workspace.CommitAll();
    return kDone;
  });
  const int closed = Guarded(err, [this] {
    program.files.CloseAll();
    return kDone;
  });
  program.modelToProject.gMspConn.reset();
  program.projectToModel.gProjectConn.reset();
  program.projectToModel.gInterimConn.reset();
  return committed == kDone && closed == kDone;
}

// The closing line comes before the last step: what can't be told is put back.
int Session::Conclude(int status) {
  kept.Flush();
  if (!report_.empty() && !quiet) out << PrintableText(report_) << '\n';
  out.flush();
  if (!out) {
    Say("standard output can't be written.");
    return kFailed;
  }
  if (!log.IsWhole()) {
    Say("the log " + common_.logFile + " can't be written.");
    return kFailed;
  }
  kept.Finish();
  return status;
}

int Session::KeepPartial() {
  const std::string backup = kept.BackupName();
  kept.Finish();
  if (!backup.empty()) Say("the database as it was is kept in " + backup);
  return kFailed;
}

ExitStatus Session::StatusOf(const std::optional<bool>& driverResult) const {
  if (!driverResult.value_or(false) || log.ToldMachineFault()) return kFailed;
  return log.MessageCount() == 0 ? kDone : kDoneWithMessages;
}

int Session::AfterOk(const std::optional<bool>& driverResult, const RunResult& result,
                     const std::function<std::string()>& report,
                     const std::function<std::string()>& proof) {
  const ExitStatus status = StatusOf(driverResult);
  if (status == kFailed) return status;
  if (result.file.empty()) {
    Say(result.text);
    return kFailed;
  }
  std::string added;
  const bool whole = !report || Add("what changed", [&] { added = report(); });
  if (proof) Add("the proof", [&] { added += proof(); });
  Report(added + result.text + Notes());
  return whole ? status : kDoneWithMessages;
}

bool Session::Add(const std::string& what, const std::function<void()>& step) try {
  step();
  return true;
} catch (...) {
  Say(what + " can't be told: " + FailureText());
  return false;
}

std::string Session::Notes() const {
  std::string notes;
  if (const std::string backup = kept.BackupName(); !backup.empty()) {
    notes = "; as it was before: " + backup;
  }
  const int count = log.MessageCount();
  if (count == 0) return notes;
  return notes + "; " + Counted(static_cast<std::size_t>(count), "message was", "messages were") +
         " shown";
}

NamedFile OutputNamed(const std::string& option, const std::string& path, bool force) {
  return {option, path, FileUse::kWrite, force ? "" : "--force to replace it"};
}

bool PictureIsRefused(Session& session, std::vector<NamedFile> files, const std::string& output,
                      bool force) {
  if (!IsPictureName(output)) {
    session.Say(output + " is no name of a picture: " + PictureEndingWords() + ".");
    return true;
  }
  files.push_back(OutputNamed("--output", output, force));
  return !session.Admits(std::move(files));
}

std::string FootOf(const Session& session, const std::string& source) {
  return FromUtf8(source.substr(source.find_last_of("/\\") + 1)) + ", " +
         DateText(session.desktop.Today()) + ", Merivane " MERIVANE_VERSION;
}

void SayIfSmall(const Session& session, const std::string& output, double factor) {
  constexpr double kReadable = 0.5;
  if (factor >= kReadable) return;
  session.Say(output + " is drawn small, for its size has limits: SVG has none.");
}

}  // namespace merivane::batch
