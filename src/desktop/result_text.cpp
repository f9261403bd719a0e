#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <string>
#include <vector>

#include "result_list.h"
#include "runtime/csv.h"

namespace merivane::desktop {

using namespace runtime;

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

QByteArray Csv(const QStringList& texts) {
  std::vector<std::string> cells;
  for (const QString& text : texts) cells.push_back(text.toStdString());
  return QByteArray::fromStdString(CsvLine(cells));
}

QByteArray Tabbed(const QStringList& texts) {
  QStringList plain;
  for (const QString& text : texts) plain += text.simplified();
  return (plain.join('\t') + '\n').toUtf8();
}

QByteArray Lines(const QAbstractItemModel& rows, QByteArray (*line)(const QStringList& texts)) {
  QByteArray lines = line(HeadingsOf(rows));
  for (int row = 0; row < rows.rowCount(); ++row) lines += line(TextsOf(rows, row));
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
  if (EndingOf(path) == "csv") return Lines(rows, Csv);
  return Lines(rows, Tabbed);
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
