#include "help_site_map.h"

#include <QRegularExpression>
#include <QStringDecoder>
#include <QTextDocumentFragment>

namespace merivane::desktop {

namespace {

QString Decoded(const QByteArray& html) {
  QStringDecoder decoder = QStringDecoder::decoderForHtml(html);
  return decoder.isValid() ? decoder(html) : QString::fromUtf8(html);
}

QString Attribute(const QString& tag, const char* name) {
  const QRegularExpression pattern(
      QStringLiteral("\\b%1\\s*=\\s*\"([^\"]*)\"").arg(QLatin1String(name)),
      QRegularExpression::CaseInsensitiveOption);
  const QString value = pattern.match(tag).captured(1);
  return value.contains('&') ? QTextDocumentFragment::fromHtml(value).toPlainText() : value;
}

void AddParameter(HelpEntry& entry, const QString& tag) {
  const QString name = Attribute(tag, "name").toLower();
  // An index entry names its keyword first and then each of its pages.
  if (name == QLatin1String("name") && entry.name.isEmpty()) entry.name = Attribute(tag, "value");
  if (name == QLatin1String("local") && entry.topic.isEmpty()) {
    entry.topic = Attribute(tag, "value");
  }
}

}  // namespace

std::vector<HelpEntry> ParseSiteMap(const QByteArray& html) {
  static const QRegularExpression tags(QStringLiteral("<(/?)(ul|object|param)\\b[^>]*>"),
                                       QRegularExpression::CaseInsensitiveOption);
  std::vector<HelpEntry> entries;
  HelpEntry entry;
  int depth = 0;
  auto matches = tags.globalMatch(Decoded(html));
  while (matches.hasNext()) {
    const auto match = matches.next();
    const bool closes = match.capturedLength(1) > 0;
    const QString tag = match.captured(2).toLower();
    if (tag == QLatin1String("ul")) {
      depth += closes ? -1 : 1;
    } else if (tag == QLatin1String("param")) {
      AddParameter(entry, match.captured());
    } else if (closes && !entry.name.isEmpty()) {
      entry.level = qMax(0, depth - 1);
      entries.push_back(entry);
      entry = {};
    } else {
      entry = {};
    }
  }
  return entries;
}

}  // namespace merivane::desktop
