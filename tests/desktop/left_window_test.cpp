// What is left, by whichever way, takes no key, no click, no drop and no shortcut.
#include "desktop_fixture.h"

namespace merivane::test {

namespace {

class LeftWindow : public DesktopTest {
 protected:
  void Type(Qt::Key key, Qt::KeyboardModifiers with = Qt::NoModifier) {
    QTest::keyClick(window.windowHandle(), key, with);  // goes where the focus is
  }
  void TryEverything(QWidget& form, const char* box, const char* browse) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_A, Qt::Key_Down,
                              Qt::Key_Escape, Qt::Key_Tab}) {
      Type(key);
    }
    Type(Qt::Key_F4, Qt::ControlModifier);
    User::Click(form, "cmdOK");
    User::Click(form, browse);
    QTest::keyClick(&User::Find(form, "cmdOK"), Qt::Key_Return);
    EXPECT_FALSE(User::Find(form, box).isEnabled());  // so it gets no drop either
  }
  void ExpectNothing(QWidget& form, const Form& state, const char* box) {
    EXPECT_FALSE(form.isVisible() || state.IsLoaded());
    EXPECT_FALSE(form.isAncestorOf(QApplication::focusWidget()));
    EXPECT_EQ(TextOf(form, box), "");
    EXPECT_EQ(names.names.size(), 1U);  // no file dialog asked for it
    EXPECT_THAT(user.boxes, IsEmpty());
  }
};

TEST_F(LeftWindow, TakesNothingWhicheverWayItWasLeft) {
  const std::pair<const char*, std::function<void(QWidget&)>> ways[] = {
      {"Escape", [this](QWidget&) { Type(Qt::Key_Escape); }},
      {"Cancel clicked", [](QWidget& form) { User::Click(form, "cmdCancel"); }},
      {"Cancel by key",
       [this](QWidget& form) {
         User::Find(form, "cmdCancel").setFocus();
         Type(Qt::Key_Return);
       }},
      {"frame", [](QWidget& form) { form.parentWidget()->close(); }},
      {"key of the frame", [this](QWidget&) { Type(Qt::Key_F4, Qt::ControlModifier); }},
  };
  names.names = {"/never/asked.txt"};
  for (const auto& [name, leave] : ways) {
    SCOPED_TRACE(name);
    QWidget& out = OpenToProject();
    leave(out);
    TryEverything(out, "txtCelvarFilename", "cmdBrowseText");
    ExpectNothing(out, main.modelToProject, "txtCelvarFilename");
    QWidget& model = OpenToModel();
    leave(model);
    TryEverything(model, "txtMPX", "cmdInterimDB");
    ExpectNothing(model, main.projectToModel, "txtMPX");
  }
}

TEST_F(LeftWindow, TakesNothingBehindARun) {
  MakePlan();
  QWidget& form = User::Find(window, "frmIDEF3ToProject");
  std::filesystem::rename(mpx, folder.Path("old.mpx"));
  Type(Qt::Key_Return);
  User::Click(form, "cmdOK");
  EXPECT_FALSE(std::filesystem::exists(mpx));
  EXPECT_THAT(user.boxes, IsEmpty());
}

TEST_F(LeftWindow, ADropThatIsStillUnderWayIsForgotten) {
  QWidget& form = OpenToProject();
  User::Find(form, "txtCelvarFilename").setFocus();
  StartDrop(form, "txtCelvarFilename", "/models/a.doc");
  Type(Qt::Key_Escape);
  QTest::qWait(10);
  EXPECT_THAT(user.boxes, IsEmpty());
}

TEST_F(LeftWindow, LettersChooseNothingInTheMenuThatWasLeft) {
  const std::pair<const char*, std::function<void()>> states[] = {
      {"nothing open yet", [] {}},
      {"a window open", [this] { OpenToProject(); }},
      {"a window left", [this] { Type(Qt::Key_Escape); }},
      {"a run behind it", [this] { MakePlan(); }}};
  for (const auto& [name, reach] : states) {
    SCOPED_TRACE(name);
    reach();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const QWidget* before = QApplication::focusWidget();
    const std::size_t asked = names.asked.size();
    Type(Qt::Key_V, Qt::AltModifier);
    Type(Qt::Key_D);
    EXPECT_EQ(names.asked.size(), asked + 1);
    EXPECT_EQ(QApplication::focusWidget(), before);
    for (const Qt::Key key : {Qt::Key_F, Qt::Key_E, Qt::Key_Space, Qt::Key_Return}) Type(key);
    EXPECT_EQ(ends, 0);
  }
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
