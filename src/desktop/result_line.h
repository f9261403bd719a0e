// The line of the status bar: what came of the last run, or of the last pick of a database.
#pragma once

#include <QObject>
#include <QString>
#include <functional>
#include <vector>

#include "shell/database_pick.h"

class QPushButton;
class QStatusBar;

namespace merivane::desktop {

using namespace shell;

class ElidedLabel;
class QtDesktop;

class ResultLine : public QObject {
 public:
  // Both outlive it; the bar owns it.
  ResultLine(QStatusBar& bar, QtDesktop& desktop);

  // Of a run; the file that was written can be opened. Empty: it wrote none.
  void ShowResult(const QString& text, const QString& file);
  // Of a pick. A database that was emptied stays told until a run ends, and `undo` puts it back.
  void ShowPick(const PickNote& note, const std::function<void()>& undo);

  QString Text() const;

  // The user wants to see the plan that was written.
  std::function<void(const QString& file)> OnSee;

 private:
  struct Emptied {
    QString text;
    QString path;
    std::function<void()> undo;
  };
  QPushButton* AddButton(QStatusBar& bar, const char* name, const char* caption,
                         void (ResultLine::*press)());
  void Show(const QString& text, const QString& file);
  void Undo();
  void See();
  void Open();
  void ShowInFolder();

  QtDesktop& desktop_;
  ElidedLabel* label_;
  QPushButton* undo_;
  QPushButton* see_;
  QPushButton* open_;
  QPushButton* showInFolder_;
  QString written_;
  std::vector<Emptied> emptied_;  // by picks, the last one at the end
  bool ofPick_ = false;
};

}  // namespace merivane::desktop
