#include "result_line.h"

#include <QFileInfo>
#include <QPushButton>
#include <QStatusBar>

#include "desktop/qt_desktop.h"
#include "qt_text.h"
#include "workbench_file.h"

namespace merivane::desktop {

ResultLine::ResultLine(QStatusBar& bar, QtDesktop& desktop)
    : QObject(&bar), desktop_(desktop), label_(new ElidedLabel) {
  label_->setObjectName("result");
  label_->setTextFormat(Qt::PlainText);
  bar.addWidget(label_, 1);
  undo_ = AddButton(bar, "undoPick", "Undo", &ResultLine::Undo);
  see_ = AddButton(bar, "seePlan", "See the plan", &ResultLine::See);
  open_ = AddButton(bar, "openResult", "Open", &ResultLine::Open);
  showInFolder_ = AddButton(bar, "showResult", "Show in folder", &ResultLine::ShowInFolder);
}

QPushButton* ResultLine::AddButton(QStatusBar& bar, const char* name, const char* caption,
                                   void (ResultLine::*press)()) {
  auto* button = new QPushButton(caption);
  button->setObjectName(name);
  button->setAccessibleName(caption);
  button->hide();
  bar.addPermanentWidget(button);
  connect(button, &QPushButton::clicked, this,
          [this, press] { desktop_.Run([this, press] { (this->*press)(); }); });
  return button;
}

void ResultLine::Show(const QString& text, const QString& file) {
  desktop_.LogResult(text, file);
  label_->setText(text);
  label_->setToolTip(text);
  written_ = file;
  undo_->setVisible(!emptied_.empty());
  see_->setVisible(!file.isEmpty() && KindOfName(file) != FileKind::kText);
  open_->setVisible(!file.isEmpty());
  showInFolder_->setVisible(!file.isEmpty());
}

void ResultLine::ShowResult(const QString& text, const QString& file) {
  emptied_.clear();
  ofPick_ = false;
  Show(text, file);
}

void ResultLine::ShowPick(const PickNote& note, const std::function<void()>& undo) {
  const QString text = PathToQt(note.text);
  if (note.emptied) emptied_.push_back({text, PathToQt(note.emptied->path), undo});
  if (text.isEmpty() && !ofPick_) return;  // the run before stays told
  ofPick_ = true;
  QStringList lines;
  if (!note.emptied && !text.isEmpty()) lines += text;
  if (!emptied_.empty()) lines += emptied_.back().text;
  Show(lines.join(' '), {});
}

void ResultLine::Undo() {
  emptied_.back().undo();
  const QString path = emptied_.back().path;
  emptied_.pop_back();
  Show(emptied_.empty() ? path + " is as it was before" : emptied_.back().text, {});
}

// The file may have changed its name since: what opens it tells so.
void ResultLine::See() {
  if (OnSee) OnSee(written_);
}

void ResultLine::Open() { desktop_.OpenPlace(written_); }

void ResultLine::ShowInFolder() { desktop_.OpenPlace(QFileInfo(written_).absolutePath()); }

QString ResultLine::Text() const { return label_->text(); }

}  // namespace merivane::desktop
