#include "filtered_list.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QShortcut>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>

#include "result_list.h"

namespace merivane::desktop {

FilteredList::FilteredList(ResultList* list, const QKeySequence& keys, QWidget* area)
    : list_(list), filter_(new QLineEdit), count_(new QLabel) {
  filter_->setObjectName("filter");
  filter_->setAccessibleName("Filter");
  filter_->setPlaceholderText("Show only rows that hold this text (" +
                              keys.toString(QKeySequence::NativeText) + ')');
  filter_->setClearButtonEnabled(true);
  count_->setObjectName("count");
  count_->setMargin(fontMetrics().averageCharWidth() / 2);
  connect(filter_, &QLineEdit::textChanged, &list_->Shown(),
          &QSortFilterProxyModel::setFilterFixedString);
  connect(filter_, &QLineEdit::textChanged, this, &FilteredList::TellCount);
  connect(&list_->Shown(), &QAbstractItemModel::rowsInserted, this, &FilteredList::TellCount);
  connect(&list_->Shown(), &QAbstractItemModel::modelReset, this, &FilteredList::TellCount);
  auto* find = new QShortcut(keys, area);
  find->setContext(Qt::WidgetWithChildrenShortcut);
  connect(find, &QShortcut::activated, filter_, [this] { filter_->setFocus(); });
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  auto* top = new QHBoxLayout;
  top->addWidget(filter_, 1);
  top->addWidget(count_);
  column->addLayout(top);
  column->addWidget(list_, 1);
  TellCount();
}

void FilteredList::TellCount() {
  const int all = list_->Shown().sourceModel()->rowCount();
  const int left = list_->Shown().rowCount();
  const QString rows = all == 1 ? "1 row" : QString("%1 rows").arg(all);
  count_->setText(left == all ? rows : QString("%1 of %2").arg(left).arg(rows));
}

// An Enter that ends the typing of a filter is no answer to a dialog.
void FilteredList::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && filter_->hasFocus()) {
    list_->setFocus();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace merivane::desktop
