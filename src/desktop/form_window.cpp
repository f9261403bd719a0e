#include "form_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMimeData>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QUrl>
#include <set>

#include "help_context.h"
#include "path_field.h"
#include "qt_text.h"
#include "shell/named_files.h"

namespace merivane::desktop {

namespace {

// "; 2 messages were shown" behind the result of a run with boxes.
QString MessageNote(int count) {
  if (count == 0) return {};
  return QStringLiteral("; %1 message%2 shown")
      .arg(count)
      .arg(QLatin1String(count == 1 ? " was" : "s were"));
}

}  // namespace

QStringList DroppedFiles(const QDropEvent& event) {
  QStringList files;
  for (const QUrl& url : event.mimeData()->urls()) {
    if (url.isLocalFile()) files += QDir::toNativeSeparators(url.toLocalFile());
  }
  return files;
}

FormWindow::FormWindow(Form& form, QtDesktop& desktop, const char* caption, int helpContext)
    : desktop_(desktop), form_(form), column_(new QVBoxLayout(this)) {
  setWindowTitle(caption);
  SetHelpContext(this, helpContext);
  setAcceptDrops(true);
  form_.OnChange = [this] { Sync(); };
  connect(qApp, &QApplication::focusChanged, this,
          [this](QWidget* /*old*/, const QWidget* now) { ShowDefaultButton(now); });
}

FormWindow::~FormWindow() { form_.OnChange = nullptr; }

void FormWindow::SetFrame(QMdiSubWindow* frame) {
  frame_ = frame;
  HideFrame();
}

void FormWindow::Run(const std::function<void()>& handler) {
  desktop_.Run(form_, handler);
  Draw();
}

void FormWindow::TellResult(const RunResult& result, const std::string& backup,
                            const std::string& source, int messages, const QString& more) {
  if (!OnResult) return;
  QString text = result.text.empty() ? "Nothing written" : PathToQt(result.text);
  text[0] = text[0].toUpper();
  if (!backup.empty()) text += "; as it was before: " + PathToQt(backup);
  OnResult(text + MessageNote(messages) + more, PathToQt(result.file), PathToQt(source));
}

void FormWindow::Draw() {
  for (const auto& draw : draws_) draw();
}

void FormWindow::Sync() {
  Draw();
  if (frame_ == nullptr) return;
  if (OnSync) OnSync();
  const bool loadedNow = form_.IsLoaded() && !wasLoaded_;
  wasLoaded_ = form_.IsLoaded();
  if (form_.IsVisible()) {
    if (loadedNow) BeginAnew();
    ShowFrame();
  } else {
    HideFrame();
  }
}

// A form that was loaded has its own size and its first control, whatever it had before.
void FormWindow::BeginAnew() {
  lastFocus_ = order_.front();
  if (frame_->isMaximized()) return;
  frame_->resize(frame_->sizeHint().boundedTo(frame_->mdiArea()->viewport()->size()));
}

// Brings it to the front and out of its minimised state; a maximised one stays so.
void FormWindow::ShowFrame() {
  const bool wasHidden = !frame_->isVisible();
  frame_->setEnabled(true);
  show();
  if (frame_->isMinimized()) frame_->showNormal();
  frame_->show();
  frame_->mdiArea()->setActiveSubWindow(frame_);
  if (wasHidden && lastFocus_ != nullptr) lastFocus_->setFocus();
}

// What is hidden is also disabled and without the focus, so that no event finds it.
void FormWindow::HideFrame() {
  if (frame_->isVisible()) lastFocus_ = focusWidget();
  if (isAncestorOf(window()->focusWidget())) frame_->mdiArea()->setFocus();
  frame_->hide();
  frame_->setEnabled(false);
}

QFormLayout* FormWindow::AddRows() {
  auto* rows = new QFormLayout;
  rows->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  column_->addLayout(rows);
  return rows;
}

QTabWidget* FormWindow::AddTabs(const char* name, std::string& caption) {
  auto* tabs = tabs_ = new QTabWidget;
  tabs->setObjectName(name);
  tabs->setAccessibleName(windowTitle());
  column_->addWidget(tabs);
  order_.push_back(tabs);
  connect(tabs, &QTabWidget::currentChanged, this, [this, tabs, &caption](int index) {
    if (index >= 0) Run([&] { caption = tabs->tabText(index).toStdString(); });
  });
  draws_.emplace_back([tabs, &caption] {
    const QSignalBlocker quiet(tabs);
    for (int i = 0; i < tabs->count(); ++i) {
      if (tabs->tabText(i) == QString::fromStdString(caption)) tabs->setCurrentIndex(i);
    }
  });
  return tabs;
}

QFormLayout* FormWindow::AddTab(QTabWidget* tabs, const char* caption) {
  auto* page = new QWidget;
  auto* rows = new QFormLayout(page);
  rows->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
  const QSignalBlocker quiet(tabs);
  tabs->addTab(page, caption);
  return rows;
}

void FormWindow::AddRow(QFormLayout* rows, const char* label, const char* caption, QWidget* field,
                        QWidget* buddy) {
  auto* text = new QLabel(caption);
  text->setObjectName(label);
  text->setBuddy(buddy);
  rows->addRow(text, field);
  labels_.push_back(text);
}

void FormWindow::AddField(QFormLayout* rows, const char* label, const char* caption,
                          QWidget* field) {
  AddRow(rows, label, caption, field, field);
  order_.push_back(field);
}

void FormWindow::AddPath(QFormLayout* rows, const PathRow& row) {
  auto* field =
      new PathField(objectName(), row.edit, row.button,
                    QString(row.spoken != nullptr ? row.spoken : row.caption).remove(':'));
  AddRow(rows, row.label, row.caption, field, field->Edit());
  order_.push_back(field->Edit());
  order_.push_back(field->Button());
  TextBox& box = row.box;
  connect(field->Edit(), &QLineEdit::textChanged, this, [this, &box, field] {
    if (!desktop_.Ended()) box.text = field->Edit()->text().toStdString();
  });
  connect(field->Edit(), &QLineEdit::editingFinished, this,
          [this, &box] { desktop_.RememberName(box.text); });
  const auto browse = [this, &box, field, browse = row.browse] {
    browse();
    if (desktop_.WasPicked(box.text)) field->Recent()->Took(PathToQt(box.text));
  };
  connect(field->Button(), &QPushButton::clicked, this, [this, browse] { Run(browse); });
  const PathTarget& target = targets_.emplace_back(PathTarget{field, row.extension, browse});
  field->Recent()->OnPick = [this, target](const QString& name) {
    TakeFile(target, name.toStdString());
  };
  draws_.emplace_back([field, &box] { field->Draw(box); });
}

void FormWindow::AddCheckBox(const char* name, const char* caption, CheckBox& box,
                             const std::function<void()>& click) {
  auto* check = new QCheckBox(caption);
  check->setObjectName(name);
  check->setAccessibleName(caption);
  column_->addWidget(check);
  column_->addStretch();
  order_.push_back(check);
  connect(check, &QCheckBox::clicked, this, [this, &box, click](bool checked) {
    Run([&] {
      box.checked = checked;
      click();
    });
  });
  draws_.emplace_back([check, &box] {
    check->setChecked(box.checked);
    check->setEnabled(box.enabled);
  });
}

QPushButton* FormWindow::AddButton(const char* name, const char* caption) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAccessibleName(caption);
  order_.push_back(button);
  return button;
}

