#include "workbench_window.h"

#include <QAction>
#include <QComboBox>
#include <QDockWidget>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <utility>

#include "desktop/qt_desktop.h"
#include "filtered_list.h"
#include "help_context.h"
#include "note_list.h"
#include "outline_tree.h"
#include "picture_tools.h"
#include "picture_view.h"
#include "qt_text.h"
#include "text_editor.h"
#include "workbench_file.h"

namespace merivane::desktop {

namespace {

constexpr const char* kLayoutKey = "workbench/layout";
constexpr const char* kPicturesKey = "workbench/pictures";

PictureView* MakeView(const char* name, WorkListener& work) {
  auto* view = new PictureView({}, work);
  view->setObjectName(name);
  view->setMinimumHeight(view->fontMetrics().height() * 4);
  return view;
}

std::vector<pictures::Picture> PicturesOf(const std::vector<pictures::Diagram>& diagrams) {
  std::vector<pictures::Picture> pictures;
  pictures.reserve(diagrams.size());
  for (const pictures::Diagram& diagram : diagrams) pictures.push_back(diagram.picture);
  return pictures;
}

}  // namespace

WorkbenchWindow::WorkbenchWindow(std::unique_ptr<WorkbenchFile> file, FileView view,
                                 QtDesktop& desktop)
    : desktop_(desktop),
      file_(std::move(file)),
      outline_(new OutlineTree),
      diagram_(MakeView("diagram", file_->Work())),
      chart_(MakeView("chart", file_->Work())),
      lastPicture_(diagram_),
      noChart_(new QLabel),
      page_(new ElementPage),
      notes_(new NoteList(desktop)) {
  setObjectName("workbench");
  setAttribute(Qt::WA_DeleteOnClose);
  const QString path = PathToQt(file_->Path());
  const QString kind = file_->Merge() ? "preview of the merge" : KindWord(path);
  setWindowTitle(QFileInfo(path).fileName() + " (" + kind + ')');
  SetHelpContext(this, kHelpContextId);
  AddTools();
  AddParts();
  Watch();
  const QSettings settings;
  restoreState(settings.value(kLayoutKey).toByteArray());
  pictures_->restoreState(settings.value(kPicturesKey).toByteArray());
  TakeView(std::move(view));
}

WorkbenchWindow::~WorkbenchWindow() {
  QSettings settings;
  settings.setValue(kLayoutKey, saveState());
  settings.setValue(kPicturesKey, pictures_->saveState());
}

void WorkbenchWindow::AddTools() {
  QToolBar* bar = addToolBar("Tools");
  bar->setObjectName("workbenchTools");
  tools_ = new PictureTools(*this, *bar, desktop_,
                            {[this] { return lastPicture_; }, [this] { return Pictures(); }});
  back_ = tools_->Add("back", "Back", QKeySequence("Alt+Left"), [this] { Move(&Selection::Back); });
  forward_ = tools_->Add("forward", "Forward", QKeySequence("Alt+Right"),
                         [this] { Move(&Selection::Forward); });
  tools_->Add("into", "Into", {}, [this] { Move(&Selection::Into); })
      ->setToolTip("Into the decomposition (Enter)");
  tools_->Add("out", "Out", {}, [this] { Move(&Selection::Out); })
      ->setToolTip("Out of the scenario (Backspace)");
  all_ =
      tools_->Add("allScenarios", "All scenarios", QKeySequence("Ctrl+D"), [this] { SwitchAll(); });
  all_->setCheckable(true);
  bar->addSeparator();
  tools_->AddZoom();
  bar->addSeparator();
  tools_->AddExport();
  tools_->ComeBefore(outline_->Search());
  auto* find = new QAction(this);
  find->setShortcut(QKeySequence::Find);
  find->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  addAction(find);
  connect(find, &QAction::triggered, this, [this] {
    outline_->Search().setFocus();
    outline_->Search().selectAll();
  });
  bar->addSeparator();
  AddTranslations();
}

void WorkbenchWindow::AddTranslations() {
  if (file_->Kind() != FileKind::kText) {
    bringBack_ = tools_->Add("bringBack",
                             file_->Merge() ? "To the merge..." : "Bring a changed plan back...",
                             QKeySequence("Ctrl+B"), [this] { BringBack(); });
    return;
  }
  tools_->Add("toPlan", "Model to plan...", QKeySequence("Ctrl+T"), [this] {
    if (OnToPlan) OnToPlan(file_->Path(), view_.choices);
  });
  choices_ = new QToolBar("Choices");
  choices_->setObjectName("workbenchChoices");
  addToolBarBreak();
  addToolBar(choices_);
}

// The plan is asked for first: its kind tells which boxes the rest belongs into.
void WorkbenchWindow::BringBack() {
  if (!OnBringBack) return;
  if (const auto& merge = file_->Merge()) {
    return OnBringBack(merge->plan, merge->database, merge->project);
  }
  if (file_->Kind() != FileKind::kDatabase) return OnBringBack(file_->Path(), "", {});
  std::string plan;
  desktop_.RunIn(*this, [&] {
    plan = desktop_.AskFileName({"Changed plans (*.mpx *.xml)|*.xml", "The changed plan"});
  });
  if (!plan.empty()) OnBringBack(plan, file_->Path(), file_->Project());
}

void WorkbenchWindow::AddNotices(QLayout& column) {
  lines_ = new QLabel;
  lines_->setObjectName("fileLines");
  lines_->setTextFormat(Qt::PlainText);
  lines_->setWordWrap(true);
  lines_->setMargin(fontMetrics().height() / 3);
  changed_ = new QWidget;
  changed_->setObjectName("fileChanged");
  auto* row = new QHBoxLayout(changed_);
  auto* again = new QPushButton("Read again");
  again->setObjectName("readAgain");
  row->addWidget(new QLabel("The file has changed on the disk."), 1);
  row->addWidget(again);
  connect(again, &QPushButton::clicked, this, [this] { ReadAgain(); });
  changed_->hide();
  column.addWidget(changed_);
  column.addWidget(lines_);
}

void WorkbenchWindow::AddParts() {
  noChart_->setObjectName("noChart");
  noChart_->setTextFormat(Qt::PlainText);
  noChart_->setWordWrap(true);
  noChart_->setAlignment(Qt::AlignCenter);
  pictures_ = new QSplitter(Qt::Vertical);
  for (QWidget* part : std::initializer_list<QWidget*>{diagram_, chart_, noChart_}) {
    pictures_->addWidget(part);
  }
  auto* middle = new QWidget;
  auto* column = new QVBoxLayout(middle);
  column->setContentsMargins({});
  AddNotices(*column);
  column->addWidget(pictures_, 1);
  setCentralWidget(middle);
  const auto dock = [this](const char* name, const char* title, QWidget* widget,
                           Qt::DockWidgetArea area) {
    auto* made = new QDockWidget(title);
    made->setObjectName(name);
    made->setWidget(widget);
    addDockWidget(area, made);
  };
  dock("outlineDock", "Outline", outline_, Qt::LeftDockWidgetArea);
  dock("propertiesDock", "Properties", page_, Qt::RightDockWidgetArea);
  auto* findings = new FilteredList(notes_, QKeySequence("Ctrl+Shift+F"), this);
  tools_->ComeBefore(findings->Filter());
  dock("notesDock", file_->Merge() ? "Changes" : "Findings", findings, Qt::BottomDockWidgetArea);
  outline_->OnChosen = notes_->OnChosen = [this](std::size_t element) { Choose(element); };
  notes_->OnOpen =
      page_->OnOpen = [this](std::size_t line) { OpenAtLine(PathToQt(file_->Path()), line); };
  diagram_->OnClick = [this](const std::string& id) {
    if (const auto element = ElementOfFigure(view_, drawn_, id)) Choose(*element);
  };
  diagram_->OnFollow = [this] { Move(&Selection::Into); };
  diagram_->OnZoom = chart_->OnZoom = [this] { tools_->TellZoom(); };
  chart_->OnClick = [this](const std::string& id) {
    if (const auto element = ElementOfBar(view_, id)) Choose(*element);
  };
  for (QWidget* part : std::initializer_list<QWidget*>{&outline_->Tree(), diagram_, chart_}) {
    part->installEventFilter(this);
  }
  setFocusProxy(&outline_->Tree());
}

// A file that is replaced, as editors do, is watched no more.
void WorkbenchWindow::Watch() {
  QStringList paths{PathToQt(file_->Path())};
  if (file_->Merge()) paths += PathToQt(file_->Merge()->database);
  watcher_ = new QFileSystemWatcher(paths, this);
  connect(watcher_, &QFileSystemWatcher::fileChanged, this, [this](const QString& path) {
    changed_->show();
    QTimer::singleShot(0, this, [this, path] { watcher_->addPath(path); });
  });
}

void WorkbenchWindow::TakeView(FileView view) {
  isShowing_ = true;
  view_ = std::move(view);
  selection_.Show(view_);
  diagrams_.clear();
  drawn_.reset();
  outline_->Show(view_.elements);
  notes_->Show(view_.notes);
  diagram_->setVisible(!view_.model.scenarios.empty());
  lastPicture_ = view_.model.scenarios.empty() ? chart_ : diagram_;
  if (bringBack_ != nullptr && file_->Kind() == FileKind::kDatabase) {
    bringBack_->setEnabled(!view_.model.scenarios.empty());
  }
  all_->setEnabled(view_.model.scenarios.size() > 1);
  ShowChoices();
  ShowNotices();
  ShowChart();
  if (!selection_.Chosen() && !view_.elements.empty()) selection_.Choose(0);
  isShowing_ = false;
  ShowChosen();
}

void WorkbenchWindow::ShowChoices() {
  if (choices_ == nullptr) return;
  const QWidget* focused = focusWidget();
  const QString inHand = focused == nullptr ? "" : focused->objectName();
  choices_->clear();
  choices_->setVisible(!view_.choices.empty());
  int count = 0;
  for (const ScenarioChoice& choice : view_.choices) {
    auto* box = new QComboBox;
    box->setObjectName(QString("choice%1").arg(++count));
    box->setAccessibleName(ToQt(choice.question));
    box->setToolTip(ToQt(choice.question));
    for (const std::string& name : choice.names) box->addItem(ToQt(name));
    box->setCurrentIndex(static_cast<int>(choice.chosen));
    auto* label = new QLabel(' ' + ToQt(choice.question) + ' ');
    label->setTextFormat(Qt::PlainText);
    choices_->addWidget(label);
    choices_->addWidget(box);
    if (inHand == box->objectName()) box->setFocus();
    // The box goes with the old view.
    connect(box, &QComboBox::activated, this, [this, question = choice.question](int name) {
      QTimer::singleShot(0, this, [this, question, name] { TakeChoice(question, name); });
    });
  }
}

void WorkbenchWindow::ShowNotices() {
  QStringList texts;
  for (const std::string& line : view_.lines) texts += ToQt(line);
  for (const pictures::Diagram& diagram : diagrams_) {
    if (diagram.whyListed.empty()) continue;
    texts += "The scenario '" + ToQt(diagram.picture.title) + "' " + ToQt(diagram.whyListed) +
             ": its units stand in a list.";
  }
  lines_->setText(texts.join('\n'));
  lines_->setVisible(!texts.isEmpty());
}

void WorkbenchWindow::ShowChart() {
  chart_->setVisible(view_.chart.has_value());
  noChart_->setVisible(!view_.chart);
  noChart_->setText(ToQt(view_.whyNoChart));
  if (view_.chart) Draw(*chart_, [this] { return *view_.chart; });
}

// False where the user cancelled it.
bool WorkbenchWindow::Draw(PictureView& view, const std::function<pictures::Picture()>& picture) {
  bool isDrawn = false;
  desktop_.Run([&] {
    const SavedMousePointer pointer(desktop_, kPointerHourglass);
    isDrawn = RunUnlessCancelled(file_->Work(), [&] { view.Draw(picture(), file_->Work()); });
  });
  return isDrawn;
}

bool WorkbenchWindow::ShowDiagram(std::size_t scenario) {
  const bool isAll = all_->isChecked();
  if (!diagrams_.empty() && (isAll ? !drawn_ : drawn_ == scenario)) return true;
  const auto wanted = isAll ? std::nullopt : std::optional(scenario);
  std::vector<pictures::Diagram> diagrams;
  const bool isDrawn = Draw(*diagram_, [&] {
    diagrams = DrawScenarios(view_, wanted, file_->Work());
    return pictures::Stacked(PicturesOf(diagrams));
  });
  if (!isDrawn) return false;
  diagrams_ = std::move(diagrams);
  drawn_ = wanted;
  ShowNotices();
  return true;
}

// All scenarios or one, as the button says. Where the drawing is cancelled, what was drawn stays.
void WorkbenchWindow::SwitchAll() {
  const bool all = all_->isChecked();
  ShowChosen();
  all_->setChecked(diagrams_.empty() ? all : !drawn_);
}

std::vector<pictures::Picture> WorkbenchWindow::Pictures() const {
  if (lastPicture_ != diagram_) return {lastPicture_->Drawn()};
  return PicturesOf(diagrams_);
}

void WorkbenchWindow::LookAt(Part part) {
  if (part == Part::kWhole) return;
  if (part == Part::kDiagrams && all_->isEnabled() && !all_->isChecked()) all_->trigger();
  PictureView* wanted = part == Part::kChart ? chart_ : diagram_;
  if (!wanted->isHidden()) wanted->setFocus();
}

void WorkbenchWindow::Choose(std::size_t element) {
  if (!isShowing_ && selection_.Choose(element)) ShowChosen();
}

void WorkbenchWindow::Move(bool (Selection::*step)()) {
  if ((selection_.*step)()) ShowChosen();
}

void WorkbenchWindow::ShowChosen() {
  back_->setEnabled(selection_.CanGoBack());
  forward_->setEnabled(selection_.CanGoForward());
  const auto chosen = selection_.Chosen();
  if (!chosen) return;
  isShowing_ = true;
  const Element& element = view_.elements[*chosen];
  outline_->Choose(*chosen);
  page_->Show(element);
  notes_->Choose(*chosen);
  chart_->Choose(element.bar);
  const std::size_t scenario = element.scenario.value_or(drawn_.value_or(0));
  if (!view_.model.scenarios.empty() && ShowDiagram(scenario)) diagram_->Choose(element.figure);
  isShowing_ = false;
}

void WorkbenchWindow::ReadAgain() {
  desktop_.Run([this] {
    std::optional<FileView> view = file_->Read();
    if (!view) return;
    changed_->hide();
    TakeView(std::move(*view));
  });
}

// Where it is cancelled, the box goes back.
void WorkbenchWindow::TakeChoice(const std::string& question, int name) {
  desktop_.Run([&] {
    std::optional<FileView> view = file_->Choose(question, static_cast<std::size_t>(name));
    if (view) {
      TakeView(std::move(*view));
    } else {
      ShowChoices();
    }
  });
}

bool WorkbenchWindow::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::FocusIn && (object == diagram_ || object == chart_)) {
    lastPicture_ = object == chart_ ? chart_ : diagram_;
  }
  if (event->type() != QEvent::KeyPress) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Move(&Selection::Into);
      return true;
    case Qt::Key_Backspace:
      Move(&Selection::Out);
      return true;
    default:
      return false;
  }
}

}  // namespace merivane::desktop
