// A list of results below a box that filters it, with the number of rows beside that.
#pragma once

#include <QKeySequence>
#include <QWidget>

class QLabel;
class QLineEdit;

namespace merivane::desktop {

class ResultList;

// `keys` go to the filter from anywhere in `area`, which holds this; Enter in the filter goes to
// the list.
class FilteredList : public QWidget {
 public:
  // It owns the list.
  FilteredList(ResultList* list, const QKeySequence& keys, QWidget* area);

  QLineEdit& Filter() { return *filter_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void TellCount();

  ResultList* list_;
  QLineEdit* filter_;
  QLabel* count_;
};

}  // namespace merivane::desktop
