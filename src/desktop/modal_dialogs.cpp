#include "modal_dialogs.h"

#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <string>

#include "desktop/qt_desktop.h"
#include "help_context.h"
#include "merge_dialog.h"
#include "qt_text.h"
#include "shell/modal_forms.h"
#include "translator/multi.h"

namespace merivane::desktop {

ModalDialog::ModalDialog(ModalForm& form, QtDesktop& desktop, QWidget* parent)
    : QDialog(parent), desktop_(desktop), form_(form) {}

void ModalDialog::Run(const std::function<void()>& handler) {
  if (!form_.IsLoaded()) return;
  desktop_.Run(handler);
  if (desktop_.Ended()) return;
  Draw();
  if (!form_.IsLoaded()) accept();
}

QPushButton* ModalDialog::AddButton(const char* name, const char* caption,
                                    const std::function<void()>& click) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAccessibleName(QString(caption).remove('&'));
  connect(button, &QPushButton::clicked, this, [this, click] { Run(click); });
  return button;
}

void ModalDialog::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    Escape();
  } else {
    QDialog::keyPressEvent(event);
  }
}

void ModalDialog::closeEvent(QCloseEvent* event) {
  event->ignore();
  Run([this] { form_.Unload(); });
}

namespace {

// Getting the focus chooses nothing, so the first arrow key chooses the first entry.
class ChoiceList : public QListWidget {
 protected:
  void focusInEvent(QFocusEvent* event) override {
    QListWidget::focusInEvent(event);
    if (selectedItems().isEmpty()) selectionModel()->clearCurrentIndex();
  }
};

QLabel* MakeLabel(const char* name, const std::string& text) {
  auto* label = new QLabel(ToQt(text));
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  return label;
}

// Asks whether an existing database is overwritten or gets a further project.
class AppendDialog : public ModalDialog {
 public:
  AppendDialog(frmDbFileAppend& form, QtDesktop& desktop, QWidget* parent);

 protected:
  void Escape() override {}  // there is no Cancel: the question wants an answer
};

AppendDialog::AppendDialog(frmDbFileAppend& form, QtDesktop& desktop, QWidget* parent)
    : ModalDialog(form, desktop, parent) {
  setObjectName("frmDbFileAppend");
  setWindowTitle("Database Create Options");
  SetHelpContext(this, frmDbFileAppend::kHelpContextId);
  auto* question = new QLabel("Selected Database Exists.  Overwriting or Appending?");
  question->setObjectName("Label1");
  auto* file = new ElidedLabel(PathToQt(form.FileName));
  file->setObjectName("fileName");
  file->setTextFormat(Qt::PlainText);
  file->setToolTip(file->text());
  file->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  file->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(AddButton("CmdAppend", "Append", [&form] { form.CmdAppend(); }));
  buttons->addWidget(AddButton("CmdOverwrite", "Overwrite", [&form] { form.CmdOverwrite(); }));
  buttons->addStretch();
  auto* column = new QVBoxLayout(this);
  column->setSpacing(column->spacing() * 2);
  column->addWidget(question);
  column->addWidget(file);
  column->addLayout(buttons);
}

// Asks for one of several scenarios or decompositions.
class ChooserDialog : public ModalDialog {
 public:
  ChooserDialog(multi& form, QtDesktop& desktop, QWidget* parent);

 protected:
  void Escape() override;

 private:
  QListWidget* MakeList();
  QLayout* MakeButtons();
  void ChooseReady(QListWidget& list, const std::string& name);

  multi& form_;
};

ChooserDialog::ChooserDialog(multi& form, QtDesktop& desktop, QWidget* parent)
    : ModalDialog(form, desktop, parent), form_(form) {
  setObjectName("multi");
  setWindowTitle("Select Scenario");
  if (form.HelpFile.empty()) {
    SetHelpContext(this, multi::kHelpContextId);
  } else {
    SetHelpFile(this, PathToQt(form.HelpFile));
  }
  QListWidget* list = MakeList();
  QLabel* task = MakeLabel("Label2", form.Label2);
  task->setBuddy(list);
  auto* line = new QFrame;
  line->setObjectName("Line1");
  line->setFrameStyle(QFrame::HLine | QFrame::Sunken);
  auto* column = new QVBoxLayout(this);
  column->addWidget(MakeLabel("Label1", form.Label1));
  column->addWidget(task);
  column->addWidget(list, 1);
  column->addWidget(line);
  column->addLayout(MakeButtons());
  list->setFocus();
  ChooseReady(*list, desktop.TakeReadyChoice(form.Label1 + ' ' + form.Label2));
}

void ChooserDialog::ChooseReady(QListWidget& list, const std::string& name) {
  const auto ready = std::find(form_.List1.begin(), form_.List1.end(), name);
  if (ready == form_.List1.end()) return;
  list.setCurrentRow(static_cast<int>(ready - form_.List1.begin()));
}

QListWidget* ChooserDialog::MakeList() {
  auto* list = new ChoiceList;
  list->setObjectName("List1");
  list->setAccessibleName(ToQt(form_.Label2));
  list->setTextElideMode(Qt::ElideMiddle);
  for (const std::string& name : form_.List1) list->addItem(ToQt(name));
  const int character = list->fontMetrics().averageCharWidth();
  list->setMinimumWidth(character * 50);
  connect(list, &QListWidget::itemSelectionChanged, this, [this, list] {
    form_.ListIndex.reset();
    if (!list->selectedItems().isEmpty()) {
      form_.ListIndex = static_cast<std::size_t>(list->row(list->selectedItems().first()));
    }
  });
  connect(list, &QListWidget::itemDoubleClicked, this,
          [this] { Run([this] { form_.List1DblClick(); }); });
  return list;
}

QLayout* ChooserDialog::MakeButtons() {
  auto* row = new QHBoxLayout;
  row->addStretch();
  QPushButton* ok = AddButton("Command1", "&Ok", [this] { form_.Command1(); });
  ok->setDefault(true);
  row->addWidget(ok);
  row->addWidget(AddButton("Command2", "&Cancel", [this] { form_.Command2(); }));
  return row;
}

void ChooserDialog::Escape() {
  Run([this] { form_.Command2(); });
}

}  // namespace

std::unique_ptr<QDialog> MakeModalDialog(ModalForm& form, QtDesktop& desktop, QWidget* parent) {
  using Dialog = std::unique_ptr<QDialog>;
  return std::visit(ForEach{[&](frmDbFileAppend* append) -> Dialog {
                              return std::make_unique<AppendDialog>(*append, desktop, parent);
                            },
                            [&](frmDBMerge* merge) -> Dialog {
                              return std::make_unique<MergeDialog>(*merge, desktop, parent);
                            },
                            [&](multi* chooser) -> Dialog {
                              return std::make_unique<ChooserDialog>(*chooser, desktop, parent);
                            }},
                    AsAny(form));
}

}  // namespace merivane::desktop
