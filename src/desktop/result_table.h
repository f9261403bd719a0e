// A list of results in a window of its own: sorted by a click on a column, filtered by a text.
#pragma once

#include <QDialog>
#include <QKeySequence>
#include <functional>

#include "result_list.h"

class QHBoxLayout;

namespace merivane::desktop {

class QtDesktop;

// Deletes itself when it is closed. Enter in the table presses the default button; Ctrl+F goes to
// the filter. Ctrl+C copies the chosen rows, Ctrl+S saves and
// Ctrl+P prints those that the filter shows, in the order on the screen.
class ResultTable : public QDialog {
 public:
  // The dialog owns the model. `name`: its object's; `summary` stands below the table.
  ResultTable(const char* name, ResultModel* model, const QString& summary, QtDesktop& desktop,
              QWidget* parent);

  // Goes on with what the user chose here, once this dialog was closed with that result and its
  // signals are over: a run lets events in, and one of them deletes the dialog.
  void WhenClosed(int result, QObject* receiver, const std::function<void()>& goOn);

 protected:
  // The row of the model that is chosen in the table; -1 for none.
  int CurrentRow() const;
  void CopyChosen() const;
  // A row of the model as it is copied.
  virtual QString TextOf(int row) const;
  // A button in front of "Close".
  class QPushButton* AddButton(const char* name, const char* caption);

  ResultList* table_;

 private:
  void AddKey(const QKeySequence& keys, const std::function<void()>& act);

  QHBoxLayout* buttons_;
};

}  // namespace merivane::desktop
