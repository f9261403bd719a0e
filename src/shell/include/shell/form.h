// Forms as plain state and handlers; the desktop program draws them and passes events on.
//
//   frmMain main(program);
//   main.mnuIDEF3ToProject();                              // as its menu item does
//   main.modelToProject.txtCelvarFilename.text = "model.txt";
//   main.modelToProject.cmdOK();                           // as its button does
//   if (main.modelToProject.GenerateResult == true) ...
//
// Controls and handlers bear the names of the form's design. Whatever a handler asks of the user it
// asks of the program's Desktop, so that a form works without a screen. Handlers guard their
// run-time errors as told at each; ProgramEnd and RunCancelled pass through them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop.h"

namespace merivane::shell {

using namespace platform;

struct TextBox {
  std::string text = {};  // UTF-8 where it is a path
  bool enabled = true;
};

struct CheckBox {
  bool checked = false;
  bool enabled = true;
};

struct ComboBox {
  struct Entry {
    std::string name;  // Windows-1252
    std::int32_t itemData = 0;
  };
  std::vector<Entry> entries = {};
  std::optional<std::size_t> listIndex = {};  // nothing selected
  bool enabled = true;
  bool visible = true;

  // Selects the first entry with this number; False without one.
  bool Select(std::int32_t itemData) {
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [&](const Entry& e) { return e.itemData == itemData; });
    if (entry == entries.end()) return false;
    listIndex = static_cast<std::size_t>(entry - entries.begin());
    return true;
  }
};

// A modeless form: a single instance that exists from its first Show on. Its controls start anew
// each time it is loaded.
class Form {
 public:
  virtual ~Form() = default;

  void Show() {
    if (!loaded_) {
      loaded_ = true;
      Load();
    }
    visible_ = true;
    Changed();
  }
  void Hide() {
    visible_ = false;
    Changed();
  }
  void Unload() {
    loaded_ = visible_ = false;
    Changed();
  }
  bool IsLoaded() const { return loaded_; }
  bool IsVisible() const { return visible_; }

  // Called after the state changed; the drawing hangs here.
  std::function<void()> OnChange;

 protected:
  virtual void Load() {}
  void Changed() const {
    if (OnChange) OnChange();
  }

 private:
  bool loaded_ = false;
  bool visible_ = false;
};

}  // namespace merivane::shell
