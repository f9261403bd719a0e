#include "progress_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt_text.h"

namespace merivane::desktop {

namespace {

constexpr int kBarLength = 1000;
constexpr int kVisibleCharacters = 60;

}  // namespace

ProgressDialog::ProgressDialog(QWidget* parent)
    : QDialog(parent),
      stage_(new QLabel),
      bar_(new QProgressBar),
      cancel_(new QPushButton("Cancel")) {
  setObjectName("progress");
  setWindowTitle(kApplicationTitle);
  setWindowModality(Qt::WindowModal);
  stage_->setObjectName("progressStage");
  stage_->setMinimumWidth(fontMetrics().averageCharWidth() * kVisibleCharacters);
  bar_->setObjectName("progressBar");
  bar_->setAccessibleName("Progress");
  cancel_->setObjectName("progressCancel");
  cancel_->setAccessibleName("Cancel");
  connect(cancel_, &QPushButton::clicked, this, &ProgressDialog::reject);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(cancel_);
  auto* column = new QVBoxLayout(this);
  column->addWidget(stage_);
  column->addWidget(bar_);
  column->addLayout(row);
}

void ProgressDialog::Draw(const RunProgress& progress) {
  const QLocale english(QLocale::English);
  QString text = ToQt(progress.stage);
  if (progress.done > 0) text += ": " + english.toString(qlonglong{progress.done});
  if (progress.total > 0) text += " of " + english.toString(qlonglong{progress.total});
  if (!cancelled_) stage_->setText(text);
  bar_->setMaximum(progress.total > 0 ? kBarLength : 0);  // 0: a bar that only moves
  if (progress.total > 0) {
    const auto done = qMin(progress.done, progress.total);
    bar_->setValue(static_cast<int>(done * kBarLength / progress.total));
  }
}

void ProgressDialog::reject() {
  cancelled_ = true;
  cancel_->setEnabled(false);
  stage_->setText("Cancelling...");
}

}  // namespace merivane::desktop
