// What a merge would change, before it runs.
#pragma once

#include <string>

#include "inspect/merge_preview.h"
#include "result_table.h"

namespace merivane::desktop {

using namespace inspect;

// "OK" accepts the dialog; it is off where the merge would stop.
class PreviewWindow : public ResultTable {
 public:
  static constexpr int kShow = 2;  // it is closed so where the user wants to see pictures

  PreviewWindow(const std::string& planPath, const inspect::MergePreview& preview,
                QtDesktop& desktop, QWidget* parent);
};

}  // namespace merivane::desktop
