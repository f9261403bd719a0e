// What a translation or a merge would stumble over, told before it runs.
//
//   for (const Finding& finding : CheckModel("model.txt", desktop.TemplatePath())) {
//     out << finding.line << ": " << finding.sentence << ' ' << finding.advice << '\n';
//   }
//
// It knows no rule of the text or of the translation of its own: it listens to the real reader
// (ReaderListener) and the real translator (TranslationListener), and compares what they took.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inspect/finding.h"
#include "platform/desktop.h"

namespace merivane::inspect {

using namespace platform;

// Reads the model with the program's own reader, tries a translation in a temporary database where
// the model leaves something to decide, and gives all findings, sorted by line. Nothing is written
// but temporary files, which are gone when it returns. Behind a place where the reader gives up
// nothing is looked at, and the finding of that place says so.
//
// Paths are UTF-8. A model or a template that can't be read, and a temporary folder without room,
// are RunTimeErrors.
std::vector<Finding> CheckModel(const std::string& modelPath, const std::string& templatePath);

// Where an element of the text begins. `kind` and `number` are those of its findings.
struct ElementLine {
  std::string kind;
  std::int32_t number = 0;
  std::size_t line = 0;  // from 1
};

struct CheckedModel {
  std::vector<Finding> findings;      // as above
  std::vector<ElementLine> elements;  // in the order of the text, as far as it was read
};

// The same, and where the elements stand. Progress is shown on `shown`, where the user may cancel
// it: RunCancelled comes up then.
CheckedModel CheckModelWithLines(const std::string& modelPath, const std::string& templatePath,
                                 Desktop* shown = nullptr);

// All that a merge of the plan into the project would stumble over: what stops it as errors, what
// it passes over or can't write whole as warnings. It is tried as a preview tries it, with the same
// paths and errors.
std::vector<Finding> CheckPlan(const std::string& planPath, const std::string& interimPath,
                               std::int32_t project);

}  // namespace merivane::inspect