void FormWindow::AddToRow(QFormLayout* rows, const char* name, const char* caption,
                          const std::function<void()>& click) {
  QPushButton* button = AddButton(name, caption);
  const QLayoutItem* last = rows->itemAt(rows->rowCount() - 1, QFormLayout::FieldRole);
  last->widget()->layout()->addWidget(button);
  connect(button, &QPushButton::clicked, this, [this, click] { Run(click); });
}

QPushButton* FormWindow::AddBesideOk(const char* name, const char* caption,
                                     const std::function<void()>& click) {
  QPushButton* button = AddButton(name, caption);
  besideOk_.push_back(button);
  connect(button, &QPushButton::clicked, this, [this, click] { Run(click); });
  return button;
}

void FormWindow::AddButtons(const char* helpName, int helpContext, const std::function<void()>& ok,
                            const std::function<void()>& cancel) {
  ok_ = AddButton("cmdOK", "OK");
  cancel_ = AddButton("cmdCancel", "Cancel");
  QPushButton* help = AddButton(helpName, "Help");
  SetHelpContext(help, helpContext);
  ok_->setDefault(true);
  auto* row = new QHBoxLayout;
  row->addStretch();
  for (QPushButton* button : besideOk_) row->addWidget(button);
  for (QPushButton* button : {ok_, cancel_, help}) row->addWidget(button);
  column_->addLayout(row);
  connect(ok_, &QPushButton::clicked, this, [this, ok] { Run(ok); });
  connect(cancel_, &QPushButton::clicked, this, [this, cancel] { Run(cancel); });
  connect(help, &QPushButton::clicked, this, [this, help] { desktop_.RequestHelp(help); });
  for (std::size_t i = 1; i < order_.size(); ++i) setTabOrder(order_[i - 1], order_[i]);
  AlignLabels();
}

