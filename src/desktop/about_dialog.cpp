#include "about_dialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "program_picture.h"

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
