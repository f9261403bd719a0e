// Rows of a list outside of the program: as text, CSV, JSON, and as a page.
#pragma once

#include <QAbstractItemModel>
#include <QByteArray>
#include <QString>

namespace merivane::desktop {

// One of .txt, .csv and .json, in any case of letters.
bool IsListName(const QString& path);

// The rows as UTF-8, by the ending of `path`: lines with tabs between the columns; comma separated
// values; an array of objects. Text and CSV begin with the headings, JSON has them as keys.
// REQUIRES: IsListName.
QByteArray ListAs(const QAbstractItemModel& rows, const QString& path);

// As a table to be printed, below its title.
QString ListAsHtml(const QAbstractItemModel& rows, const QString& title);

}  // namespace merivane::desktop
