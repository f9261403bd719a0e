// What a merge changes, for people and for programs.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "inspect/merge_preview.h"

namespace merivane::batch {

using namespace inspect;

// A line for each change, and a last one with their counts.
std::string ChangesText(const std::vector<inspect::MergeChange>& changes);

// One JSON object: whether it merges, the changes, the boxes that it would show.
void PrintPreviewJson(std::ostream& out, const inspect::MergePreview& preview);

}  // namespace merivane::batch
