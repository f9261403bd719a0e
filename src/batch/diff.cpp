#include <algorithm>
#include <nlohmann/json.hpp>

#include "inspect/differences.h"
#include "merge_report.h"
#include "printable.h"
#include "project_lookup.h"
#include "runtime/code_page.h"
#include "runtime/run_time_error.h"
#include "session.h"

namespace merivane::batch {

using namespace inspect;

namespace {

using Json = nlohmann::ordered_json;

std::string Counts(const Differences& told) {
  const std::string what = told.ofModels ? "models" : "plans";
  if (told.changes.empty()) return "The " + what + " are the same.\n";
  std::string text;
  for (const auto& [kind, word] : {std::pair{ChangeKind::kAdded, " added"},
                                   {ChangeKind::kChanged, " changed"},
                                   {ChangeKind::kRemoved, " removed"}}) {
    const auto count =
        std::count_if(told.changes.begin(), told.changes.end(),
                      [kind = kind](const MergeChange& change) { return change.kind == kind; });
    text += (text.empty() ? "" : ", ") + std::to_string(count) + word;
  }
  return text + " between the " + what + '\n';
}

// False, behind a word, for a file that can't be one side.
bool FindSide(Session& session, const std::string& path, const std::string& project,
              ComparedFile& side) {
  side.path = path;
  const auto kind = KindOfFile(path);
  if (!kind) {
    session.Say(path + " is no name of a file to compare: .txt, .mdb, .mpx or .xml.");
    return false;
  }
  if (!FileIsThere(path)) {
    session.Say(path + " isn't there.");
    return false;
  }
  if (*kind != FileKind::kDatabase) return true;
  std::string reason;
  try {
    side.project = FindProject(ListProjects(session.program.workspace, path), project, reason);
  } catch (const RunTimeError& error) {
    reason = Session::ReasonOf(path, error);
  }
  if (!side.project) session.Say(path + ": " + reason);
  return side.project.has_value();
}

void Print(Session& session, const DiffOptions& options, const Differences& told) {
  if (!options.json) {
    session.out << ChangeLines(told.changes) << Counts(told);
    return;
  }
  const Json report = {{"first", options.first},
                       {"second", options.second},
                       {"compared", told.ofModels ? "models" : "plans"},
                       {"same", told.changes.empty()},
                       {"differences", ChangesJson(told.changes)}};
  session.out << PrintableJson(report) << '\n';
}

// The projects of the databases among the two, in the order of the command line. False, behind a
// word, where there are more or fewer of the one than of the other.
bool MatchProjects(Session& session, const DiffOptions& options, std::string& first,
                   std::string& second) {
  const auto isDatabase = [](const std::string& path) {
    return KindOfFile(path) == FileKind::kDatabase;
  };
  const std::size_t wanted =
      (isDatabase(options.first) ? 1U : 0U) + (isDatabase(options.second) ? 1U : 0U);
  const std::vector<std::string>& given = options.projects;
  if (given.size() > wanted || (given.empty() && wanted > 0)) {
    session.Say(wanted == 0 ? "--project is for databases, and neither file is one."
                            : "a database needs --project, once for each or once for both.");
    return false;
  }
  if (wanted == 0) return true;
  first = given.front();
  second = given.back();
  return true;
}

}  // namespace

int RunDiff(Session& session, const DiffOptions& options) {
  if (!session.Admits({{"the first file", options.first}, {"the second file", options.second}})) {
    return kRefused;
  }
  std::string firstProject;
  std::string secondProject;
  ComparedFile first;
  ComparedFile second;
  if (!MatchProjects(session, options, firstProject, secondProject) ||
      !FindSide(session, options.first, firstProject, first) ||
      !FindSide(session, options.second, secondProject, second)) {
    return kRefused;
  }
  try {
    const Differences told =
        CompareFiles(first, second, session.desktop.TemplatePath(), &session.desktop);
    Print(session, options, told);
    return told.changes.empty() ? kDone : kFailed;
  } catch (const RunTimeError& error) {
    return session.Refuse(ToUtf8(error.Description()));
  }
}

}  // namespace merivane::batch
