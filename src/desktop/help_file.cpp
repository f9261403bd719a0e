#include "help_file.h"

#include <chm_lib.h>

#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QTextDocumentFragment>
#include <QtEndian>

namespace merivane::desktop {

namespace {

// No page or picture of a sound help file is larger; a damaged one may tell any length.
constexpr LONGUINT64 kLargestObject = 64U << 20U;

std::uint32_t LittleEndian32(const QByteArray& bytes, qsizetype position) {
  return position + 4 <= bytes.size() ? qFromLittleEndian<quint32>(bytes.constData() + position)
                                      : 0;
}

std::uint16_t LittleEndian16(const QByteArray& bytes, qsizetype position) {
  return position + 2 <= bytes.size() ? qFromLittleEndian<quint16>(bytes.constData() + position)
                                      : 0;
}

bool Resolve(chmFile* file, const QString& name, chmUnitInfo& unit) {
  const QByteArray path = (name.startsWith('/') ? name : '/' + name).toUtf8();
  return path.size() <= CHM_MAX_PATHLEN &&
         chm_resolve_object(file, path.constData(), &unit) == CHM_RESOLVE_SUCCESS;
}

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

// The entries of a table of contents or an index (nested lists of named links) in order; damage
// leaves out what it hits.
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

}  // namespace

std::unique_ptr<HelpFile> HelpFile::Open(const QString& path) {
  chmFile* file = chm_open(QFile::encodeName(path).constData());
  if (file == nullptr) return nullptr;
  return std::unique_ptr<HelpFile>(new HelpFile(file));
}

HelpFile::HelpFile(chmFile* file) : file_(file) { ReadSystem(); }

HelpFile::~HelpFile() { chm_close(file_); }

bool HelpFile::Holds(const QString& name) const {
  chmUnitInfo unit = {};
  return Resolve(file_, name, unit);
}

std::optional<QByteArray> HelpFile::Read(const QString& name) const {
  chmUnitInfo unit = {};
  if (!Resolve(file_, name, unit) || unit.length > kLargestObject) return std::nullopt;
  QByteArray bytes(static_cast<qsizetype>(unit.length), '\0');
  const auto length = static_cast<LONGINT64>(unit.length);
  const LONGINT64 read =
      chm_retrieve_object(file_, &unit, reinterpret_cast<unsigned char*>(bytes.data()), 0, length);
  if (read != length) return std::nullopt;
  return bytes;
}

// After a version, entries of a 16-bit code, a 16-bit length and that many bytes.
void HelpFile::ReadSystem() {
  constexpr qsizetype kVersionSize = 4;
  constexpr qsizetype kHeadSize = 4;
  const QByteArray system = Read(QStringLiteral("/#SYSTEM")).value_or(QByteArray());
  for (qsizetype at = kVersionSize; at + kHeadSize <= system.size();) {
    const qsizetype length = LittleEndian16(system, at + 2);
    const QString text = QString::fromUtf8(system.mid(at + kHeadSize, length).constData());
    switch (LittleEndian16(system, at)) {
      case 0:
        contentsName_ = text;
        break;
      case 1:
        indexName_ = text;
        break;
      case 2:
        defaultTopic_ = text;
        break;
      case 3:
        title_ = text;
        break;
      default:
        break;
    }
    at += kHeadSize + length;
  }
}

std::vector<HelpEntry> HelpFile::Entries(const QString& name) const {
  if (name.isEmpty()) return {};
  return ParseSiteMap(Read(name).value_or(QByteArray()));
}

// After a length, pairs of 32-bit numbers: the context, and where the page's name begins among the
// strings.
std::optional<QString> HelpFile::TopicOf(int context) const {
  constexpr qsizetype kPairSize = 8;
  const auto pairs = Read(QStringLiteral("/#IVB"));
  const auto strings = Read(QStringLiteral("/#STRINGS"));
  if (!pairs || !strings) return std::nullopt;
  for (qsizetype at = 4; at + kPairSize <= pairs->size(); at += kPairSize) {
    if (LittleEndian32(*pairs, at) != static_cast<std::uint32_t>(context)) continue;
    const qsizetype offset = LittleEndian32(*pairs, at + 4);
    if (offset >= strings->size()) return std::nullopt;
    QString name = QString::fromUtf8(strings->mid(offset).constData());
    // Some compilers put the folder of the page's source in front.
    while (!Holds(name.section('#', 0, 0))) {
      const qsizetype slash = name.indexOf('/', 1);
      if (slash < 0) return std::nullopt;
      name = name.mid(slash + 1);
    }
    return name;
  }
  return std::nullopt;
}

}  // namespace merivane::desktop
