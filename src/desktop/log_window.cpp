#include <QTableView>

#include "help_context.h"
#include "result_table.h"

namespace merivane::desktop {

namespace {

using Kind = SessionLog::Kind;

ResultModel::Row RowOf(const SessionLog::Entry& entry) {
  const auto [word, colour] = [&]() -> std::pair<const char*, QColor> {
    switch (entry.kind) {
      case Kind::kError:
        return {"error", {200, 40, 40}};
      case Kind::kWarning:
        return {"warning", {220, 160, 0}};
      case Kind::kQuestion:
        return {"question", {50, 110, 200}};
      case Kind::kResult:
        return {"result", {40, 150, 60}};
      case Kind::kMessage:
        break;
    }
    return {"message", {110, 130, 160}};
  }();
  return {{word, entry.time.toString("yyyy-MM-dd HH:mm:ss"), entry.file, entry.text, entry.advice},
          colour};
}

ResultModel* ModelOf(const SessionLog& log) {
  constexpr int kNoNumbers = -1;
  std::vector<ResultModel::Row> rows;
  for (const SessionLog::Entry& entry : log.Entries()) rows.push_back(RowOf(entry));
  return new ResultModel({"Kind", "Time", "File", "Message", "What to do"}, std::move(rows),
                         kNoNumbers, nullptr);
}

}  // namespace

LogWindow::LogWindow(SessionLog& log, QtDesktop& desktop, QWidget* parent)
    : LogWindow(log, ModelOf(log), desktop, parent) {}

LogWindow::LogWindow(SessionLog& log, ResultModel* model, QtDesktop& desktop, QWidget* parent)
    : ResultTable("logWindow", model, "What was told since the program started, the latest last.",
                  desktop, parent),
      log_(log) {
  constexpr int kHelpPage = 7012;
  setWindowTitle("Messages of this session");
  SetHelpContext(this, kHelpPage);
  log_.OnAdd = [this, model](const SessionLog::Entry& entry) {
    model->Append(RowOf(entry));
    table_->scrollToBottom();
  };
  table_->scrollToBottom();
}

LogWindow::~LogWindow() { log_.OnAdd = nullptr; }

}  // namespace merivane::desktop
