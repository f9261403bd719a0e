#include <algorithm>
#include <utility>

#include "pictures/diagram.h"
#include "pictures/picture_file.h"
#include "pictures/scratch_model.h"
#include "project_lookup.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "session.h"

namespace merivane::batch {

namespace {

using namespace pictures;

// `note` says how far a text was read that breaks off.
ProcessModel ReadText(Session& session, const std::string& path, std::string& note) {
  ScratchModel scratch(session.program);
  scratch.Read(path);
  note = scratch.BreaksOff();
  return ReadProcessModel(scratch.Database(), ScratchModel::kProject);
}

ProcessModel ReadDatabase(Session& session, std::int32_t project, const std::string& path) {
  Connection connection(session.program.workspace, path, OpenMode::kReadOnly);
  return ReadProcessModel(connection, project);
}

// The scenario that the command line names, or all of them.
bool Choose(Session& session, const std::string& name, std::vector<ModelScenario>& scenarios) {
  if (name.empty()) return true;
  const std::string wanted = FromUtf8(name);
  std::string names;
  for (const ModelScenario& scenario : scenarios) names += "\n  " + ToUtf8(scenario.name);
  std::erase_if(scenarios, [&](const ModelScenario& scenario) { return scenario.name != wanted; });
  if (!scenarios.empty()) return true;
  session.Say("no scenario '" + name + "' in the model. Its scenarios:" + names);
  return false;
}

void SayHowDrawn(Session& session, const std::vector<Diagram>& diagrams, const std::string& output,
                 double factor) {
  std::size_t outlines = 0;
  for (const Diagram& diagram : diagrams) {
    if (diagram.whyListed.empty()) continue;
    ++outlines;
    session.Say("the scenario '" + ToUtf8(diagram.picture.title) + "' " +
                ToUtf8(diagram.whyListed) + ": its units stand in a list.");
  }
  SayIfSmall(session, output, factor);
  session.Report(Counted(diagrams.size() - outlines, "diagram") +
                 (outlines == 0 ? "" : ", " + std::to_string(outlines) + " as a list") +
                 "; written: " + output + session.Notes());
}

int Draw(Session& session, const DrawOptions& options, ProcessModel model,
         const std::string& note) {
  const std::string& source = options.model.empty() ? options.database : options.model;
  if (model.scenarios.empty()) {
    session.Say(source + " holds no scenario: there is nothing to draw." +
                (note.empty() ? "" : " " + ToUtf8(note)));
    return kFailed;
  }
  if (!Choose(session, options.scenario, model.scenarios)) return kRefused;
  std::vector<Diagram> diagrams =
      DrawDiagrams(model.scenarios, {.objects = options.objects, .note = note});
  std::vector<Picture> drawings;
  drawings.reserve(diagrams.size());
  for (Diagram& diagram : diagrams) {
    drawings.push_back(std::move(diagram.picture));
    diagram.picture.title = drawings.back().title;  // told below
  }
  const double factor = WritePictures(std::move(drawings), session.kept.NewOutput(options.output));
  SayHowDrawn(session, diagrams, options.output, factor);
  const bool asAsked = std::none_of(diagrams.begin(), diagrams.end(), [](const Diagram& diagram) {
    return !diagram.whyListed.empty();
  });
  return asAsked && session.log.MessageCount() == 0 ? kDone : kDoneWithMessages;
}

int DrawDatabase(Session& session, const DrawOptions& options) {
  std::string reason;
  const auto project = FindProject(ListProjects(session.program.workspace, options.database),
                                   options.project, reason);
  if (!project) return session.Refuse(reason);
  return Draw(session, options, ReadDatabase(session, *project, options.database), "");
}

}  // namespace

int RunDraw(Session& session, const DrawOptions& options) try {
  if (PictureIsRefused(session, {{"the model", options.model}, {"--database", options.database}},
                       options.output, options.force)) {
    return kRefused;
  }
  if (options.model.empty()) return DrawDatabase(session, options);
  std::string note;
  ProcessModel model = ReadText(session, options.model, note);
  if (session.log.ToldMachineFault()) return kFailed;  // the text is not to blame for what lacks
  return Draw(session, options, std::move(model), note);
} catch (const RunTimeError& error) {
  return session.TellFailure(options.output, error);
}

}  // namespace merivane::batch
