#include "inspect/check.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <utility>

#include "printable.h"
#include "runtime/code_page.h"
#include "session.h"

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

std::string Counted(std::size_t count, const std::string& word) {
  return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
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
    out << options.model << ':' << finding.line << ": " << NameOf(finding.severity) << ": "
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

void PrintJson(std::ostream& out, const std::string& model, const std::vector<Finding>& findings) {
  Json list = Json::array();
  for (const Finding& finding : findings) {
    list.push_back({{"line", finding.line},
                    {"severity", NameOf(finding.severity)},
                    {"element", ElementOf(finding)},
                    {"sentence", ToUtf8(finding.sentence)},
                    {"advice", ToUtf8(finding.advice)}});
  }
  const Json report = {{"model", model},
                       {"findings", list},
                       {"errors", CountOf(findings, Severity::kError)},
                       {"warnings", CountOf(findings, Severity::kWarning)},
                       {"notes", CountOf(findings, Severity::kNote)}};
  out << PrintableJson(report.dump(2, ' ', false, Json::error_handler_t::replace)) << '\n';
}

}  // namespace

int RunCheck(Session& session, const CheckOptions& options) try {
  const std::vector<Finding> findings =
      inspect::CheckModel(options.model, session.desktop.TemplatePath());
  if (options.json) {
    PrintJson(session.out, options.model, findings);
  } else {
    PrintText(session.out, options, findings);
  }
  if (CountOf(findings, Severity::kError) > 0) return kFailed;
  return CountOf(findings, Severity::kWarning) == 0 ? kDone : kDoneWithMessages;
} catch (const RunTimeError& error) {
  return session.Refuse(options.model + " can't be checked: " + ToUtf8(error.Description()));
}

}  // namespace merivane::batch
