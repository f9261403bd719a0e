#include "preview_window.h"

#include <QFileInfo>
#include <QPushButton>
#include <algorithm>

#include "help_context.h"
#include "qt_text.h"

namespace merivane::desktop {

namespace {

using inspect::ChangeKind;
using inspect::MergeChange;

struct Look {
  const char* word;
  QColor colour;
};

Look LookOf(ChangeKind kind) {
  switch (kind) {
    case ChangeKind::kAdded:
      return {"added", QColor(40, 150, 60)};
    case ChangeKind::kChanged:
      return {"changed", QColor(50, 110, 200)};
    case ChangeKind::kRemoved:
      return {"removed", QColor(200, 40, 40)};
    case ChangeKind::kKept:
      return {"kept", QColor(150, 150, 150)};
    case ChangeKind::kNotTaken:
      return {"not taken", QColor(200, 150, 0)};
    case ChangeKind::kDiffers:
      return {"differs", QColor(220, 100, 0)};
    case ChangeKind::kStop:
      break;
  }
  return {"stop", QColor(220, 100, 0)};
}

ResultModel* ModelOf(const std::vector<MergeChange>& changes) {
  constexpr int kRowColumn = 1;
  std::vector<ResultModel::Row> rows;
  for (const MergeChange& change : changes) {
    const Look look = LookOf(change.kind);
    QString text = ToQt(change.sentence);
    if (!change.advice.empty()) text += " " + ToQt(change.advice);
    rows.push_back({{look.word, change.planRow ? QString::number(*change.planRow) : QString(),
                     ToQt(Described(change.element)), text},
                    look.colour});
  }
  return new ResultModel({"Change", "Row of the plan", "Element", "What happens"}, std::move(rows),
                         kRowColumn, nullptr);
}

QString SummaryOf(const inspect::MergePreview& preview) {
  if (!preview.merged) {
    const auto stops =
        std::count_if(preview.changes.begin(), preview.changes.end(),
                      [](const MergeChange& change) { return change.kind == ChangeKind::kStop; });
    return QStringLiteral(
               "The merge would stop at %1 place%2; what it would change without them stands "
               "below. "
               "Nothing was changed.")
        .arg(stops)
        .arg(QLatin1String(stops == 1 ? "" : "s"));
  }
  QString summary = "The merge would change nothing.";
  if (!preview.changes.empty()) {
    summary = QStringLiteral("The merge would make %1 change%2. Nothing was changed yet.")
                  .arg(preview.changes.size())
                  .arg(QLatin1String(preview.changes.size() == 1 ? "" : "s"));
  }
  for (const Message& box : preview.boxes) summary += " Message: " + ToQt(box.text).simplified();
  return summary;
}

}  // namespace

PreviewWindow::PreviewWindow(const std::string& planPath, const inspect::MergePreview& preview,
                             QtDesktop& desktop, QWidget* parent)
    : ResultTable("previewWindow", ModelOf(preview.changes), SummaryOf(preview), desktop, parent) {
  constexpr int kHelpContext = 7011;
  setWindowTitle("Preview of the merge: " + QFileInfo(PathToQt(planPath)).fileName());
  SetHelpContext(this, kHelpContext);
  QPushButton* merge = AddButton("cmdMerge", "OK");
  merge->setEnabled(preview.merged);
  merge->setDefault(preview.merged);
  connect(merge, &QPushButton::clicked, this, &QDialog::accept);
}

}  // namespace merivane::desktop
