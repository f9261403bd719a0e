#include "result_table.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "filtered_list.h"
#include "user_settings.h"

namespace merivane::desktop {

Look LookOf(Severity severity) {
  switch (severity) {
    case Severity::kError:
      return {"error", QColor(200, 40, 40)};
    case Severity::kWarning:
      return {"warning", QColor(220, 160, 0)};
    case Severity::kNote:
      break;
  }
  return {"note", QColor(110, 130, 160)};
}

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

ResultTable::ResultTable(const char* name, ResultModel* model, const QString& summary,
                         QtDesktop& desktop, QWidget* parent)
    : QDialog(parent), table_(new ResultList(model, desktop)), buttons_(new QHBoxLayout) {
  setObjectName(name);
  setAttribute(Qt::WA_DeleteOnClose);
  new WindowPlace(*this, {fontMetrics().averageCharWidth() * 140, fontMetrics().height() * 26});
  AddKey(QKeySequence::Save, [this] { table_->Save(); });
  AddKey(QKeySequence::Print, [this] { table_->Print(); });
  table_->textOf = [this](int row) { return TextOf(row); };
  auto* text = new QLabel(summary);
  text->setObjectName("summary");
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  buttons_->addWidget(text, 1);
  auto* close = new QPushButton("Close");
  close->setObjectName("cmdClose");
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  buttons_->addWidget(close);
  QPushButton* save = AddButton("cmdSave", "Save...");
  connect(save, &QPushButton::clicked, this, [this] { table_->Save(); });
  QPushButton* print = AddButton("cmdPrint", "Print...");
  connect(print, &QPushButton::clicked, this, [this] { table_->Print(); });
  for (QPushButton* button : {save, print}) button->setAutoDefault(false);
  auto* column = new QVBoxLayout(this);
  column->addWidget(new FilteredList(table_, QKeySequence::Find, this), 1);
  column->addLayout(buttons_);
  table_->setFocus();
}

void ResultTable::AddKey(const QKeySequence& keys, const std::function<void()>& act) {
  auto* key = new QShortcut(keys, this);
  connect(key, &QShortcut::activated, this, act);
}

QString ResultTable::TextOf(int row) const { return table_->Tabbed(row); }

void ResultTable::CopyChosen() const { table_->CopyChosen(); }

int ResultTable::CurrentRow() const { return table_->CurrentRow(); }

void ResultTable::WhenClosed(int result, QObject* receiver, const std::function<void()>& goOn) {
  connect(
      this, &QDialog::finished, receiver,
      [result, goOn](int closed) {
        if (closed == result) goOn();
      },
      Qt::QueuedConnection);
}

QPushButton* ResultTable::AddButton(const char* name, const char* caption) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAccessibleName(caption);
  buttons_->insertWidget(buttons_->count() - 1, button);
  return button;
}

}  // namespace merivane::desktop
