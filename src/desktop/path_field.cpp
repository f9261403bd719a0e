#include "path_field.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <limits>

#include "qt_text.h"
#include "recent_button.h"

namespace merivane::desktop {

namespace {

constexpr int kVisibleCharacters = 52;
constexpr int kLeastVisible = 16;

}  // namespace

PathField::PathField(const QString& form, const char* editName, const char* buttonName,
                     const QString& accessibleName)
    : edit_(new QLineEdit),
      button_(new QPushButton("...")),
      recent_(new RecentButton(form + '.' + editName, accessibleName)) {
  edit_->setObjectName(editName);
  edit_->setAccessibleName(accessibleName);
  edit_->setAcceptDrops(false);  // the window takes them
  edit_->setMinimumWidth(edit_->fontMetrics().averageCharWidth() * kLeastVisible);
  edit_->setMaxLength(std::numeric_limits<int>::max());
  connect(edit_, &QLineEdit::textChanged, this, &PathField::DropLineBreaks);
  button_->setObjectName(buttonName);
  button_->setAccessibleName("Browse: " + accessibleName);
  button_->setToolTip("Browse");
  button_->setMaximumWidth(button_->fontMetrics().horizontalAdvance("......") * 2);
  recent_->setObjectName(QString(buttonName) + "_recent");
  recent_->OpenFrom(*edit_);
  recent_->OpenFrom(*button_);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->addWidget(edit_, 1);
  row->addWidget(button_);
  row->addWidget(recent_);
}

QSize PathField::sizeHint() const {
  const int more =
      edit_->fontMetrics().averageCharWidth() * kVisibleCharacters - edit_->sizeHint().width();
  return QWidget::sizeHint() + QSize(more, 0);
}

// A copied name often ends in one.
void PathField::DropLineBreaks(const QString& text) {
  static const QRegularExpression lineBreak("[\\r\\n\\x{2028}\\x{2029}]");
  if (text.contains(lineBreak)) edit_->setText(QString(text).remove(lineBreak).trimmed());
}

void PathField::Draw(const TextBox& box) {
  const QString text = PathToQt(box.text);
  if (edit_->text() != text) {
    edit_->setText(text);
    edit_->end(false);
  }
  edit_->setToolTip(text);
  edit_->setEnabled(box.enabled);
}

}  // namespace merivane::desktop
