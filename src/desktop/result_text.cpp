#include "result_text.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <functional>

namespace merivane::desktop {

namespace {

QString EndingOf(const QString& path) { return QFileInfo(path).suffix().toLower(); }

QStringList HeadingsOf(const QAbstractItemModel& rows) {
  QStringList headings;
  for (int column = 0; column < rows.columnCount(); ++column) {
    headings += rows.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  }
  return headings;
}

QStringList TextsOf(const QAbstractItemModel& rows, int row) {
  QStringList texts;
  for (int column = 0; column < rows.columnCount(); ++column) {
    texts += rows.index(row, column).data().toString();
  }
  return texts;
}

QString QuotedForCsv(QString text) {
  if (!text.contains(',') && !text.contains('"') && !text.contains('\n') && !text.contains('\r')) {
    return text;
  }
  return '"' + text.replace("\"", "\"\"") + '"';
}

QString Lines(const QAbstractItemModel& rows, const QString& between,
              const std::function<QString(QString)>& written, const QString& lineEnd) {
  QString lines;
  const auto add = [&](QStringList texts) {
    for (QString& text : texts) text = written(text);
    lines += texts.join(between) + lineEnd;
  };
  add(HeadingsOf(rows));
  for (int row = 0; row < rows.rowCount(); ++row) add(TextsOf(rows, row));
  return lines;
}

QByteArray Json(const QAbstractItemModel& rows) {
  const QStringList headings = HeadingsOf(rows);
  QJsonArray list;
  for (int row = 0; row < rows.rowCount(); ++row) {
    const QStringList texts = TextsOf(rows, row);
    QJsonObject object;
    for (qsizetype i = 0; i < headings.size(); ++i) object[headings[i]] = texts[i];
    list.append(object);
  }
  return QJsonDocument(list).toJson();
}

}  // namespace

bool IsListName(const QString& path) {
  return QStringList{"txt", "csv", "json"}.contains(EndingOf(path));
}

QByteArray ListAs(const QAbstractItemModel& rows, const QString& path) {
  if (EndingOf(path) == "json") return Json(rows);
  if (EndingOf(path) == "csv") return Lines(rows, ",", QuotedForCsv, "\r\n").toUtf8();
  return Lines(
             rows, "\t", [](const QString& text) { return text.simplified(); }, "\n")
      .toUtf8();
}

QString ListAsHtml(const QAbstractItemModel& rows, const QString& title) {
  const auto line = [](const char* cell, const QStringList& texts) {
    QString html;
    for (const QString& text : texts) {
      html += QStringLiteral("<%1>%2</%1>").arg(QLatin1String(cell), text.toHtmlEscaped());
    }
    return "<tr>" + html + "</tr>";
  };
  QString html = "<h3>" + title.toHtmlEscaped() + "</h3><table border=\"1\" cellspacing=\"0\" " +
                 "cellpadding=\"3\" width=\"100%\">" + "<thead>" + line("th", HeadingsOf(rows)) +
                 "</thead>";
  for (int row = 0; row < rows.rowCount(); ++row) html += line("td", TextsOf(rows, row));
  return html + "</table>";
}

}  // namespace merivane::desktop
