// What the user was told since the program started.
#pragma once

#include <QDateTime>
#include <QString>
#include <functional>
#include <vector>

#include "platform/desktop.h"

namespace merivane::desktop {

using namespace platform;

class SessionLog {
 public:
  enum class Kind { kError, kWarning, kMessage, kQuestion, kResult };
  struct Entry {
    QDateTime time;  // when it came up
    Kind kind;
    QString file;  // that it is about; empty: none
    QString text;  // of a question, with its answer
    QString advice;
  };

  // A box, once it was answered.
  void AddBox(const QDateTime& time, const Message& message, MessageAnswer answer,
              const QString& file, const QString& advice);
  // A line of a status bar; nothing where it is empty.
  void AddResult(const QString& text, const QString& file);

  const std::vector<Entry>& Entries() const { return entries_; }
  std::function<void(const Entry&)> OnAdd;

 private:
  void Add(Entry entry);

  std::vector<Entry> entries_;
};

}  // namespace merivane::desktop
