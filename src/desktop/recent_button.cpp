#include "recent_button.h"

#include <QDir>
#include <QKeyEvent>
#include <QMenu>

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

}  // namespace merivane::desktop
