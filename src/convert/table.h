// Tables for people.
#pragma once

#include "convert/console.h"

#include <QStringList>
#include <QVector>

namespace convert {

using Row = QStringList;

// Columns as wide as their widest cell; numbers to the right. Rows may be shorter than the first one.
void printTable(const QVector<Row> &rows, Console &console);

// "1 file", "2 files".
QString counted(qint64 number, const QString &what);

} // namespace convert
