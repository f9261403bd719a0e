// What the windows of both directions share: rows of files, the check box, OK, Cancel and Help.
#pragma once

#include <QPoint>
#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <vector>

#include "desktop/qt_desktop.h"
#include "shell/database_pick.h"
#include "shell/form.h"
#include "shell/run_result.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QMdiSubWindow;
class QPushButton;
class QTabWidget;
class QVBoxLayout;

namespace merivane::desktop {

using namespace shell;

class PathField;

struct PathRow {
  const char* label;
  const char* caption;
  const char* edit;
  const char* button;
  TextBox& box;
  const char* extension;  // of the files that it takes
  std::function<void()> browse;
  const char* spoken = nullptr;  // by a screen reader; null: the caption
};

// Draws a form in a window of the MDI area whenever its state changes. Enter presses OK, or the
// button that has the focus, Escape Cancel; closing it by its frame unloads the form. A file may be
// dropped anywhere on it: the box for files of its kind takes it, one in front before a hidden one.
class FormWindow : public QWidget {
 public:
  FormWindow(Form& form, QtDesktop& desktop, const char* caption, int helpContext);
  ~FormWindow() override;

  // Told in a line what came of a translation, the file that was written, if one was, and the one
  // that it was made of.
  std::function<void(const QString& text, const QString& file, const QString& source)> OnResult;
  // Called when the form was loaded, shown, hidden or unloaded, before the window follows.
  std::function<void()> OnSync;
  // What came of the pick of a database; `undo` puts an emptied one back.
  std::function<void(const PickNote& note, const std::function<void()>& undo)> OnPick;

  // Takes files as if they were dropped at `place`; the box for their kind takes one, and a message
  // tells why none does.
  void TakeDropped(const QStringList& files, QPoint place = {-1, -1});

  // Puts it into its frame, which shows and hides with the form.
  void SetFrame(QMdiSubWindow* frame);

 protected:
  virtual void Draw();
  // Tells each pick of a database of the form.
  template <typename TheForm>
  void TellPicks(TheForm& form) {
    form.OnPick = [this, &form](const PickNote& note) {
      if (OnPick) OnPick(note, [&form, emptied = note.emptied] { form.Undo(*emptied); });
    };
    connect(this, &QObject::destroyed, [&form] { form.OnPick = nullptr; });
  }
  // Runs OK of the form on the file `source`, and tells the result once the form is gone, with what
  // more there is to it.
  template <typename TheForm>
  void RunOk(
      TheForm& form, const std::string& source,
      const std::function<QString()>& more = [] { return QString(); }) {
    desktop_.TellAbout(source);
    desktop_.SetWhyNotOpen(form.WhyNotOpen());
    const int before = desktop_.MessageCount();
    form.cmdOK();
    desktop_.SetWhyNotOpen({});
    if (form.IsLoaded()) return;
    const int messages = desktop_.MessageCount() - before;
    TellResult(form.Result, form.BackupName, source, messages, more());
  }
  // Runs a handler and draws what it changed.
  void Run(const std::function<void()>& handler);

  QTabWidget* AddTabs(const char* name, std::string& caption);
  QFormLayout* AddTab(QTabWidget* tabs, const char* caption);
  QFormLayout* AddRows();
  void AddPath(QFormLayout* rows, const PathRow& row);
  // A button at the end of the row that was added last, or in front of OK.
  void AddToRow(QFormLayout* rows, const char* name, const char* caption,
                const std::function<void()>& click);
  QPushButton* AddBesideOk(const char* name, const char* caption,
                           const std::function<void()>& click);
  void AddField(QFormLayout* rows, const char* label, const char* caption, QWidget* field);
  void AddCheckBox(const char* name, const char* caption, CheckBox& box,
                   const std::function<void()>& click);
  void AddButtons(const char* helpName, int helpContext, const std::function<void()>& ok,
                  const std::function<void()>& cancel);

  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

  QtDesktop& desktop_;
  std::vector<std::function<void()>> draws_;  // one for each control

 private:
  struct PathTarget {
    PathField* field;
    const char* extension;
    std::function<void()> browse;
  };
  const PathTarget* TargetOf(const QString& file, QPoint place) const;
  void TakeFile(const PathTarget& target, const std::string& file);
  void ShowTabOf(const QWidget& field);
  void AddRow(QFormLayout* rows, const char* label, const char* caption, QWidget* field,
              QWidget* buddy);
  QPushButton* AddButton(const char* name, const char* caption);
  void TellResult(const RunResult& result, const std::string& backup, const std::string& source,
                  int messages, const QString& more);
  void Sync();
  void BeginAnew();
  void ShowFrame();
  void HideFrame();
  void AlignLabels();
  void ShowDefaultButton(const QWidget* focus);

  Form& form_;
  QMdiSubWindow* frame_ = nullptr;
  QVBoxLayout* column_;
  std::vector<PathTarget> targets_;
  QTabWidget* tabs_ = nullptr;
  std::vector<QWidget*> labels_;
  std::vector<QWidget*> order_;  // of the keyboard
  std::vector<QPushButton*> besideOk_;
  QPushButton* ok_ = nullptr;
  QPushButton* cancel_ = nullptr;
  QPointer<QWidget> lastFocus_;  // when it was hidden
  bool wasLoaded_ = false;
};

inline constexpr const char* kOneFile = "Please drop one file at a time.";
QStringList DroppedFiles(const QDropEvent& event);

// Called for every choice of the user, also of the row that is chosen already.
void ConnectChoice(QComboBox* widget, const std::function<void(std::size_t row)>& choose);

// Fills the list anew where its entries changed.
void DrawComboBox(QComboBox* widget, const ComboBox& box);

}  // namespace merivane::desktop
