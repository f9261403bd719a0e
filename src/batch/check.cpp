#include "inspect/check.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

#include "printable.h"
#include "project_lookup.h"
#include "runtime/code_page.h"
#include "runtime/text.h"
#include "session.h"
#include "shell/named_files.h"
#include "store/connection.h"

namespace merivane::batch {

using namespace inspect;

namespace {

using Json = nlohmann::ordered_json;
using inspect::Finding;
using inspect::Severity;

const char* NameOf(Severity severity) {
  switch (severity) {
    case Severity::kError:
      return "error";
    case Severity::kWarning:
      return "warning";
    case Severity::kNote:
      break;
  }
  return "note";
}

std::size_t CountOf(const std::vector<Finding>& findings, Severity severity) {
  return static_cast<std::size_t>(
      std::count_if(findings.begin(), findings.end(),
                    [&](const Finding& finding) { return finding.severity == severity; }));
}

std::string PlaceOf(const Finding& finding) {
  if (finding.line > 0) return ':' + std::to_string(finding.line);
  if (!finding.planRow) return "";
  return (finding.element.kind == "resource" ? ":resource row " : ":row ") +
         std::to_string(*finding.planRow);
}

// Of each group only the first is printed, with how many more there are, unless all are wanted.
void PrintText(std::ostream& out, const CheckOptions& options,
               const std::vector<Finding>& findings) {
  std::map<std::string, std::size_t> left;  // of each group
  if (!options.all) {
    for (const Finding& finding : findings) ++left[finding.group];
  }
  for (const Finding& finding : findings) {
    std::string more;
    if (!options.all && !finding.group.empty()) {
      const std::size_t others = std::exchange(left[finding.group], 0);
      if (others == 0) continue;
      if (others > 1) {
        more = " (and " + Counted(others - 1, "more note") + " of " + finding.group +
               "; --all lists all)";
      }
    }
    const std::string element = Described(finding.element);
    out << options.model << PlaceOf(finding) << ": " << NameOf(finding.severity) << ": "
        << PrintableLine(ToUtf8(element)) << (element.empty() ? "" : ": ")
        << PrintableLine(ToUtf8(finding.sentence)) << ' ' << PrintableLine(ToUtf8(finding.advice))
        << more << '\n';
  }
  out << Counted(CountOf(findings, Severity::kError), "error") << ", "
      << Counted(CountOf(findings, Severity::kWarning), "warning");
  const std::size_t notes = CountOf(findings, Severity::kNote);
  if (notes > 0) out << ", " << Counted(notes, "note");
  out << '\n';
}

Json ElementOf(const Finding& finding) {
  if (finding.element.kind.empty()) return nullptr;
  return {{"kind", finding.element.kind},
          {"number", finding.element.number ? Json(*finding.element.number) : Json(nullptr)},
          {"name", ToUtf8(finding.element.name)}};
}

void PrintJson(std::ostream& out, const CheckOptions& options,
               const std::vector<Finding>& findings) {
  Json list = Json::array();
  for (const Finding& finding : findings) {
    Json place = {{"line", finding.line}};
    if (!options.against.empty()) {
      place = {{"planRow", finding.planRow ? Json(*finding.planRow) : Json(nullptr)}};
    }
    list.push_back(std::move(place));
    list.back().update({{"severity", NameOf(finding.severity)},
                        {"element", ElementOf(finding)},
                        {"sentence", ToUtf8(finding.sentence)},
                        {"advice", ToUtf8(finding.advice)}});
  }
  const Json report = {{options.against.empty() ? "model" : "plan", options.model},
                       {"findings", list},
                       {"errors", CountOf(findings, Severity::kError)},
                       {"warnings", CountOf(findings, Severity::kWarning)},
                       {"notes", CountOf(findings, Severity::kNote)}};
  out << PrintableJson(report) << '\n';
}

bool IsPlan(const std::string& path) {
  return HasExtension(path, "mpx") || HasExtension(path, "xml");
}

// The exit status of a plan that can't be held against the model; nothing where it can be.
std::optional<int> RefusalOfPlan(Session& session, const CheckOptions& options,
                                 std::int32_t& project) {
  if (!IsPlan(options.model)) {
    return session.Refuse(options.model + " is no name of a plan: .mpx or .xml.");
  }
  if (!FileIsThere(options.model)) return session.Refuse(options.model + " isn't there.");
  const auto found = FindMergedProject(session, options.against, options.project);
  if (!found) return kRefused;
  project = *found;
  return RefusalOfMerge(session, options.against, project);
}

std::vector<Finding> CheckDatabase(Session& session, const std::string& path) {
  Connection connection(session.program.workspace, path, OpenMode::kReadOnly);
  std::vector<Finding> findings;
  for (const std::string& damage : connection.FindDamage()) {
    findings.push_back({Severity::kError,
                        0,
                        {},
                        "It is damaged: " + damage + ".",
                        "Go on with its copy (.bak) or another one from before."});
  }
  return findings;
}

}  // namespace

int RunCheck(Session& session, const CheckOptions& options) try {
  std::vector<Finding> findings;
  if (options.against.empty() && HasExtension(options.model, "mdb")) {
    findings = CheckDatabase(session, options.model);
  } else if (options.against.empty()) {
    findings = inspect::CheckModel(options.model, session.desktop.TemplatePath());
  } else {
    std::int32_t project = 0;
    if (const auto refused = RefusalOfPlan(session, options, project)) return *refused;
    findings = inspect::CheckPlan(options.model, options.against, project);
  }
  if (options.json) {
    PrintJson(session.out, options, findings);
  } else {
    PrintText(session.out, options, findings);
  }
  if (CountOf(findings, Severity::kError) > 0) return kFailed;
  return CountOf(findings, Severity::kWarning) == 0 ? kDone : kDoneWithMessages;
} catch (const RunTimeError& error) {
  return session.Refuse(options.model + " can't be checked: " + ToUtf8(error.Description()));
}

}  // namespace merivane::batch
