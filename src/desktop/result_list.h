// A list of results: sorted by a click on a column, filtered by a text, to be copied, saved and
// printed.
#pragma once

#include <QAbstractItemModel>
#include <QAbstractTableModel>
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTableView>
#include <functional>
#include <vector>

class QSortFilterProxyModel;

namespace merivane::desktop {

class QtDesktop;

// Rows of texts; one column of words has a colour for each, and one may hold numbers.
class ResultModel : public QAbstractTableModel {
 public:
  struct Row {
    QStringList texts;
    QColor colour;
  };

  // `numberColumn`: -1 where none holds numbers.
  ResultModel(QStringList headings, std::vector<Row> rows, int numberColumn, QObject* parent);

  void Append(Row row);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  // Qt::UserRole: what the column is sorted by.
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  static constexpr int kWordColumn = 0;
  static constexpr int kFirstSentence = 3;  // from here on, columns hold sentences

 private:
  QStringList headings_;
  std::vector<Row> rows_;
  int numberColumn_;
};

// Ctrl+C copies the chosen rows. What is saved and printed are the rows that the filter shows, in
// the order on the screen, under the title of the list or else of its window.
class ResultList : public QTableView {
 public:
  // It owns the model.
  ResultList(ResultModel* model, QtDesktop& desktop);

  // Other rows in the place of these; it owns that model too.
  void SetRows(ResultModel* model);
  // What the filter is set on.
  QSortFilterProxyModel& Shown() { return *shown_; }

  // The row of the model that is chosen; -1 for none.
  int CurrentRow() const;
  // Chooses rows of the model, and moves to the first.
  void ChooseRows(const std::vector<int>& rows);

  // A row of the model as it is copied; by default its texts with tabs between them.
  std::function<QString(int row)> textOf;
  QString Tabbed(int row) const;
  void CopyChosen() const;
  void Save();   // asks for a name
  void Print();  // asks how

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void FitColumns();
  void ShareWidth();

  QtDesktop& desktop_;
  QSortFilterProxyModel* shown_;
};

// Rows of a list outside of the program: as text, CSV, JSON, and as a page.
//
// One of .txt, .csv and .json, in any case of letters.
bool IsListName(const QString& path);

// The rows as UTF-8, by the ending of `path`: lines with tabs between the columns; comma separated
// values; an array of objects. Text and CSV begin with the headings, JSON has them as keys.
// REQUIRES: IsListName.
QByteArray ListAs(const QAbstractItemModel& rows, const QString& path);

// As a table to be printed, below its title.
QString ListAsHtml(const QAbstractItemModel& rows, const QString& title);

}  // namespace merivane::desktop
