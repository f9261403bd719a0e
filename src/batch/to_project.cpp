#include <algorithm>

#include "neutraltext/modGlobal.h"
#include "project_lookup.h"
#include "runtime/code_page.h"
#include "scenario_chooser.h"
#include "session.h"
#include "shell/browse.h"
#include "shell/frmDbFileAppend.h"
#include "shell/source_proof.h"
#include "translator/multi.h"

namespace merivane::batch {

using namespace neutraltext;
using namespace translator;

namespace {

// Why the database can't take a project under this number; nothing where it can.
std::optional<std::string> AppendRefusal(Session& session, const ToProjectOptions& options) {
  const std::int16_t number = session.program.modelToProject.gMspProjId;
  const auto projects = ListProjects(session.program.workspace, options.database);
  if (projects.empty()) {
    return options.database + " holds no project: say --overwrite instead of --append.";
  }
  const bool taken = std::any_of(projects.begin(), projects.end(),
                                 [&](const ProjectRow& project) { return project.id == number; });
  if (number > 0 && !taken) return std::nullopt;
  const auto& last = projects.back().id;
  return options.database + " can't take a further project: its number would follow that of the " +
         "last one, " + (last ? std::to_string(*last) : "none") +
         ", must be free and end at 32767.";
}

// A database that came up since the names were admitted is neither replaced nor changed.
void AnswerAppend(frmDbFileAppend& question, const ToProjectOptions& options) {
  if (options.append) {
    question.CmdAppend();
  } else if (options.overwrite) {
    question.CmdOverwrite();
  } else {
    throw RunTimeError(kPermissionDenied);
  }
}

void BrowseDatabase(Session& session, const ToProjectOptions& options) {
  frmIDEF3ToProject& form = session.main.modelToProject;
  form.KeepBackup = false;
  const auto keep = [&session, &options] {
    session.kept.KeepDatabase(
        session.program.workspace, options.database,
        options.overwrite ? KeptFiles::Copy::kBackup : KeptFiles::Copy::kUntilDone);
  };
  if (options.append && FileIsThere(options.database)) {
    form.OnDatabaseTaken = keep;
  } else {
    keep();
  }
  session.Browse(options.database, [&] {
    if (form.SSTabGenerateOpt == frmIDEF3ToProject::kMpxTab) {
      form.BrowsedbBt_mpx();
    } else if (form.SSTabGenerateOpt == frmIDEF3ToProject::kXmlTab) {
      form.BrowsedbBt_xml();
    } else {
      form.BrowsedbBt();
    }
  });
}

const TextBox& DatabaseBox(const frmIDEF3ToProject& form) {
  if (form.SSTabGenerateOpt == frmIDEF3ToProject::kMpxTab) return form.txtDatabase_mpx;
  return form.SSTabGenerateOpt == frmIDEF3ToProject::kXmlTab ? form.txtDatabase_xml
                                                             : form.txtDatabase;
}

// The XML is written, like the MPX file, whenever its box holds a name, whatever tab is in front.
// False where the dialog refuses a name.
bool BrowseFiles(Session& session, const ToProjectOptions& options) {
  frmIDEF3ToProject& form = session.main.modelToProject;
  if (!options.xml.empty()) {
    form.SSTabGenerateOpt = frmIDEF3ToProject::kXmlTab;
    session.Browse(options.xml, [&] { form.cmdBrowseXML(); });
    if (form.txtXml.text.empty()) return false;
    form.XmlStandIn = session.kept.StandInFor(options.xml);
  }
  if (!options.mpx.empty()) {
    form.SSTabGenerateOpt = frmIDEF3ToProject::kMpxTab;
    session.Browse(options.mpx, [&] { form.cmdBrowseMPX(); });
    if (form.txtMpx.text.empty()) return false;
    session.kept.KeepText(session.program.files, options.mpx);
  }
  return true;
}

int PressOk(Session& session) {
  frmIDEF3ToProject& form = session.main.modelToProject;
  form.cmdOK();
  const ExitStatus status = session.StatusOf(form.GenerateResult);
  if (status == kFailed) return status;
  if (form.Result.file.empty()) {
    session.Say(form.Result.text);
    return kFailed;
  }
  session.Report(form.Result.text + session.Notes());
  return status;
}

int Translate(Session& session, const ToProjectOptions& options) {
  frmIDEF3ToProject& form = session.main.modelToProject;
  session.main.mnuIDEF3ToProject();
  session.Browse(options.model, [&] { form.cmdBrowseText(); });
  if (form.txtCelvarFilename.text.empty()) return kRefused;
  if (!BrowseFiles(session, options)) return kRefused;
  if (!ProveModelText(session.program.modelToProject, options.model)) return kFailed;
  BrowseDatabase(session, options);
  if (DatabaseBox(form).text.empty()) return kRefused;
  const auto& connection = session.program.modelToProject.gMspConn;
  if (!connection || !connection->IsOpen()) {
    return session.Refuse(options.database + " can't be opened or replaced.");
  }
  if (!session.program.modelToProject.gOverwriteDb) {
    if (const auto refusal = AppendRefusal(session, options)) return session.Refuse(*refusal);
  }
  return PressOk(session);
}

}  // namespace

int RunToProject(Session& session, const ToProjectOptions& options) {
  const char* databaseWord = options.overwrite || options.append ? "" : "--overwrite or --append";
  const char* fileWord = options.force ? "" : "--force to replace it";
  if (!session.Admits({{"the model", options.model},
                       {"--database", options.database, true, databaseWord},
                       {"--mpx", options.mpx, true, fileWord},
                       {"--xml", options.xml, true, fileWord}})) {
    return kRefused;
  }
  ScenarioChooser chooser(session, options.choices);
  session.OnModalForm([&](ModalForm& form) {
    if (auto* question = dynamic_cast<frmDbFileAppend*>(&form)) {
      AnswerAppend(*question, options);
    } else if (auto* scenarios = dynamic_cast<multi*>(&form)) {
      chooser.Answer(*scenarios);
    }
  });
  return Translate(session, options);
}

}  // namespace merivane::batch
