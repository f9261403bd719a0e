#include "merge_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "desktop/qt_desktop.h"
#include "form_window.h"
#include "help_context.h"

namespace merivane::desktop {

namespace {

// An arrow key chooses what it moves to, also while nothing is chosen yet.
class OptionButton : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    QRadioButton::keyPressEvent(event);
    auto* now = qobject_cast<QRadioButton*>(parentWidget()->focusWidget());
    if (now != nullptr && now != this && !now->isChecked()) now->click();
  }
};

}  // namespace

MergeDialog::MergeDialog(frmDBMerge& form, QtDesktop& desktop, QWidget* parent)
    : ModalDialog(form, desktop, parent),
      form_(form),
      overwrite_(new OptionButton("Overwrite")),
      merge_(new OptionButton("Round trip merge")),
      complete_(new QCheckBox("Complete: keep everything that the plan holds")),
      label_(new QLabel("Select Project to Merge:")),
      projects_(new QComboBox) {
  setObjectName("frmDBMerge");
  setWindowTitle("Interim DB Creating Options");
  SetHelpContext(this, frmDBMerge::kHelpContextId);
  label_->setObjectName("LabSelProj");
  label_->setBuddy(projects_);
  projects_->setObjectName("comboInterimProject");
  projects_->setAccessibleName("Select Project to Merge");
  projects_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  for (QWidget* hides : {static_cast<QWidget*>(label_), static_cast<QWidget*>(projects_)}) {
    QSizePolicy policy = hides->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    hides->setSizePolicy(policy);
  }
  auto* projectRow = new QHBoxLayout;
  projectRow->addWidget(label_);
  projectRow->addWidget(projects_, 1);
  auto* column = new QVBoxLayout(this);
  column->addWidget(MakeOptions());
  column->addLayout(projectRow);
  column->addStretch();
  column->addLayout(MakeButtons());
  ConnectChoice(projects_, [this](std::size_t row) {
    Run([this, row] {
      form_.comboInterimProject.listIndex = row;
      form_.comboInterimProject_Click();
    });
  });
  Draw();
}

QWidget* MergeDialog::MakeOptions() {
  auto* frame = new QGroupBox("This database already exists.  Do you want to overwrite or merge?");
  frame->setObjectName("fraOptions");
  auto* column = new QVBoxLayout(frame);
  overwrite_->setObjectName("OptOverwrite");
  merge_->setObjectName("OptMerge");
  for (QRadioButton* option : {overwrite_, merge_}) {
    option->setAccessibleName(option->text());
  }
  complete_->setObjectName("chkComplete");
  complete_->setAccessibleName(complete_->text());
  auto* mergeRow = new QHBoxLayout;
  mergeRow->addWidget(merge_);
  mergeRow->addWidget(complete_, 1);
  column->addWidget(overwrite_);
  column->addLayout(mergeRow);
  connect(overwrite_, &QRadioButton::toggled, this, [this](bool set) {
    if (set) Run([this] { form_.OptOverwrite(); });
  });
  connect(merge_, &QRadioButton::toggled, this, [this](bool set) {
    if (set) Run([this] { form_.OptMerge(); });
  });
  connect(complete_, &QCheckBox::toggled, this,
          [this](bool set) { Run([this, set] { form_.ChkComplete = set; }); });
  return frame;
}

QLayout* MergeDialog::MakeButtons() {
  auto* row = new QHBoxLayout;
  row->addStretch();
  QPushButton* ok = AddButton("CmdOK", "Ok", [this] { form_.CmdOK(); });
  ok->setDefault(true);
  row->addWidget(ok);
  row->addWidget(AddButton("CmdCancel", "Cancel", [this] { form_.CmdCancel(); }));
  auto* help = new QPushButton("Help");
  help->setObjectName("cmdHelp6");
  help->setAccessibleName("Help");
  SetHelpContext(help, frmDBMerge::kHelpButtonContextId);
  connect(help, &QPushButton::clicked, this, [this, help] { desktop_.RequestHelp(help); });
  row->addWidget(help);
  return row;
}

void MergeDialog::Draw() {
  const QSignalBlocker quietOverwrite(overwrite_);
  const QSignalBlocker quietMerge(merge_);
  const QSignalBlocker quietComplete(complete_);
  if (form_.OptOverwriteSet) overwrite_->setChecked(true);
  if (form_.OptMergeSet) merge_->setChecked(true);
  complete_->setChecked(form_.ChkComplete);
  complete_->setEnabled(form_.OptMergeSet);
  label_->setVisible(form_.LabSelProjVisible);
  DrawComboBox(projects_, form_.comboInterimProject);
}

void MergeDialog::Escape() {
  Run([this] { form_.CmdCancel(); });
}

}  // namespace merivane::desktop
