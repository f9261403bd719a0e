#include "program_picture.h"

#include <QPainter>
#include <QPixmap>
#include <QScreen>

#include "shell/frmMain.h"

namespace merivane::desktop {

QIcon ApplicationIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    PaintPicture(painter, pixmap.rect());
    painter.end();
    icon.addPixmap(pixmap);
  }
  return icon;
}

ProgramPicture::ProgramPicture(const QSize& size, QWidget* parent) : QWidget(parent) {
  setFixedSize(size);
  setAccessibleName("Merivane");
}

void ProgramPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  PaintPicture(painter, rect());
}

SplashWindow::SplashWindow(shell::frmSplash& form, QWidget* parent)
    : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint), form_(form) {
  setObjectName("frmSplash");
  setWindowTitle("About Merivane");
  const int line = fontMetrics().height();
  setFixedSize(line * 20, line * 18);
  auto* picture = new ProgramPicture({line * 9, line * 9}, this);
  picture->setObjectName("Image1");
  picture->move((width() - picture->width()) / 2, line * 2);
  form_.OnChange = [this] { Sync(); };
}

SplashWindow::~SplashWindow() { form_.OnChange = nullptr; }

void SplashWindow::Sync() {
  if (!form_.IsVisible()) {
    hide();
    return;
  }
  // The main window has no place yet: the system gives it one only after it is shown.
  move(parentWidget()->screen()->availableGeometry().center() - rect().center());
  show();
  raise();
  repaint();
}

void SplashWindow::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().base());
  painter.setPen(palette().color(QPalette::Mid));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  painter.setPen(palette().color(QPalette::Text));
  const int line = fontMetrics().height();
  QFont name = font();
  name.setPointSizeF(name.pointSizeF() * 2);
  name.setBold(true);
  painter.setFont(name);
  painter.drawText(QRect(0, line * 12, width(), line * 3), Qt::AlignCenter, "Merivane");
  painter.setFont(font());
  painter.drawText(QRect(0, line * 15, width(), line), Qt::AlignCenter,
                   QStringLiteral("Version %1").arg(QLatin1String(MERIVANE_VERSION)));
}

}  // namespace merivane::desktop
