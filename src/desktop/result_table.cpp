#include "result_table.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "window_place.h"

namespace merivane::desktop {

ResultModel::ResultModel(QStringList headings, std::vector<Row> rows, int numberColumn,
                         QObject* parent)
    : QAbstractTableModel(parent),
      headings_(std::move(headings)),
      rows_(std::move(rows)),
      numberColumn_(numberColumn) {}

int ResultModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int ResultModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(headings_.size());
}

QVariant ResultModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Row& row = rows_[static_cast<std::size_t>(index.row())];
  const QString& text = row.texts[index.column()];
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return text;
  if (role == Qt::DecorationRole && index.column() == kWordColumn) return row.colour;
  if (role != Qt::UserRole) return {};
  return index.column() == numberColumn_ ? QVariant(text.toInt()) : QVariant(text);
}

QVariant ResultModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return headings_.value(section);
}

ResultTable::ResultTable(const char* name, ResultModel* model, const QString& summary,
                         QWidget* parent)
    : QDialog(parent),
      table_(new QTableView),
      filter_(new QLineEdit),
      shown_(new QSortFilterProxyModel(this)),
      buttons_(new QHBoxLayout) {
  setObjectName(name);
  setAttribute(Qt::WA_DeleteOnClose);
  new WindowPlace(*this, {fontMetrics().averageCharWidth() * 140, fontMetrics().height() * 26});
  model->setParent(this);
  shown_->setSourceModel(model);
  shown_->setSortRole(Qt::UserRole);
  shown_->setFilterKeyColumn(-1);
  shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
  filter_->setObjectName("filter");
  filter_->setAccessibleName("Filter");
  filter_->setPlaceholderText("Show only rows that hold this text (Ctrl+F)");
  filter_->setClearButtonEnabled(true);
  connect(filter_, &QLineEdit::textChanged, shown_, &QSortFilterProxyModel::setFilterFixedString);
  auto* find = new QShortcut(QKeySequence::Find, this);
  connect(find, &QShortcut::activated, filter_, [this] { filter_->setFocus(); });
  table_->setObjectName("results");
  table_->setAccessibleName("Results");
  table_->setModel(shown_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setTabKeyNavigation(false);
  table_->verticalHeader()->hide();
  table_->setSortingEnabled(true);
  table_->sortByColumn(-1, Qt::AscendingOrder);
  FitColumns();
  table_->viewport()->installEventFilter(this);
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
  auto* column = new QVBoxLayout(this);
  column->addWidget(filter_);
  column->addWidget(table_, 1);
  column->addLayout(buttons_);
  table_->setFocus();
}

void ResultTable::FitColumns() {
  constexpr int kMostWrapped = 1000;  // rows; measuring more takes too long
  constexpr int kMostLetters = 30;
  QHeaderView* columns = table_->horizontalHeader();
  columns->setStretchLastSection(false);
  table_->resizeColumnsToContents();
  const int most = fontMetrics().averageCharWidth() * kMostLetters;
  for (int column = 0; column < ResultModel::kFirstSentence; ++column) {
    columns->resizeSection(column, std::min(columns->sectionSize(column), most));
  }
  if (shown_->rowCount() > kMostWrapped) return;
  table_->verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
}

// Sentences share the room that the other columns leave, and wrap in it. Where that is too little
// for words the table is moved by its bar.
void ResultTable::ShareWidth() {
  constexpr int kLeastLetters = 30;
  QHeaderView* columns = table_->horizontalHeader();
  int room = table_->viewport()->width();
  for (int column = 0; column < ResultModel::kFirstSentence; ++column) {
    room -= columns->sectionSize(column);
  }
  const int sentences = shown_->columnCount() - ResultModel::kFirstSentence;
  const int width = std::max(room / sentences, fontMetrics().averageCharWidth() * kLeastLetters);
  for (int column = ResultModel::kFirstSentence; column < shown_->columnCount(); ++column) {
    columns->resizeSection(column, width);
  }
}

bool ResultTable::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::Resize) ShareWidth();
  return QDialog::eventFilter(object, event);
}

void ResultTable::WhenAccepted(QObject* receiver, const std::function<void()>& goOn) {
  connect(this, &QDialog::accepted, receiver, goOn, Qt::QueuedConnection);
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

int ResultTable::CurrentRow() const {
  const QModelIndex index = shown_->mapToSource(table_->currentIndex());
  return index.isValid() ? index.row() : -1;
}

QPushButton* ResultTable::AddButton(const char* name, const char* caption) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAccessibleName(caption);
  buttons_->insertWidget(buttons_->count() - 1, button);
  return button;
}

}  // namespace merivane::desktop
