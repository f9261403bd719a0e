#include "result_table.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QTextDocument>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/qt_desktop.h"
#include "pictures/picture_file.h"
#include "qt_text.h"
#include "result_text.h"
#include "window_place.h"

namespace merivane::desktop {

ResultModel::ResultModel(QStringList headings, std::vector<Row> rows, int numberColumn,
                         QObject* parent)
    : QAbstractTableModel(parent),
      headings_(std::move(headings)),
      rows_(std::move(rows)),
      numberColumn_(numberColumn) {}

void ResultModel::Append(Row row) {
  beginInsertRows({}, rowCount(), rowCount());
  rows_.push_back(std::move(row));
  endInsertRows();
}

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
                         QtDesktop& desktop, QWidget* parent)
    : QDialog(parent),
      table_(new QTableView),
      desktop_(desktop),
      filter_(new QLineEdit),
      count_(new QLabel),
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
  connect(filter_, &QLineEdit::textChanged, this, &ResultTable::TellCount);
  connect(shown_, &QAbstractItemModel::rowsInserted, this, &ResultTable::TellCount);
  AddKey(QKeySequence::Find, [this] { filter_->setFocus(); });
  AddKey(QKeySequence::Save, [this] { Save(); });
  AddKey(QKeySequence::Print, [this] { Print(); });
  count_->setObjectName("count");
  table_->setObjectName("results");
  table_->setAccessibleName("Results");
  table_->setModel(shown_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setSelectionMode(QAbstractItemView::ExtendedSelection);
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
  auto* copy = new QAction(table_);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetShortcut);
  table_->addAction(copy);
  connect(copy, &QAction::triggered, this, [this] { CopyChosen(); });
  auto* close = new QPushButton("Close");
  close->setObjectName("cmdClose");
  close->setAutoDefault(false);
  connect(close, &QPushButton::clicked, this, &QDialog::reject);
  buttons_->addWidget(close);
  QPushButton* save = AddButton("cmdSave", "Save...");
  connect(save, &QPushButton::clicked, this, [this] { Save(); });
  QPushButton* print = AddButton("cmdPrint", "Print...");
  connect(print, &QPushButton::clicked, this, [this] { Print(); });
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
  const int all = shown_->sourceModel()->rowCount();
  const int left = shown_->rowCount();
  const QString rows = all == 1 ? "1 row" : QString("%1 rows").arg(all);
  count_->setText(left == all ? rows : QString("%1 of %2").arg(left).arg(rows));
}

QString ResultTable::TextOf(int row) const {
  const QAbstractItemModel& rows = *shown_->sourceModel();
  QStringList texts;
  for (int column = 0; column < rows.columnCount(); ++column) {
    texts += rows.index(row, column).data().toString();
  }
  return texts.join('\t');
}

void ResultTable::CopyChosen() const {
  QModelIndexList chosen = table_->selectionModel()->selectedRows();
  if (chosen.isEmpty()) return;
  std::sort(chosen.begin(), chosen.end());
  QStringList lines;
  for (const QModelIndex& index : chosen) lines += TextOf(shown_->mapToSource(index).row());
  QApplication::clipboard()->setText(lines.join('\n'));
}

void ResultTable::Save() {
  desktop_.RunIn(*this, [this] {
    const std::string path =
        desktop_.AskFileName({"Lists (*.txt *.csv *.json)|*.csv", "Save the list", true});
    if (path.empty()) return;
    if (!IsListName(PathToQt(path))) {
      desktop_.ShowMessage({FromUtf8(path) + " is no name of a list: .txt, .csv or .json.",
                            MessageIcon::kExclamation});
    } else {
      desktop_.WriteAnew(path, [&](const Output& output) {
        pictures::WriteFile(output, ListAs(*shown_, PathToQt(path)).toStdString());
      });
    }
  });
}

void ResultTable::Print() {
  desktop_.RunIn(*this, [this] {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(windowTitle());
    QPrintDialog dialog(&printer, this);
    desktop_.Execute(dialog);
    if (dialog.result() != QDialog::Accepted) return;
    QTextDocument page;
    page.setHtml(ListAsHtml(*shown_, windowTitle()));
    page.print(&printer);
  });
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
