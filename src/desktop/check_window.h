// The findings of a model text.
#pragma once

#include <string>
#include <vector>

#include "inspect/finding.h"
#include "result_table.h"

namespace merivane::desktop {

using namespace inspect;

// A click or Ctrl+C copies findings to the clipboard; "Open", Enter or a double click shows the
// text at its line.
class CheckWindow : public ResultTable {
 public:
  CheckWindow(const std::string& modelPath, std::vector<inspect::Finding> findings,
              QtDesktop& desktop, QWidget* parent);

 private:
  QString TextOf(int row) const override;
  void Open() const;

  std::string modelPath_;
  std::vector<inspect::Finding> findings_;
};

}  // namespace merivane::desktop
