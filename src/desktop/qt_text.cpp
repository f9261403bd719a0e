#include "qt_text.h"

#include <QStringList>

namespace merivane::desktop {

namespace {

constexpr qsizetype kLongWord = 60;
constexpr QChar kZeroWidthSpace(0x200B);

QString BreakableWord(const QString& word) {
  if (word.size() <= kLongWord) return word;
  QString broken;
  qsizetype sinceBreak = 0;
  for (const QChar c : word) {
    broken += c;
    const bool separator = c == '/' || c == '\\' || c == '-' || c == '_' || c == '.';
    if (separator || ++sinceBreak >= kLongWord) {
      broken += kZeroWidthSpace;
      sinceBreak = 0;
    }
  }
  return broken;
}

}  // namespace

QString BreakableText(const QString& text) {
  QString lines = text;
  lines.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  while (lines.endsWith('\n')) lines.chop(1);
  QStringList paragraphs = lines.split('\n');
  for (QString& paragraph : paragraphs) {
    QStringList words = paragraph.split(' ');
    for (QString& word : words) word = BreakableWord(word);
    paragraph = words.join(' ');
  }
  return paragraphs.join('\n');
}

}  // namespace merivane::desktop
