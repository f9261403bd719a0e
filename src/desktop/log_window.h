// The list of what the user was told since the program started.
#pragma once

#include "desktop/session_log.h"
#include "result_table.h"

namespace merivane::desktop {

// The latest message stands last; what is told while it is open comes in. One at a time for a log,
// which outlives it.
class LogWindow : public ResultTable {
 public:
  LogWindow(SessionLog& log, QtDesktop& desktop, QWidget* parent);
  ~LogWindow() override;

 private:
  LogWindow(SessionLog& log, ResultModel* model, QtDesktop& desktop, QWidget* parent);

  SessionLog& log_;
};

}  // namespace merivane::desktop
