#include "options_dialog.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "help_context.h"
#include "qt_text.h"

namespace merivane::desktop {

OptionsDialog::OptionsDialog(frmOptions& form, QtDesktop& desktop, QWidget* parent)
    : SideDialog(form, desktop, parent), form_(form), paths_(new QListWidget) {
  setObjectName("frmOptions");
  setWindowTitle("Application Paths");
  SetHelpContext(this, frmOptions::kHelpContextId);
  paths_->setObjectName("listPaths");
  paths_->setAccessibleName("Application Paths");
  paths_->setTextElideMode(Qt::ElideMiddle);
  paths_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const QFontMetrics metrics = paths_->fontMetrics();
  paths_->setMinimumSize(metrics.averageCharWidth() * 70, metrics.height() * 9);
  QPushButton* ok = AddButton("cmdOK", "OK");
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, [this] { Run([this] { form_.cmdOK(); }); });
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(ok);
  row->addWidget(AddHelpButton("cmdHelp4", "Help", frmOptions::kHelpButtonContextId));
  auto* column = new QVBoxLayout(this);
  column->addWidget(paths_, 1);
  column->addLayout(row);
  AddHiddenControls();
}

// Paths can't be edited here; the controls for it stay out of sight.
void OptionsDialog::AddHiddenControls() {
  AddButton("cmdCancel", "Cancel")->hide();
  for (const char* name : {"cmdBrowseCelvarPath", "cmdBrowseProjectPath"}) {
    AddButton(name, "...")->hide();
  }
  for (const char* name : {"txtCelvarPath", "txtMSProjectPath"}) {
    auto* box = new QLineEdit(this);
    box->setObjectName(name);
    box->hide();
  }
}

void OptionsDialog::Draw() {
  paths_->clear();
  for (const std::string& line : form_.listPaths) {
    auto* item = new QListWidgetItem(ToQt(line), paths_);
    item->setToolTip(ToQt(line).trimmed());
  }
}

}  // namespace merivane::desktop
