// Whether a merged model gives the plan that came in.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inspect/model_snapshot.h"
#include "platform/desktop.h"

namespace merivane::inspect {

using namespace platform;

struct MergeProof {
  // Sorted by kind and number; `planRow` where the plan has the element.
  std::vector<MergeChange> differences;
  std::string failure;  // why the merged text gives no plan; empty where it gives one
};

// Reads the text that a merge wrote, translates it in memory, and holds that plan against the one
// in the work tables of `merged`. Writes nothing. Progress is shown on `shown`. Errors of the
// database and of the template come up; a text that can't be read, or not be translated, is the
// proof's failure.
MergeProof ProveMerge(Connection& merged, std::int32_t project, const std::string& textPath,
                      const std::string& templatePath, Desktop* shown = nullptr);

// The same of a preview, which an error doesn't end: it is the proof's failure.
MergeProof ProvePreview(Connection& merged, std::int32_t project, const std::string& textPath,
                        const std::string& templatePath, Desktop* shown);

// In a sentence: that nothing is lost, how much is, or why that isn't known.
std::string SummaryOf(const MergeProof& proof);

}  // namespace merivane::inspect
