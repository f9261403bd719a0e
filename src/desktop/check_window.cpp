#include <QFileInfo>
#include <QPushButton>
#include <QStringList>
#include <QTableView>
#include <algorithm>

#include "help_context.h"
#include "qt_text.h"
#include "result_table.h"
#include "text_editor.h"

namespace merivane::desktop {

namespace {

using inspect::Finding;
using inspect::Severity;

ResultModel* ModelOf(const std::vector<Finding>& findings) {
  constexpr int kLineColumn = 1;
  std::vector<ResultModel::Row> rows;
  rows.reserve(findings.size());
  for (const Finding& finding : findings) {
    rows.push_back(
        {{LookOf(finding.severity).word, QString::number(finding.line),
          ToQt(Described(finding.element)), ToQt(finding.sentence), ToQt(finding.advice)},
         LookOf(finding.severity).colour});
  }
  return new ResultModel({"Kind", "Line", "Element", "Finding", "What to do"}, std::move(rows),
                         kLineColumn, nullptr);
}

QString SummaryOf(const std::vector<Finding>& findings) {
  if (findings.empty()) return "Nothing was found.";
  const auto counted = [&](Severity severity) {
    const auto count = std::count_if(findings.begin(), findings.end(), [&](const Finding& finding) {
      return finding.severity == severity;
    });
    return QStringLiteral("%1 %2%3").arg(count).arg(QLatin1String(LookOf(severity).word),
                                                    QLatin1String(count == 1 ? "" : "s"));
  };
  return QStringLiteral(
             "%1, %2, %3. A click or Ctrl+C copies rows, Enter opens the text at its line.")
      .arg(counted(Severity::kError), counted(Severity::kWarning), counted(Severity::kNote));
}

}  // namespace

CheckWindow::CheckWindow(const std::string& modelPath, std::vector<Finding> findings,
                         QtDesktop& desktop, QWidget* parent)
    : ResultTable("checkWindow", ModelOf(findings), SummaryOf(findings), desktop, parent),
      modelPath_(modelPath),
      findings_(std::move(findings)) {
  constexpr int kHelpPage = 7010;
  setWindowTitle("Check: " + QFileInfo(PathToQt(modelPath)).fileName());
  SetHelpContext(this, kHelpPage);
  QPushButton* open = AddButton("cmdOpen", "Open");
  open->setEnabled(!findings_.empty());
  open->setDefault(true);
  connect(open, &QPushButton::clicked, this, [this] { Open(); });
  connect(table_, &QTableView::clicked, this, [this] { CopyChosen(); });
  connect(table_, &QTableView::doubleClicked, this, [this] { Open(); });
}

QString CheckWindow::TextOf(int row) const {
  const Finding& finding = findings_[static_cast<std::size_t>(row)];
  const QString element = ToQt(Described(finding.element));
  return QStringLiteral("%1:%2: %3: %4%5 %6")
      .arg(PathToQt(modelPath_), QString::number(finding.line), LookOf(finding.severity).word,
           element.isEmpty() ? element : element + ": ", ToQt(finding.sentence),
           ToQt(finding.advice));
}

// Without a chosen row the first finding is meant.
void CheckWindow::Open() const {
  const int row = std::max(CurrentRow(), 0);
  OpenAtLine(PathToQt(modelPath_), findings_[static_cast<std::size_t>(row)].line);
}

}  // namespace merivane::desktop
