// Lists of results in windows of their own: sorted by a click on a column, filtered by a text.
#pragma once

#include <QColor>
#include <QDialog>
#include <QKeySequence>
#include <functional>
#include <string>
#include <vector>

#include "desktop/session_log.h"
#include "inspect/finding.h"
#include "inspect/merge_preview.h"
#include "inspect/model_snapshot.h"
#include "result_list.h"
#include "workbench/file_view.h"

class QHBoxLayout;

namespace merivane::desktop {

using namespace inspect;
using namespace workbench;

class QtDesktop;

// The word and the colour of each kind of result.
struct Look {
  const char* word;
  QColor colour;
};

Look LookOf(Severity severity);
Look LookOf(ChangeKind kind);

// Deletes itself when it is closed. Enter in the table presses the default button; Ctrl+F goes to
// the filter. Ctrl+C copies the chosen rows, Ctrl+S saves and Ctrl+P prints those that the filter
// shows, in the order on the screen.
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

// The findings of a model text. A click or Ctrl+C copies findings to the clipboard; "Open", Enter
// or a double click shows the text at its line.
class CheckWindow : public ResultTable {
 public:
  CheckWindow(const std::string& modelPath, std::vector<inspect::Finding> findings,
              QtDesktop& desktop, QWidget* parent);

 private:
  QString TextOf(int row) const override;
  void Open() const;

  std::string modelPath_;
  std::vector<inspect::Finding> findings_;
};

// What a merge would change, before it runs. "OK" accepts the dialog; it is off where the merge
// would stop.
class PreviewWindow : public ResultTable {
 public:
  static constexpr int kShow = 2;  // it is closed so where the user wants to see pictures

  PreviewWindow(const std::string& planPath, const inspect::MergePreview& preview,
                QtDesktop& desktop, QWidget* parent);
};

// What the merged model doesn't give of the plan. Stands beside the main window and asks for
// nothing.
class ProofWindow : public ResultTable {
 public:
  ProofWindow(const PlannedMerge& merge, const inspect::MergeProof& proof, QtDesktop& desktop,
              QWidget* parent);
};

// The list of what the user was told since the program started. The latest message stands last;
// what is told while it is open comes in. One at a time for a log, which outlives it.
class LogWindow : public ResultTable {
 public:
  LogWindow(SessionLog& log, QtDesktop& desktop, QWidget* parent);
  ~LogWindow() override;

 private:
  LogWindow(SessionLog& log, ResultModel* model, QtDesktop& desktop, QWidget* parent);

  SessionLog& log_;
};

}  // namespace merivane::desktop
