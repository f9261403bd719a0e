// A list of results in a window of its own: sorted by a click on a column, filtered by a text.
#pragma once

#include <QAbstractTableModel>
#include <QDialog>
#include <QKeySequence>
#include <QStringList>
#include <functional>
#include <vector>

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QSortFilterProxyModel;
class QTableView;

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

// Deletes itself when it is closed. Enter in the filter goes to the table, whose Enter presses the
// default button; Ctrl+F goes back to the filter. Ctrl+C copies the chosen rows, Ctrl+S saves and
// Ctrl+P prints those that the filter shows, in the order on the screen.
class ResultTable : public QDialog {
 public:
  // The dialog owns the model. `name`: its object's; `summary` stands below the table.
  ResultTable(const char* name, ResultModel* model, const QString& summary, QtDesktop& desktop,
              QWidget* parent);

  // Goes on with what the user agrees to here, once this dialog and its signals are over: a run
  // lets events in, and one of them deletes the dialog.
  void WhenAccepted(QObject* receiver, const std::function<void()>& goOn);

 protected:
  // The row of the model that is chosen in the table; -1 for none.
  int CurrentRow() const;
  void CopyChosen() const;
  // A row of the model as it is copied.
  virtual QString TextOf(int row) const;
  // A button in front of "Close".
  class QPushButton* AddButton(const char* name, const char* caption);
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* object, QEvent* event) override;

  QTableView* table_;

 private:
  void AddKey(const QKeySequence& keys, const std::function<void()>& act);
  void TellCount();
  void Save();
  void Print();
  void FitColumns();
  void ShareWidth();

  QtDesktop& desktop_;
  QLineEdit* filter_;
  QLabel* count_;
  QSortFilterProxyModel* shown_;
  QHBoxLayout* buttons_;
};

}  // namespace merivane::desktop
