// What is left, by whichever way, takes no key, no click, no drop and no shortcut.
#include "desktop_fixture.h"

namespace merivane::test {

namespace {

class LeftWindow : public DesktopTest {
 protected:
  void ExpectNothing(QWidget& form, const Form& state, const char* box, const char* browse) {
    Press(Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_A, Qt::Key_Down, Qt::Key_Escape);
    Press(Qt::Key_Tab, Qt::CTRL | Qt::Key_F4);
    User::Click(form, "cmdOK");
    User::Click(form, browse);
    QTest::keyClick(&User::Find(form, "cmdOK"), Qt::Key_Return);
    EXPECT_FALSE(User::Find(form, box).isEnabled());  // so it gets no drop either
    EXPECT_FALSE(form.isVisible() || state.IsLoaded());
    EXPECT_FALSE(form.isAncestorOf(QApplication::focusWidget()));
    EXPECT_EQ(TextOf(form, box), "");
    EXPECT_EQ(names.names.size(), 1U);  // no file dialog asked for it
  }
};

TEST_F(LeftWindow, TakesNothingWhicheverWayItWasLeft) {
  const std::pair<const char*, std::function<void(QWidget&)>> ways[] = {
      {"Escape", [this](QWidget&) { Press(Qt::Key_Escape); }},
      {"Cancel clicked", [](QWidget& form) { User::Click(form, "cmdCancel"); }},
      {"frame", [](QWidget& form) { form.parentWidget()->close(); }},
      {"key of the frame", [this](QWidget&) { Press(Qt::CTRL | Qt::Key_F4); }},
  };
  names.names = {"/never/asked.txt"};
  for (const auto& [name, leave] : ways) {
    SCOPED_TRACE(name);
    QWidget& out = OpenToProject();
    leave(out);
    ExpectNothing(out, main.modelToProject, "txtCelvarFilename", "cmdBrowseText");
    QWidget& back = OpenToModel();
    leave(back);
    ExpectNothing(back, main.projectToModel, "txtMPX", "cmdInterimDB");
  }
}

TEST_F(LeftWindow, ADropThatIsStillUnderWayIsForgotten) {
  QWidget& form = OpenToProject();
  User::Find(form, "txtCelvarFilename").setFocus();
  StartDrop(form, {1, 1}, {"/models/a.doc"});
  Press(Qt::Key_Escape);
  QTest::qWait(10);
}

TEST_F(LeftWindow, LettersChooseNothingInTheMenuThatWasLeft) {
  const std::pair<const char*, std::function<void()>> states[] = {
      {"nothing open yet", [] {}},
      {"a window open", [this] { OpenToProject(); }},
      {"a window left", [this] { Press(Qt::Key_Escape); }},
      {"a run behind it", [this] { MakePlan(); }}};
  for (const auto& [name, reach] : states) {
    SCOPED_TRACE(name);
    reach();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const QWidget* before = QApplication::focusWidget();
    const std::size_t asked = names.asked.size();
    Press(Qt::ALT | Qt::Key_V, Qt::Key_D);
    EXPECT_EQ(names.asked.size(), asked + 1);
    EXPECT_EQ(QApplication::focusWidget(), before);
    Press(Qt::Key_F, Qt::Key_E, Qt::Key_Space, Qt::Key_Return);
    EXPECT_EQ(ends, 0);
  }
  EXPECT_EQ(Boxes().size(), 1U);  // of Return in the window that was open
  EXPECT_THAT(desktop.opened, IsEmpty());
}

TEST_F(LeftWindow, SideDialogsAreGoneToo) {
  for (const auto& [item, dialog, button] :
       {std::tuple{"mnuPath", "frmOptions", "cmdOK"}, {"mnuAboutMerivane", "frmAbout", "cmdOk"}}) {
    SCOPED_TRACE(dialog);
    QWidget& shown = Open(item, dialog);
    QTest::keyClick(shown.windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(shown.isVisible());
    User::Click(Open(item, dialog), button);
    EXPECT_FALSE(shown.isVisible());
  }
}

}  // namespace
}  // namespace merivane::test
