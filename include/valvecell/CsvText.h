#pragma once

#include <QString>
#include <QStringList>

#include <algorithm>

/// Comma-separated text for spreadsheets, as the program and its modules write every table: UTF-8 with a byte order
/// mark, lines end with CR LF. Pure functions.
namespace CsvText {

/// What a file begins with.
inline QString start()
{
    return QString(QChar(QChar::ByteOrderMark));
}

/// With an apostrophe in front where a spreadsheet would take the text for a formula, because it starts with =, +, -,
/// @, a tab or a line break.
inline QString disarmed(const QString& text)
{
    static const QString formulaStarts = QStringLiteral("=+-@\t\r\n");
    const bool formula = !text.isEmpty() && formulaStarts.contains(text.at(0));
    return formula ? QLatin1Char('\'') + text : text;
}

/// Between quotation marks, whatever is in it.
inline QString quoted(QString text)
{
    return QLatin1Char('"') + text.replace(QLatin1Char('"'), QStringLiteral("\"\"")) + QLatin1Char('"');
}

/// One cell: disarmed, and quoted where needed.
inline QString cell(const QString& text)
{
    static const QString special = QStringLiteral(",\"\r\n");
    const QString safe = disarmed(text);
    const bool quote = std::any_of(safe.cbegin(), safe.cend(), [](QChar c) { return special.contains(c); });
    return quote ? quoted(safe) : safe;
}

/// One line, of cells as they are written.
inline QString line(const QStringList& cells)
{
    return cells.join(QLatin1Char(',')) + QStringLiteral("\r\n");
}

} // namespace CsvText
