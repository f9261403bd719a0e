// What a merge would change, before it runs, and what the merged model doesn't give of the plan.
#pragma once

#include <string>

#include "inspect/merge_preview.h"
#include "result_table.h"
#include "workbench/merge_view.h"

namespace merivane::desktop {

using namespace inspect;
using namespace workbench;

// "OK" accepts the dialog; it is off where the merge would stop.
class PreviewWindow : public ResultTable {
 public:
  static constexpr int kShow = 2;  // it is closed so where the user wants to see pictures

  PreviewWindow(const std::string& planPath, const inspect::MergePreview& preview,
                QtDesktop& desktop, QWidget* parent);
};

// Stands beside the main window and asks for nothing.
class ProofWindow : public ResultTable {
 public:
  ProofWindow(const PlannedMerge& merge, const inspect::MergeProof& proof, QtDesktop& desktop,
              QWidget* parent);
};

}  // namespace merivane::desktop
