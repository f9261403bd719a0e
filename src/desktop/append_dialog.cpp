#include "append_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "elided_label.h"
#include "help_context.h"
#include "qt_text.h"

namespace merivane::desktop {

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

}  // namespace merivane::desktop
