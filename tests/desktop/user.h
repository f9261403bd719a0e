// Plays the user in real widgets: answers the dialogs that open while a click runs.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace merivane::test {

// Boxes are recorded and answered with their first button, or as `answers` tell. Any other dialog
// takes the next step of `steps`; one without a step is a failure and is closed.
class User : public QObject {
 public:
  User() { Wait(); }

  std::deque<QMessageBox::StandardButton> answers;
  std::deque<std::function<void(QDialog&)>> steps;
  std::vector<std::string> boxes;
  std::vector<std::string> advice;  // the second sentence of each box
  std::vector<QWidget*> parents;

  static QWidget& Find(QWidget& window, const char* name) {
    auto* widget = window.findChild<QWidget*>(name);
    if (widget == nullptr) throw std::runtime_error(std::string("no widget ") + name);
    return *widget;
  }
  template <typename Widget>
  static Widget& Get(QWidget& window, const char* name) {
    return dynamic_cast<Widget&>(Find(window, name));
  }
  static void Click(QWidget& window, const char* name) {
    QWidget& widget = Find(window, name);
    // A check box may be wider than the part that takes the click.
    const QPoint left(widget.height() / 2, widget.height() / 2);
    QTest::mouseClick(&widget, Qt::LeftButton, {}, left);
  }
  // Opens a list and takes its first row, by keyboard.
  static void Choose(QWidget& window, const char* name) {
    auto& list = Get<QComboBox>(window, name);
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Space);
    QAbstractItemView* rows = list.view();
    QTest::keyClick(rows, Qt::Key_Home);
    QTest::keyClick(rows, Qt::Key_Return);
    EXPECT_EQ(list.currentIndex(), 0);
  }
  // A step that clicks one button.
  static std::function<void(QDialog&)> Clicks(const char* name) {
    return [name](QDialog& dialog) { Click(dialog, name); };
  }

 private:
  void Wait() {
    QTimer::singleShot(1, this, [this] {
      Wait();
      Look();
    });
  }
  void Look() {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr || dialog == inHand_ || dialog->objectName() == "progress") return;
    QDialog* before = inHand_;
    inHand_ = dialog;
    connect(dialog, &QObject::destroyed, this, [this, dialog] {
      if (inHand_ == dialog) inHand_ = nullptr;
    });
    dialog->activateWindow();
    EXPECT_TRUE(QTest::qWaitFor([dialog] { return dialog->isActiveWindow(); }));
    if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
      Answer(*box);
      inHand_ = before;
    } else if (!steps.empty()) {
      const auto step = steps.front();
      steps.pop_front();
      step(*dialog);
    } else {
      ADD_FAILURE() << "nobody expects " << dialog->windowTitle().toStdString();
      dialog->close();
    }
  }
  void Answer(QMessageBox& box) {
    boxes.push_back(box.text().remove(QChar(0x200B)).toStdString());
    advice.push_back(box.informativeText().toStdString());
    parents.push_back(box.parentWidget());
    QFont bold = box.font();  // as frames draw their titles
    bold.setBold(true);
    EXPECT_GT(box.width(), QFontMetrics(bold).horizontalAdvance(box.windowTitle()) + 80);
    QAbstractButton* button = box.buttons().first();
    if (box.buttons().size() > 1 && !answers.empty()) {
      button = box.button(answers.front());
      answers.pop_front();
    }
    QTest::mouseClick(button, Qt::LeftButton);
  }

  QDialog* inHand_ = nullptr;
};

}  // namespace merivane::test
