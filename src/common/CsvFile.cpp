#include "common/CsvFile.h"

#include <valvecell/CsvText.h>
#include <valvecell/HomeFiles.h>

#include <QAbstractItemModel>

namespace {

QStringList headerOf(const QAbstractItemModel& table)
{
    QStringList titles;
    for (int column = 0; column < table.columnCount(); ++column) {
        const QString title = table.headerData(column, Qt::Horizontal).toString();
        titles << QString(title).replace(QLatin1Char('\n'), QLatin1Char(' '));
    }
    return titles;
}

QByteArray bytes(const CsvFile::Lines& lines)
{
    QString text = CsvText::start();
    for (const QStringList& line : lines) {
        QStringList cells;
        for (const QString& plain : line)
            cells << CsvText::cell(plain);
        text += CsvText::line(cells);
    }
    return text.toUtf8();
}

} // namespace

CsvFile::Lines CsvFile::linesOf(const QAbstractItemModel& table)
{
    Lines lines{headerOf(table)};
    for (int row = 0; row < table.rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < table.columnCount(); ++column)
            cells << table.index(row, column).data().toString();
        lines << cells;
    }
    return lines;
}

QString CsvFile::write(const QString& path, const Lines& lines)
{
    QString error;
    HomeFiles::writeFile(path, bytes(lines), &error);
    return error;
}
