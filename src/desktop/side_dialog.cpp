#include "side_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "help_context.h"
#include "program_picture.h"
#include "qt_text.h"

namespace merivane::desktop {

namespace {

QLabel* MakeText() {
  auto* text = new QLabel(QStringLiteral("<h2>Merivane</h2><p>Version %1</p>"
                                         "<p>Translates between IDEF3 process models<br>"
                                         "and project plans, both ways.</p>")
                              .arg(QLatin1String(MERIVANE_VERSION)));
  text->setTextFormat(Qt::RichText);
  return text;
}

}  // namespace

SideDialog::SideDialog(Form& form, QtDesktop& desktop, QWidget* parent)
    : QDialog(parent), desktop_(desktop), form_(form) {
  form_.OnChange = [this] { Sync(); };
}

SideDialog::~SideDialog() { form_.OnChange = nullptr; }

void SideDialog::Sync() {
  Draw();
  if (form_.IsVisible()) {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
  } else {
    hide();
  }
}

void SideDialog::reject() {
  Run([this] { form_.Unload(); });
}

QPushButton* SideDialog::AddButton(const char* name, const char* caption) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(name);
  button->setAccessibleName(caption);
  return button;
}

QPushButton* SideDialog::AddHelpButton(const char* name, const char* caption, int helpContext) {
  QPushButton* button = AddButton(name, caption);
  SetHelpContext(button, helpContext);
  connect(button, &QPushButton::clicked, this, [this, button] { desktop_.RequestHelp(button); });
  return button;
}

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

AboutDialog::AboutDialog(frmAbout& form, QtDesktop& desktop, QWidget* parent)
    : SideDialog(form, desktop, parent) {
  setObjectName("frmAbout");
  setWindowTitle("About Merivane");
  QPushButton* ok = AddButton("cmdOk", "OK");
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, [this, &form] { Run([&form] { form.cmdOk(); }); });
  const int side = fontMetrics().height() * 8;
  auto* middle = new QHBoxLayout;
  middle->setSpacing(fontMetrics().height());
  middle->addWidget(new ProgramPicture({side, side}));
  middle->addWidget(MakeText(), 1);
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(ok);
  row->addWidget(AddHelpButton("cmdTech", "Tech. Support", frmAbout::kTechContextId));
  auto* column = new QVBoxLayout(this);
  column->setSizeConstraint(QLayout::SetFixedSize);
  column->addLayout(middle);
  column->addLayout(row);
}

}  // namespace merivane::desktop
