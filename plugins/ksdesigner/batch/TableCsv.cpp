#include "TableCsv.h"

#include <valvecell/CsvText.h>

#include <QAbstractItemModel>

namespace {

template <typename TextOf>
QString lineOf(int columns, TextOf textOf)
{
    QStringList cells;
    for (int column = 0; column < columns; ++column)
        cells.append(CsvText::cell(textOf(column)));
    return CsvText::line(cells);
}

} // namespace

namespace TableCsv {

QByteArray write(const QAbstractItemModel& table)
{
    QString text = CsvText::start();
    text += lineOf(table.columnCount(), [&](int column) {
        return table.headerData(column, Qt::Horizontal).toString().replace(QLatin1Char('\n'), QLatin1Char(' '));
    });
    for (int row = 0; row < table.rowCount(); ++row)
        text += lineOf(table.columnCount(), [&](int column) { return table.index(row, column).data().toString(); });
    return text.toUtf8();
}

} // namespace TableCsv
