#include "pictures/report.h"

#include <algorithm>

#include "inspect/check.h"
#include "pictures/chart.h"
#include "pictures/picture_file.h"
#include "pictures/scratch_model.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "runtime/text.h"
#include "scenario_chooser.h"
#include "session.h"

namespace merivane::batch {

using namespace pictures;

namespace {

// Why a translation ended before its time: the question left open, or the last box.
std::string WhyNoPlan(const Session& session, const ScenarioChooser& chooser) {
  const std::string begin = "The plan is not drawn, since the translation did not get to its end: ";
  if (!chooser.OpenQuestion().empty()) return begin + chooser.OpenQuestion();
  return begin + session.desktop.LastMessage();
}

// The model as it was read and, where a translation gets through, its plan.
Report ReadReport(Session& session, const ReportOptions& options, ScenarioChooser& chooser) {
  Report report;
  ScratchModel scratch(session.program);
  try {
    scratch.Read(options.model);
  } catch (const ProgramEnd&) {
    if (session.log.ToldMachineFault()) throw;  // otherwise the page tells how far it came
  }
  report.note = scratch.BreaksOff();
  const auto read = [&] {
    report.model = ReadProcessModel(scratch.Database(), ScratchModel::kProject);
  };
  read();
  if (report.model.scenarios.empty()) {
    report.whyNoPlan = "The plan is not drawn: no scenario was read.";
    return report;
  }
  try {
    scratch.Translate();
    report.plan =
        ReadDatedPlan(scratch.Database(), ScratchModel::kProject, session.desktop.Today());
    read();
  } catch (const ProgramEnd&) {
    report.whyNoPlan = WhyNoPlan(session, chooser);
  } catch (const RunTimeError& error) {
    if (IsMachineFault(error.Number())) throw;
    report.whyNoPlan = "The plan is not drawn: " + error.Description();
  }
  return report;
}

bool IsPageName(const std::string& path) {
  const std::string name = UpperCase(path);
  return name.ends_with(".HTML") || name.ends_with(".HTM");
}

}  // namespace

int RunReport(Session& session, const ReportOptions& options) {
  if (!IsPageName(options.output)) {
    return session.Refuse(options.output + " is no name of a page: .html.");
  }
  if (!session.Admits(
          {{"the model", options.model}, OutputNamed("--output", options.output, options.force)})) {
    return kRefused;
  }
  ScenarioChooser chooser(session, options.choices);
  session.OnModalForm(
      ForEach{[&](multi* scenarios) { chooser.Answer(*scenarios); }, [](auto* /*other*/) {}});
  Report report = ReadReport(session, options, chooser);
  if (session.log.ToldMachineFault()) return kFailed;  // the text is not to blame for what lacks
  report.findings = inspect::CheckModel(options.model, session.desktop.TemplatePath());
  report.foot = FootOf(session, options.model);
  report.diagrams = DrawDiagrams(
      report.model.scenarios, {.objects = options.objects, .headline = false, .note = report.note});
  WriteOutput(session.kept.NewOutput(options.output), ReportPage(report));
  if (!report.plan) session.Say(ToUtf8(report.whyNoPlan));
  session.Report(Counted(report.diagrams.size(), "diagram") + (report.plan ? " and the plan" : "") +
                 "; written: " + options.output + session.Notes());
  const bool asAsked = report.plan && std::none_of(report.diagrams.begin(), report.diagrams.end(),
                                                   [](const Diagram& diagram) {
                                                     return !diagram.whyListed.empty();
                                                   });
  return asAsked && session.log.MessageCount() == 0 ? kDone : kDoneWithMessages;
}

}  // namespace merivane::batch
