#include "note_list.h"

#include <QAction>
#include <QKeyEvent>
#include <utility>

#include "qt_text.h"
#include "result_table.h"

namespace merivane::desktop {

namespace {

Look LookOfNote(const Note& note) {
  if (note.change) return LookOf(*note.change);
  switch (note.kind) {
    case Note::Kind::kError:
      return LookOf(Severity::kError);
    case Note::Kind::kWarning:
      return LookOf(Severity::kWarning);
    case Note::Kind::kNote:
      return LookOf(Severity::kNote);
    case Note::Kind::kLeftOut:
      break;
  }
  return {"left out", QColor(150, 150, 150)};
}

ResultModel* ModelOf(const std::vector<Note>& notes) {
  constexpr int kLineColumn = 1;
  std::vector<ResultModel::Row> rows;
  rows.reserve(notes.size());
  for (const Note& note : notes) {
    const Look look = LookOfNote(note);
    QString place = note.line == 0 ? "" : QString::number(note.line);
    if (note.row) place = QString::number(*note.row);
    rows.push_back({{look.word, place, ToQt(note.about), ToQt(note.sentence), ToQt(note.advice)},
                    look.colour});
  }
  if (!notes.empty() && notes.front().change) {
    return new ResultModel({"Change", "Row of the plan", "Element", "What happens", "What to do"},
                           std::move(rows), kLineColumn, nullptr);
  }
  return new ResultModel({"Kind", "Line", "Element", "Finding", "What to do"}, std::move(rows),
                         kLineColumn, nullptr);
}

}  // namespace

NoteList::NoteList(QtDesktop& desktop) : ResultList(ModelOf({}), desktop) {
  setObjectName("notes");
  setAccessibleName("Findings and what stays out");
  setWindowTitle("Findings and what stays out");
  setContextMenuPolicy(Qt::ActionsContextMenu);
  const auto add = [this](const char* name, const char* text, auto act) {
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    addAction(action);
    connect(action, &QAction::triggered, this, act);
    return action;
  };
  QAction* save = add("saveNotes", "Save the list...", [this] { Save(); });
  save->setShortcut(QKeySequence::Save);
  save->setShortcutContext(Qt::WidgetShortcut);
  add("printNotes", "Print the list...", [this] { Print(); });
  connect(this, &QTableView::clicked, this,
          [this](const QModelIndex& index) { currentChanged(index, {}); });
}

void NoteList::Show(const std::vector<Note>& notes) {
  notes_.clear();
  SetRows(ModelOf(notes));
  notes_ = notes;
}

void NoteList::Choose(std::size_t element) {
  std::vector<int> rows;
  for (std::size_t row = 0; row < notes_.size(); ++row) {
    if (notes_[row].element == element) rows.push_back(static_cast<int>(row));
  }
  const Note* current = Current();
  const bool isChosen = selectionModel()->isSelected(currentIndex());
  if (isChosen && current != nullptr && current->element == element) return;
  ChooseRows(rows);
}

const Note* NoteList::Current() const {
  const int row = CurrentRow();
  if (row < 0 || static_cast<std::size_t>(row) >= notes_.size()) return nullptr;
  return &notes_[static_cast<std::size_t>(row)];
}

void NoteList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  const Note* note = Current();
  if (note != nullptr && note->element && hasFocus() && OnChosen) OnChosen(*note->element);
}

void NoteList::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const Note* note = Current();
  if (enter && note != nullptr && note->line > 0 && OnOpen) {
    OnOpen(note->line);
  } else {
    ResultList::keyPressEvent(event);
  }
}

}  // namespace merivane::desktop
