#include "inspect/check.h"

#include <algorithm>
#include <utility>

#include "model_checks.h"
#include "reading.h"
#include "runtime/text_files.h"

namespace merivane::inspect {

namespace {

bool HasError(const std::vector<Finding>& findings) {
  return std::any_of(findings.begin(), findings.end(),
                     [](const Finding& finding) { return finding.severity == Severity::kError; });
}

void CheckElements(const Model& model, std::vector<Finding>& findings) {
  CheckNumbers(model, findings);
  CheckNames(model, findings);
  CheckObjects(model, findings);
  CheckLinks(model, findings);
  CheckScenarios(model, findings);
}

// What a translation would choose and end with, where it can be tried.
void Try(ReadModelText& text, std::vector<Finding>& findings) {
  const Reading& reading = text.Result();
  if (const auto& why = reading.Untranslatable()) {
    findings.push_back(
        {Severity::kNote,
         reading.LineCount(),
         {},
         "Not checked: paths, choices between scenarios and what the plan has no room "
         "for, because of the error in line " +
             std::to_string(why->line) + ".",
         "Mend that line, and check again."});
  } else if (IsTrialNeeded(reading.GetModel())) {
    const std::vector<Finding> tried = TryTranslation(text, !HasError(findings));
    findings.insert(findings.end(), tried.begin(), tried.end());
  }
}

}  // namespace

std::vector<Finding> CheckModel(const std::string& modelPath, const std::string& templatePath) {
  return CheckModelWithLines(modelPath, templatePath).findings;
}

CheckedModel CheckModelWithLines(const std::string& modelPath, const std::string& templatePath,
                                 Desktop* shown) {
  TextFiles().OpenForInput(1, modelPath);  // tells why it can't be read
  ReadModelText text(modelPath, templatePath, shown);
  std::vector<Finding> findings = text.Result().Findings();
  if (!text.Result().HasStopped()) {
    CheckElements(text.Result().GetModel(), findings);
    Try(text, findings);
  }
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding& a, const Finding& b) { return a.line < b.line; });
  std::vector<ElementLine> elements;
  for (const ElementEntry& place : text.Result().GetModel().elements) {
    if (place.isNumberKnown) elements.push_back({KindName(place.kind), place.number, place.line});
  }
  return {std::move(findings), std::move(elements)};
}

}  // namespace merivane::inspect
