#include "TableCsv.h"

#include <QAbstractItemModel>

namespace {

template <typename TextOf>
QString lineOf(int columns, TextOf textOf)
{
    QStringList cells;
    for (int column = 0; column < columns; ++column)
        cells.append(TableCsv::cell(textOf(column)));
    return cells.join(QLatin1Char(',')) + QStringLiteral("\r\n");
}

} // namespace

namespace TableCsv {

QString cell(const QString& text)
{
    static const QString formulaStarts = QStringLiteral("=+-@\t\r\n");
    QString safe = text;
    if (!safe.isEmpty() && formulaStarts.contains(safe.at(0)))
        safe.prepend(QLatin1Char('\''));
    if (safe.contains(QLatin1Char(',')) || safe.contains(QLatin1Char('"')) || safe.contains(QLatin1Char('\n')) ||
        safe.contains(QLatin1Char('\r'))) {
        safe.replace(QLatin1Char('"'), QStringLiteral("\"\""));
        safe = QLatin1Char('"') + safe + QLatin1Char('"');
    }
    return safe;
}

QByteArray write(const QAbstractItemModel& table)
{
    QString text(QChar::ByteOrderMark);
    text += lineOf(table.columnCount(), [&](int column) {
        return table.headerData(column, Qt::Horizontal).toString().replace(QLatin1Char('\n'), QLatin1Char(' '));
    });
    for (int row = 0; row < table.rowCount(); ++row)
        text += lineOf(table.columnCount(), [&](int column) { return table.index(row, column).data().toString(); });
    return text.toUtf8();
}

} // namespace TableCsv
