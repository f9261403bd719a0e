#include <algorithm>
#include <deque>

#include "project_lookup.h"
#include "runtime/code_page.h"
#include "session.h"
#include "shell/browse.h"
#include "shell/frmDbFileAppend.h"
#include "translator/multi.h"

namespace merivane {
namespace {

class ScenarioChooser {
 public:
  ScenarioChooser(Session& session, const std::vector<std::string>& choices)
      : session_(session), choices_(choices.begin(), choices.end()) {}

  void Answer(multi& form) {
    const auto chosen = NextChoice(form.List1);
    if (chosen) {
      const std::string name = form.List1[*chosen];
      session_.log.AddChooser(form.Label1, form.Label2, form.List1, name);
      form.ListIndex = chosen;
      form.Command1();
      return;
    }
    session_.log.AddChooser(form.Label1, form.Label2, form.List1, std::nullopt);
    std::string names;
    for (const std::string& name : form.List1) names += "\n  " + ToUtf8(name);
    session_.Say(ToUtf8(form.Label1) + " Say which with --choose NAME:" + names);
    form.Command2();
  }

 private:
  std::optional<std::size_t> NextChoice(const std::vector<std::string>& names) {
    if (choices_.empty()) return std::nullopt;
    const std::string wanted = FromUtf8(choices_.front());
    choices_.pop_front();
    const auto found = std::find(names.begin(), names.end(), wanted);
    if (found == names.end()) return std::nullopt;
    return static_cast<std::size_t>(found - names.begin());
  }

  Session& session_;
  std::deque<std::string> choices_;
};

// The reader's own box for a source that can't be opened, before any button replaces a file.
void ProveSource(Session& session, const std::string& path) {
  TextFiles& files = session.program.files;
  const std::int16_t number = files.FreeFile();
  try {
    files.OpenForInput(number, path);
  } catch (const RunTimeError&) {
    CheckNeutralTextHeader(session.program.modelToProject, path);
  }
  files.Close(number);
}

std::string CountsOf(Session& session, const ToProjectOptions& options) {
  Connection connection(session.program.workspace);
  connection.Open(ConnectionText(options.database), OpenMode::kReadOnly);
  const std::string project =
      " where Proj_ID = " + std::to_string(session.program.modelToProject.gMspProjId);
  const auto count = [&](const char* table, const std::string& more = "") {
    return std::to_string(
        CountRows(connection, std::string("select Proj_ID from ") + table + project + more));
  };
  return count("MSP_TASKS", " and TASK_UID > 0") + " tasks, " +
         count("MSP_RESOURCES", " and RES_UID > 0") + " resources, " + count("MSP_LINKS") +
         " links, " + count("MSP_ASSIGNMENTS") + " assignments; written: " + options.database +
         (options.mpx.empty() ? "" : ", " + options.mpx);
}

int Translate(Session& session, const ToProjectOptions& options) {
  frmIDEF3ToProject& form = session.main.modelToProject;
  session.main.mnuIDEF3ToProject();
  session.Browse(options.model, [&] { form.cmdBrowseText(); });
  if (form.txtCelvarFilename.text.empty()) return kRefused;
  if (!options.mpx.empty()) {
    form.SSTabGenerateOpt = frmIDEF3ToProject::kMpxTab;
    session.Browse(options.mpx, [&] { form.cmdBrowseMPX(); });
    if (form.txtMpx.text.empty()) return kRefused;
  }
  ProveSource(session, form.txtCelvarFilename.text);

  TextBox& database = options.mpx.empty() ? form.txtDatabase : form.txtDatabase_mpx;
  session.Browse(options.database, [&] {
    if (options.mpx.empty()) {
      form.BrowsedbBt();
    } else {
      form.BrowsedbBt_mpx();
    }
  });
  if (database.text.empty()) return kRefused;
  const auto& connection = session.program.modelToProject.gMspConn;
  if (!connection || !connection->IsOpen()) {
    return session.Refuse(options.database + " can't be opened or replaced.");
  }
  form.cmdOK();
  const ExitStatus status = session.StatusOf(form.GenerateResult);
  if (status != kFailed) session.Report(CountsOf(session, options) + session.MessageNote());
  return status;
}

}  // namespace

int RunToProject(Session& session, const ToProjectOptions& options) {
  if (FileIsThere(options.database) && !options.overwrite && !options.append) {
    return session.Refuse(options.database + " exists: say --overwrite or --append.");
  }
  ScenarioChooser chooser(session, options.choices);
  session.OnModalForm([&](ModalForm& form) {
    if (auto* question = dynamic_cast<frmDbFileAppend*>(&form)) {
      if (options.append) {
        question->CmdAppend();
      } else {
        question->CmdOverwrite();
      }
    } else if (auto* scenarios = dynamic_cast<multi*>(&form)) {
      chooser.Answer(*scenarios);
    }
  });
  return session.UntilProgramEnd([&] { return Translate(session, options); });
}

}  // namespace merivane
