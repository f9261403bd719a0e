// The window that shows a help file: contents and index beside the topic.
#pragma once

#include <QMainWindow>
#include <QString>
#include <memory>

class QLineEdit;
class QListWidget;
class QTabWidget;
class QTreeWidget;

namespace merivane::desktop {

class HelpFile;
class TopicBrowser;

class HelpWindow : public QMainWindow {
 public:
  HelpWindow();
  ~HelpWindow() override;

  // False where there is no such file or it is no help file; the window then keeps what it showed.
  bool Open(const QString& path);

  // REQUIRES: Open succeeded. Each brings the window to the front.
  void ShowContents();  // at the first topic
  void ShowIndex();
  void ShowContext(int context);  // the first topic where no page has this number

  // Name of the shown page.
  QString Topic() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void AddTools();
  QWidget* MakeIndexPage();
  void Fill();
  void ShowTopic(const QString& topic);
  void MarkTopic(const QString& topic);
  void FilterIndex(const QString& text);
  void BringToFront();

  std::unique_ptr<HelpFile> file_;
  QString path_;
  QTabWidget* tabs_;
  QTreeWidget* contents_;
  QLineEdit* indexText_;
  QListWidget* index_;
  TopicBrowser* browser_;
};

}  // namespace merivane::desktop
