#include "path_field.h"

#include <QDir>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <limits>

#include "qt_text.h"

namespace merivane::desktop {

namespace {

constexpr qsizetype kMostNames = 5;
constexpr int kMostCharacters = 70;

// "&1  .../models/bakery.txt": a digit chooses it.
QString EntryOf(qsizetype place, const QString& name, const QFontMetrics& metrics) {
  const QString shown = metrics.elidedText(QDir::toNativeSeparators(name), Qt::ElideMiddle,
                                           metrics.averageCharWidth() * kMostCharacters);
  return QString("&%1  ").arg(place) + QString(shown).replace('&', "&&");
}

constexpr int kVisibleCharacters = 52;
constexpr int kLeastVisible = 16;

}  // namespace

RecentButton::RecentButton(const QString& key, const QString& accessibleName)
    : files_(key, kMostNames), menu_(new QMenu(this)) {
  setArrowType(Qt::DownArrow);
  setAutoRaise(true);
  setFocusPolicy(Qt::NoFocus);
  setAccessibleName("Files taken last: " + accessibleName);
  setToolTip("Files taken last (Alt+Down)");
  menu_->setObjectName("recentFiles");
  menu_->setToolTipsVisible(true);
  connect(this, &QToolButton::clicked, this, &RecentButton::Open);
  Sync();
}

void RecentButton::Took(const QString& name) {
  if (!name.isEmpty()) files_.Add(name);
  Sync();
}

// Another window may have forgotten them.
void RecentButton::showEvent(QShowEvent* event) {
  Sync();
  QToolButton::showEvent(event);
}

void RecentButton::Sync() { setEnabled(!files_.Names().isEmpty()); }

void RecentButton::OpenFrom(QWidget& widget) { widget.installEventFilter(this); }

bool RecentButton::eventFilter(QObject* /*object*/, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  if (key->key() != Qt::Key_Down || !key->modifiers().testFlag(Qt::AltModifier)) return false;
  Open();
  return true;
}

void RecentButton::Open() {
  const QStringList names = files_.Names();
  if (names.isEmpty()) return;
  menu_->clear();
  for (qsizetype i = 0; i < names.size(); ++i) {
    const QString& name = names[i];
    QAction* entry = menu_->addAction(EntryOf(i + 1, name, fontMetrics()));
    entry->setToolTip(name);
    connect(entry, &QAction::triggered, this, [this, name] {
      if (OnPick) OnPick(name);
    });
  }
  menu_->setActiveAction(menu_->actions().front());
  menu_->popup(mapToGlobal(rect().bottomLeft()));
}

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