// The labels of all pages are as wide as the widest, so that the fields stand in one column.
void FormWindow::AlignLabels() {
  int width = 0;
  for (QWidget* label : labels_) {
    label->ensurePolished();
    width = qMax(width, label->sizeHint().width());
  }
  for (QWidget* label : labels_) label->setMinimumWidth(width);
}

void FormWindow::ShowDefaultButton(const QWidget* focus) {
  if (ok_ == nullptr) return;
  const bool other =
      qobject_cast<const QPushButton*>(focus) != nullptr && focus != ok_ && isAncestorOf(focus);
  ok_->setDefault(!other);
}

void FormWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    auto* focused = qobject_cast<QPushButton*>(QApplication::focusWidget());
    (focused != nullptr && isAncestorOf(focused) ? focused : ok_)->click();
  } else if (event->key() == Qt::Key_Escape) {
    cancel_->click();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void FormWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (isEnabled() && !DroppedFiles(*event).isEmpty()) event->acceptProposedAction();
}

void FormWindow::dropEvent(QDropEvent* event) {
  if (!isEnabled()) return;
  event->acceptProposedAction();
  // Later, so that the program that the file comes from needn't wait for questions asked here.
  QTimer::singleShot(0, this,
                     [this, files = DroppedFiles(*event), place = event->position().toPoint()] {
                       TakeDropped(files, place);
                     });
}

void FormWindow::TakeDropped(const QStringList& files, QPoint place) {
  if (files.size() != 1) {
    Run([this] { desktop_.ShowMessage({kOneFile, MessageIcon::kExclamation}); });
    return;
  }
  if (const PathTarget* target = TargetOf(files.front(), place)) {
    TakeFile(*target, files.front().toStdString());
    return;
  }
  std::set<std::string> endings;
  for (const PathTarget& target : targets_) endings.insert(std::string(".") + target.extension);
  std::string text =
      FromUtf8(files.front().toStdString()) + " can't be dropped here. This dialog takes";
  for (const std::string& ending : endings)
    text += (ending == *endings.begin() ? " " : ", ") + ending;
  Run([&] { desktop_.ShowMessage({text + ".", MessageIcon::kExclamation}); });
}

// A file of a kind that no box takes goes where it was dropped, which tells so.
const FormWindow::PathTarget* FormWindow::TargetOf(const QString& file, QPoint place) const {
  const QWidget* under = childAt(place);
  const PathTarget* dropped = nullptr;
  const PathTarget* front = nullptr;
  const PathTarget* hidden = nullptr;
  for (const PathTarget& target : targets_) {
    const bool takes = HasExtension(file.toStdString(), target.extension);
    if (under != nullptr && (under == target.field || target.field->isAncestorOf(under))) {
      if (takes) return &target;
      dropped = &target;
    } else if (takes && target.field->isVisible()) {
      front = front != nullptr ? front : &target;
    } else if (takes) {
      hidden = hidden != nullptr ? hidden : &target;
    }
  }
  if (front != nullptr) return front;
  return hidden != nullptr ? hidden : dropped;
}

void FormWindow::TakeFile(const PathTarget& target, const std::string& file) {
  if (!form_.IsVisible()) return;
  ShowTabOf(*target.field);
  desktop_.RunWithFileName(form_, file, target.browse);
  Draw();
}

void FormWindow::ShowTabOf(const QWidget& field) {
  for (int tab = 0; tab < tabs_->count(); ++tab) {
    if (tabs_->widget(tab)->isAncestorOf(&field)) tabs_->setCurrentIndex(tab);
  }
}

void FormWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  Run([this] { form_.Unload(); });
}

void FormWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) AlignLabels();
  QWidget::changeEvent(event);
}

void ConnectChoice(QComboBox* widget, const std::function<void(std::size_t row)>& choose) {
  QObject::connect(widget, &QComboBox::activated, widget,
                   [choose](int row) { choose(static_cast<std::size_t>(row)); });
}

void DrawComboBox(QComboBox* widget, const ComboBox& box) {
  const QSignalBlocker quiet(widget);
  QStringList names;
  for (const ComboBox::Entry& entry : box.entries) names += ToQt(entry.name);
  QStringList shown;
  for (int i = 0; i < widget->count(); ++i) shown += widget->itemText(i);
  if (names != shown) {
    widget->clear();
    widget->addItems(names);
  }
  widget->setCurrentIndex(box.listIndex ? static_cast<int>(*box.listIndex) : -1);
  widget->setEnabled(box.enabled);
  widget->setVisible(box.visible);
}

}  // namespace merivane::desktop
