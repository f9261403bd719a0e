#include "result_list.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QPrinter>
#include <QSortFilterProxyModel>
#include <QTextDocument>
#include <algorithm>
#include <string>
#include <utility>

#include "desktop/qt_desktop.h"
#include "pictures/picture_file.h"
#include "printer_choice.h"
#include "qt_text.h"

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

ResultList::ResultList(ResultModel* model, QtDesktop& desktop)
    : textOf([this](int row) { return Tabbed(row); }),
      desktop_(desktop),
      shown_(new QSortFilterProxyModel(this)) {
  setObjectName("results");
  setAccessibleName("Results");
  shown_->setSortRole(Qt::UserRole);
  shown_->setFilterKeyColumn(-1);
  shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
  model->setParent(this);
  shown_->setSourceModel(model);
  setModel(shown_);
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setEditTriggers(NoEditTriggers);
  setTabKeyNavigation(false);
  verticalHeader()->hide();
  setSortingEnabled(true);
  sortByColumn(-1, Qt::AscendingOrder);
  FitColumns();
  auto* copy = new QAction(this);
  copy->setShortcut(QKeySequence::Copy);
  copy->setShortcutContext(Qt::WidgetShortcut);
  addAction(copy);
  connect(copy, &QAction::triggered, this, [this] { CopyChosen(); });
}

void ResultList::SetRows(ResultModel* model) {
  QAbstractItemModel* before = shown_->sourceModel();
  model->setParent(this);
  shown_->setSourceModel(model);
  delete before;
  FitColumns();
  ShareWidth();
}

void ResultList::ChooseRows(const std::vector<int>& rows) {
  QItemSelection chosen;
  for (const int row : rows) {
    const QModelIndex at = shown_->mapFromSource(shown_->sourceModel()->index(row, 0));
    if (at.isValid()) chosen.select(at, at);
  }
  selectionModel()->select(chosen, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  if (!chosen.isEmpty()) scrollTo(chosen.first().topLeft());
}

QString ResultList::Tabbed(int row) const {
  const QAbstractItemModel& rows = *shown_->sourceModel();
  QStringList texts;
  for (int column = 0; column < rows.columnCount(); ++column) {
    texts += rows.index(row, column).data().toString();
  }
  return texts.join('\t');
}

void ResultList::CopyChosen() const {
  QModelIndexList chosen = selectionModel()->selectedRows();
  if (chosen.isEmpty()) return;
  std::sort(chosen.begin(), chosen.end());
  QStringList lines;
  for (const QModelIndex& index : chosen) lines += textOf(shown_->mapToSource(index).row());
  QApplication::clipboard()->setText(lines.join('\n'));
}

void ResultList::Save() {
  desktop_.RunIn(*window(), [this] {
    const std::string path = desktop_.AskFileName(
        {.filter = "Lists (*.txt *.csv *.json)|*.csv", .title = "Save the list", .newName = true});
    if (path.empty()) return;
    if (!IsListName(PathToQt(path))) {
      desktop_.ShowMessage({FromUtf8(path) + " is no name of a list: .txt, .csv or .json.",
                            MessageIcon::kExclamation});
    } else {
      desktop_.WriteAnew(path, [&](const Output& output) {
        WriteOutput(output, ListAs(*shown_, PathToQt(path)).toStdString());
      });
    }
  });
}

void ResultList::Print() {
  desktop_.RunIn(*window(), [this] {
    QPrinter printer(QPrinter::HighResolution);
    const QString title = windowTitle().isEmpty() ? window()->windowTitle() : windowTitle();
    printer.setDocName(title);
    if (!ChoosePrinter(printer, *window(), desktop_)) return;
    QTextDocument page;
    page.setHtml(ListAsHtml(*shown_, title));
    page.print(&printer);
  });
}

void ResultList::FitColumns() {
  constexpr int kMostWrapped = 1000;  // rows; measuring more takes too long
  constexpr int kMostLetters = 30;
  QHeaderView* columns = horizontalHeader();
  columns->setStretchLastSection(false);
  resizeColumnsToContents();
  const int most = fontMetrics().averageCharWidth() * kMostLetters;
  for (int column = 0; column < ResultModel::kFirstSentence; ++column) {
    columns->resizeSection(column, std::min(columns->sectionSize(column), most));
  }
  if (shown_->rowCount() > kMostWrapped) return;
  verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
}

// Sentences share the room that the other columns leave, and wrap in it. Where that is too little
// for words the table is moved by its bar.
void ResultList::ShareWidth() {
  constexpr int kLeastLetters = 30;
  QHeaderView* columns = horizontalHeader();
  int room = viewport()->width();
  for (int column = 0; column < ResultModel::kFirstSentence; ++column) {
    room -= columns->sectionSize(column);
  }
  const int sentences = shown_->columnCount() - ResultModel::kFirstSentence;
  const int width = std::max(room / sentences, fontMetrics().averageCharWidth() * kLeastLetters);
  for (int column = ResultModel::kFirstSentence; column < shown_->columnCount(); ++column) {
    columns->resizeSection(column, width);
  }
}

void ResultList::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  ShareWidth();
}

int ResultList::CurrentRow() const {
  const QModelIndex index = shown_->mapToSource(currentIndex());
  return index.isValid() ? index.row() : -1;
}

}  // namespace merivane::desktop
