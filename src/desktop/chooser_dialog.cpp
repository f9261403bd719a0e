#include "chooser_dialog.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "desktop/qt_desktop.h"
#include "help_context.h"
#include "qt_text.h"

namespace merivane::desktop {

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

}  // namespace

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

}  // namespace merivane::desktop
