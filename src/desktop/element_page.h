// What is known of the element that is chosen.
#pragma once

#include <QTextBrowser>
#include <functional>

#include "workbench/file_view.h"

namespace merivane::desktop {

using namespace workbench;

class ElementPage : public QTextBrowser {
 public:
  ElementPage();

  void Show(const Element& element);

  // The user wants to see the line in the text.
  std::function<void(std::size_t line)> OnOpen;

 private:
  std::size_t line_ = 0;
};

}  // namespace merivane::desktop
