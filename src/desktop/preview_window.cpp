#include <QFileInfo>
#include <QPushButton>

#include "help_context.h"
#include "qt_text.h"
#include "result_table.h"

namespace merivane::desktop {

namespace {

using inspect::MergeChange;

constexpr int kMergeHelpContext = 7011;

ResultModel* ModelOf(const std::vector<MergeChange>& changes, const char* sentences,
                     const QString& ofComplete = {}) {
  constexpr int kRowColumn = 1;
  std::vector<ResultModel::Row> rows;
  for (const MergeChange& change : changes) {
    const Look look = LookOf(change.kind);
    QString text = ToQt(change.sentence);
    if (!change.advice.empty()) text += " " + ToQt(change.advice);
    if (change.completeKeeps) text += ofComplete;
    rows.push_back({{look.word, change.planRow ? QString::number(*change.planRow) : QString(),
                     ToQt(Described(change.element)), text},
                    look.colour});
  }
  return new ResultModel({"Change", "Row of the plan", "Element", sentences}, std::move(rows),
                         kRowColumn, nullptr);
}

}  // namespace

PreviewWindow::PreviewWindow(const std::string& planPath, const inspect::MergePreview& preview,
                             QtDesktop& desktop, QWidget* parent)
    : ResultTable("previewWindow", ModelOf(preview.changes, "What happens"),
                  ToQt(SummaryOf(preview)), desktop, parent) {
  setWindowTitle("Preview of the merge: " + QFileInfo(PathToQt(planPath)).fileName());
  SetHelpContext(this, kMergeHelpContext);
  QPushButton* show = AddButton("cmdShow", "Show in the workbench");
  show->setAutoDefault(false);
  connect(show, &QPushButton::clicked, this, [this] { done(kShow); });
  QPushButton* merge = AddButton("cmdMerge", "OK");
  merge->setEnabled(preview.merged);
  merge->setDefault(preview.merged);
  connect(merge, &QPushButton::clicked, this, &QDialog::accept);
}

ProofWindow::ProofWindow(const PlannedMerge& merge, const inspect::MergeProof& proof,
                         QtDesktop& desktop, QWidget* parent)
    : ResultTable("proofWindow",
                  ModelOf(proof.differences, "What differs",
                          merge.isComplete ? "" : " The complete merge keeps it."),
                  ToQt(SummaryOf(proof)), desktop, parent) {
  setWindowTitle("Proof of the merge: " + QFileInfo(PathToQt(merge.plan)).fileName());
  SetHelpContext(this, kMergeHelpContext);
}

}  // namespace merivane::desktop
