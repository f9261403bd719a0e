// Shows the pages of a help file.
#pragma once

#include <QTextBrowser>

namespace merivane::desktop {

class HelpFile;

class TopicBrowser : public QTextBrowser {
 public:
  explicit TopicBrowser(QWidget* parent = nullptr) : QTextBrowser(parent) {}

  // Null: nothing to show. Must outlive its use here.
  void SetFile(const HelpFile* file) { file_ = file; }
  void ShowTopic(const QString& topic);
  // Name of the page that an address shows.
  static QString TopicOf(const QUrl& address) { return address.path().mid(1); }

  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  void doSetSource(const QUrl& name, QTextDocument::ResourceType type) override;

 private:
  QVariant Picture(const QByteArray& bytes) const;

  const HelpFile* file_ = nullptr;
};

}  // namespace merivane::desktop
