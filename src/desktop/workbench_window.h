// An opened file: outline, diagram, chart, findings and what is chosen, side by side.
#pragma once

#include <QMainWindow>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "workbench/file_view.h"
#include "workbench/selection.h"
#include "workbench_file.h"

class QFileSystemWatcher;
class QLabel;
class QSplitter;
class QToolBar;

namespace merivane::desktop {

using namespace workbench;

class ElementPage;
class NoteList;
class OutlineTree;
class PictureTools;
class PictureView;
class QtDesktop;

// One element is chosen in all parts. Enter goes into its decomposition, Backspace out of its
// scenario. Another choice at the top translates again in memory; nothing is ever written.
class WorkbenchWindow : public QMainWindow {
 public:
  static constexpr int kHelpContextId = 7030;

  WorkbenchWindow(std::unique_ptr<WorkbenchFile> file, FileView view, QtDesktop& desktop);
  ~WorkbenchWindow() override;

  // What the user opened it for comes to the front.
  enum class Part { kWhole, kDiagrams, kChart };
  void LookAt(Part part);

  const WorkbenchFile& File() const { return *file_; }
  void ReadAgain();
  // The model goes to the dialog that translates it, with the choices made here.
  std::function<void(const std::string& path, const std::vector<ScenarioChoice>& choices)> OnToPlan;
  // A changed plan goes back into its model: the plan, and the database and the project that hold
  // the model, where that is known.
  std::function<void(const std::string& plan, const std::string& database,
                     std::optional<std::int32_t> project)>
      OnBringBack;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void AddTools();
  void AddTranslations();
  void BringBack();
  void AddParts();
  void AddNotices(QLayout& column);
  void Watch();
  void TakeView(FileView view);
  void ShowChoices();
  void ShowNotices();
  void ShowChart();
  // False where the user cancelled the drawing.
  bool ShowDiagram(std::size_t scenario);
  void SwitchAll();
  std::vector<pictures::Picture> Pictures() const;
  void Move(bool (Selection::*step)());
  void Choose(std::size_t element);
  // Marks in all parts what the selection says.
  void ShowChosen();
  void TakeChoice(const std::string& question, int name);
  bool Draw(PictureView& view, const std::function<pictures::Picture()>& picture);

  QtDesktop& desktop_;
  std::unique_ptr<WorkbenchFile> file_;
  FileView view_;
  Selection selection_{view_};
  std::vector<pictures::Diagram> diagrams_;  // that are drawn
  std::optional<std::size_t> drawn_;         // the scenario in the diagram; none: all of them
  bool isShowing_ = false;                   // what is marked now was not chosen by the user

  OutlineTree* outline_;
  PictureView* diagram_;
  PictureView* chart_;
  PictureView* lastPicture_;
  QLabel* noChart_;
  ElementPage* page_;
  NoteList* notes_;
  PictureTools* tools_ = nullptr;
  QToolBar* choices_ = nullptr;
  QLabel* lines_ = nullptr;
  QWidget* changed_ = nullptr;
  QSplitter* pictures_ = nullptr;
  QFileSystemWatcher* watcher_ = nullptr;
  QAction* back_ = nullptr;
  QAction* forward_ = nullptr;
  QAction* bringBack_ = nullptr;
  QAction* all_ = nullptr;
};

}  // namespace merivane::desktop
