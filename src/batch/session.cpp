#include "session.h"

#include "platform/system_locale.h"

namespace merivane {

Session::Session(const CommonOptions& common, const std::string& programFolder,
                 std::ostream& standardOut, std::ostream& standardError)
    : out(standardOut),
      err(standardError),
      quiet(common.quiet),
      log(common.quiet ? nullptr : &standardError),
      program(desktop),
      main(program) {
  desktop.appPath = programFolder;
  desktop.templatePath = common.templateFile;
  desktop.today = common.today.value_or(SystemToday());
  desktop.oemCodePage = common.codePage.value_or(SystemOemCodePage());
  desktop.onMessage = [this](const ScriptedDesktop::ShownMessage& shown) {
    log.AddMessage(shown.message, shown.answer);
  };
}

bool Session::OpenLog(const std::string& path) {
  if (path.empty() || log.OpenFile(path)) return true;
  Say("the log " + path + " can't be written.");
  return false;
}

void Session::Report(const std::string& line) const {
  if (!quiet) out << line << '\n';
}

ExitStatus Session::StatusOf(const std::optional<bool>& driverResult) const {
  if (!driverResult.value_or(false)) return kFailed;
  return log.MessageCount() == 0 ? kDone : kDoneWithMessages;
}

std::string Session::MessageNote() const {
  const int count = log.MessageCount();
  if (count == 0) return "";
  return "; " + std::to_string(count) + (count == 1 ? " message was" : " messages were") + " shown";
}

}  // namespace merivane
