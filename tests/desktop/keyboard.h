// The way of the keyboard through a window.
#pragma once

#include <QApplication>
#include <QTest>
#include <QWidget>
#include <string>

namespace merivane::test {

inline std::string NameOf(const QWidget* widget) {
  for (; widget != nullptr; widget = widget->parentWidget()) {
    const QString name = widget->objectName();
    if (!name.isEmpty() && !name.startsWith("qt_")) return name.toStdString();
  }
  return "";
}

// Names of the controls that Tab reaches, from the first one until it comes round.
inline std::string TabOrder(QWidget& form) {
  form.window()->activateWindow();
  auto* first = form.findChild<QWidget*>("txtCelvarFilename");
  first->setFocus();
  std::string order;
  constexpr int kMost = 40;
  for (int i = 0; i < kMost && (i == 0 || QApplication::focusWidget() != first); ++i) {
    order += NameOf(QApplication::focusWidget()) + " ";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  return order;
}

}  // namespace merivane::test
