// The outline of an opened file, with a box that searches all of it, and what is known of the
// element that is chosen in it.
#pragma once

#include <QTextBrowser>
#include <QWidget>
#include <functional>
#include <vector>

#include "workbench/file_view.h"

class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace merivane::desktop {

using namespace workbench;

class OutlineTree : public QWidget {
 public:
  OutlineTree();

  // Shows the elements, all of them open; none is chosen.
  void Show(const std::vector<Element>& elements);
  // Chooses one of them and tells nobody.
  void Choose(std::size_t element);

  QTreeWidget& Tree() { return *tree_; }
  QLineEdit& Search() { return *search_; }

  // The user chose one.
  std::function<void(std::size_t element)> OnChosen;

 private:
  std::size_t BehindChosen() const;  // the first element where none is chosen
  // Chooses the next element that holds the text of the search, that one or any behind it.
  void FindFrom(std::size_t element);

  QLineEdit* search_;
  QTreeWidget* tree_;
  std::vector<QTreeWidgetItem*> items_;  // of each element
};

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
