// The first screen: what to begin with, in the frame while no dialog is open there.
#pragma once

#include <QScrollArea>
#include <functional>

class QCommandLinkButton;
class QListWidget;
class QVBoxLayout;

namespace merivane::desktop {

class DropPlace;
class RecentList;

// Holds no decision: each button calls one of the functions, all of which are set before it is
// shown. A file may be dropped anywhere on it. It takes the focus itself, so that a key that was
// meant for a dialog presses none of its buttons.
class StartPage : public QScrollArea {
 public:
  // `samples`: the folder of the models that came with the program; without one none are offered.
  // One that its user may not write is copied into `documents` and opened there.
  StartPage(const QString& samples, const QString& documents);

  std::function<void()> OnToPlan;
  std::function<void()> OnToModel;
  std::function<void()> OnAsk;  // for a file to open
  std::function<void(const QStringList& names)> OnOpen;

  RecentList& Recent() { return *recent_; }

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  QCommandLinkButton* AddButton(QVBoxLayout& column, const char* name, const char* caption,
                                const char* sentence, const std::function<void()>& press);
  QWidget* MakeBeginnings();
  QWidget* MakeFiles(const QString& samples);
  QListWidget* MakeSamples(const QStringList& names);
  QString OwnSample(const QString& name) const;

  QString documents_;
  DropPlace* dropPlace_;
  RecentList* recent_;
};

}  // namespace merivane::desktop
