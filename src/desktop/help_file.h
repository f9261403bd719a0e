// Compiled help files.
#pragma once

#include <QByteArray>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

struct chmFile;

namespace merivane::desktop {

// A line of the table of contents or of the index.
struct HelpEntry {
  QString name;
  QString topic;  // name of a page, perhaps with an anchor; empty for a heading alone
  int level = 0;  // 0 for the outermost
};

class HelpFile {
 public:
  // Null where there is no such file or it is no help file.
  static std::unique_ptr<HelpFile> Open(const QString& path);
  ~HelpFile();
  HelpFile(const HelpFile&) = delete;
  HelpFile& operator=(const HelpFile&) = delete;

  // Bytes of a page or a picture; nothing where the file doesn't hold it.
  std::optional<QByteArray> Read(const QString& name) const;

  const QString& Title() const { return title_; }
  const QString& DefaultTopic() const { return defaultTopic_; }
  std::vector<HelpEntry> Contents() const { return Entries(contentsName_); }
  std::vector<HelpEntry> Index() const { return Entries(indexName_); }
  // Page of a context number.
  std::optional<QString> TopicOf(int context) const;

 private:
  explicit HelpFile(chmFile* file);
  void ReadSystem();
  std::vector<HelpEntry> Entries(const QString& name) const;
  bool Holds(const QString& name) const;

  chmFile* file_;
  QString title_;
  QString defaultTopic_;
  QString contentsName_;
  QString indexName_;
};

}  // namespace merivane::desktop
