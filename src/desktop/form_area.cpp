#include "form_area.h"

#include <QEvent>
#include <QMdiSubWindow>
#include <QPainter>
#include <QSettings>
#include <QSignalBlocker>
#include <QTabBar>
#include <QTimer>

#include "program_picture.h"

namespace merivane::desktop {

namespace {

constexpr const char* kTabsKey = "area/tabs";

}  // namespace

FormArea::FormArea() {
  setObjectName("formArea");
  setFocusPolicy(Qt::ClickFocus);
  setBackground(QBrush(Qt::NoBrush));
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  TakeView(QSettings().value(kTabsKey).toBool() ? TabbedView : SubWindowView);
}

void FormArea::UseView(ViewMode view) {
  TakeView(view);
  QSettings().setValue(kTabsKey, HasTabs());
}

void FormArea::TakeView(ViewMode view) {
  const bool tabs = view == TabbedView;
  setOption(DontMaximizeSubWindowOnActivation);  // nor is a hidden one shown
  setViewMode(view);
  setOption(DontMaximizeSubWindowOnActivation, !tabs);  // in its frame a dialog keeps its size
  QMdiSubWindow* current = currentSubWindow();
  if (tabs && current != nullptr && !current->isHidden()) current->showMaximized();
  setDocumentMode(tabs);
  setTabsClosable(tabs);
  setTabsMovable(tabs);
  ShowTabs();
}

// A dialog that isn't loaded lies in the area, hidden, and has no tab. The window before it comes
// to the front then.
void FormArea::ShowTabs() {
  auto* bar = findChild<QTabBar*>({}, Qt::FindDirectChildrenOnly);
  if (bar == nullptr) return;
  bar->setAccessibleName("Windows");
  QMdiSubWindow* front = nullptr;
  for (QMdiSubWindow* frame : subWindowList(ActivationHistoryOrder)) {
    if (!frame->isHidden()) front = frame;
  }
  {
    const QSignalBlocker silence(bar);  // the bar would show the hidden window beside one that goes
    const QList<QMdiSubWindow*> frames = subWindowList(CreationOrder);
    for (int at = 0; at < frames.size(); ++at) bar->setTabVisible(at, !frames[at]->isHidden());
    bar->setCurrentIndex(static_cast<int>(frames.indexOf(front)));
  }
  if (front != nullptr) setActiveSubWindow(front);
}

bool FormArea::eventFilter(QObject* object, QEvent* event) {
  const bool isHandled = QMdiArea::eventFilter(object, event);
  const bool isFrame = dynamic_cast<QMdiSubWindow*>(object) != nullptr;
  const bool isShown = event->type() == QEvent::Show || event->type() == QEvent::Hide;
  // Behind the event: a tab that goes shows another window.
  if (isFrame && isShown) QTimer::singleShot(0, this, &FormArea::ShowTabs);
  return isHandled;
}

void FormArea::paintEvent(QPaintEvent* /*event*/) {
  constexpr qreal kFaint = 0.16;
  QPainter painter(viewport());
  const QRectF place = viewport()->rect();
  painter.fillRect(place, palette().color(QPalette::Window).darker(108));
  const qreal side = qMin(place.width(), place.height()) / 3;
  painter.setOpacity(kFaint);
  PaintPicture(painter, QRectF(place.center() - QPointF(side, side) / 2, QSizeF(side, side)));
}

}  // namespace merivane::desktop
