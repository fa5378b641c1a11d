#include "convert/table.h"

#include <algorithm>

namespace convert {

void printTable(const QVector<Row> &rows, Console &console)
{
    QVector<int> widths(rows[0].size(), 0);
    for (const Row &row : rows) {
        for (int i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    for (const Row &row : rows) {
        QString line;
        for (int i = 0; i < row.size(); ++i) {
            bool isNumber = false;
            row[i].toDouble(&isNumber);
            line += "  " + (isNumber ? row[i].rightJustified(widths[i]) : row[i].leftJustified(widths[i]));
        }
        while (line.endsWith(' '))
            line.chop(1);
        console.result(line);
    }
}

QString counted(qint64 number, const QString &what)
{
    return QString("%1 %2%3").arg(number).arg(what, number == 1 ? "" : "s");
}

} // namespace convert
