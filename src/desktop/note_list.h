// Findings of an opened file, why units stay out of its plan, and the changes of a merge.
#pragma once

#include <functional>
#include <vector>

#include "result_list.h"
#include "workbench/file_view.h"

namespace merivane::desktop {

using namespace workbench;

class NoteList : public ResultList {
 public:
  explicit NoteList(QtDesktop& desktop);

  void Show(const std::vector<Note>& notes);
  // Marks the notes of an element, and tells nobody.
  void Choose(std::size_t element);

  // The user went to a note that has an element, and pressed Enter on one that has a line.
  std::function<void(std::size_t element)> OnChosen;
  std::function<void(std::size_t line)> OnOpen;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

 private:
  const Note* Current() const;

  std::vector<Note> notes_;
};

}  // namespace merivane::desktop
