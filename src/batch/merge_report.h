// What a merge changes, for people and for programs.
#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "inspect/merge_preview.h"
#include "mspdi/untaken.h"

namespace merivane::batch {

using namespace inspect;

// A line, and an object, for each change.
std::string ChangeLines(const std::vector<inspect::MergeChange>& changes);
nlohmann::ordered_json ChangesJson(const std::vector<inspect::MergeChange>& changes);

// A line for each change, and a last one with their counts.
std::string ChangesText(const std::vector<inspect::MergeChange>& changes);

// Of a merge that wasn't complete: its proof says which differences a complete one leaves out.
inspect::MergeProof WithComplete(inspect::MergeProof proof);

// A line for each difference and a last one with their count, or the one that there is none; why
// there is no proof.
std::string ProofText(const inspect::MergeProof& proof);

// One JSON object: whether it merges, the changes, the boxes that it would show, the rows of the
// plan that the model doesn't take, and the proof, where there is one.
void PrintPreviewJson(std::ostream& out, const inspect::MergePreview& preview,
                      const mspdi::UntakenRows& untaken);

}  // namespace merivane::batch
