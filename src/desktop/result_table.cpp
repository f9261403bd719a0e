#include "result_table.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

#include "window_place.h"

namespace merivane::desktop {

ResultTable::ResultTable(const char* name, ResultModel* model, const QString& summary,
                         QtDesktop& desktop, QWidget* parent)
    : QDialog(parent),
      table_(new ResultList(model, desktop)),
      filter_(new QLineEdit),
      count_(new QLabel),
      buttons_(new QHBoxLayout) {
  setObjectName(name);
  setAttribute(Qt::WA_DeleteOnClose);
  new WindowPlace(*this, {fontMetrics().averageCharWidth() * 140, fontMetrics().height() * 26});
  filter_->setObjectName("filter");
  filter_->setAccessibleName("Filter");
  filter_->setPlaceholderText("Show only rows that hold this text (Ctrl+F)");
  filter_->setClearButtonEnabled(true);
  connect(filter_, &QLineEdit::textChanged, &table_->Shown(),
          &QSortFilterProxyModel::setFilterFixedString);
  connect(filter_, &QLineEdit::textChanged, this, &ResultTable::TellCount);
  connect(&table_->Shown(), &QAbstractItemModel::rowsInserted, this, &ResultTable::TellCount);
  AddKey(QKeySequence::Find, [this] { filter_->setFocus(); });
  AddKey(QKeySequence::Save, [this] { table_->Save(); });
  AddKey(QKeySequence::Print, [this] { table_->Print(); });
  count_->setObjectName("count");
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
  auto* top = new QHBoxLayout;
  top->addWidget(filter_, 1);
  top->addWidget(count_);
  column->addLayout(top);
  column->addWidget(table_, 1);
  column->addLayout(buttons_);
  table_->setFocus();
  TellCount();
}

void ResultTable::AddKey(const QKeySequence& keys, const std::function<void()>& act) {
  auto* key = new QShortcut(keys, this);
  connect(key, &QShortcut::activated, this, act);
}

void ResultTable::TellCount() {
  const int all = table_->Shown().sourceModel()->rowCount();
  const int left = table_->Shown().rowCount();
  const QString rows = all == 1 ? "1 row" : QString("%1 rows").arg(all);
  count_->setText(left == all ? rows : QString("%1 of %2").arg(left).arg(rows));
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

// An Enter that ends the typing of a filter is no answer to the dialog.
void ResultTable::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && filter_->hasFocus()) {
    table_->setFocus();
  } else {
    QDialog::keyPressEvent(event);
  }
}

QPushButton* ResultTable::AddButton(const char* name, const char* caption) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAccessibleName(caption);
  buttons_->insertWidget(buttons_->count() - 1, button);
  return button;
}

}  // namespace merivane::desktop
