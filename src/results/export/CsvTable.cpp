#include "results/export/CsvTable.h"

#include "results/parts/PartTexts.h"

#include <valvecell/CsvText.h>

#include <cmath>

namespace {

QString numberText(double value, int decimals)
{
    if (!std::isfinite(value))
        return {};
    return decimals < 0 ? QString::number(value, 'g', 15) : QString::number(value, 'f', decimals);
}

QString cellText(const QVariant& value, const ExportColumn& column)
{
    if (!value.isValid())
        return {};
    switch (column.kind) {
    case ExportColumn::Number:
        return numberText(value.toDouble(), column.decimals);
    case ExportColumn::Time:
        return PartTexts::time(value.toLongLong());
    case ExportColumn::Text:
        break;
    }
    return CsvText::cell(value.toString());
}

} // namespace

CsvTable::CsvTable(const QString& path)
    : m_file(path)
{
}

bool CsvTable::begin(const QVector<ExportColumn>& columns)
{
    m_columns = columns;
    if (!m_file.open(QIODevice::WriteOnly))
        return fail(m_file.fileName(), m_file.errorString());
    QStringList titles;
    for (const ExportColumn& column : columns)
        titles << CsvText::cell(column.title);
    m_file.write(CsvText::start().toUtf8());
    return write(titles);
}

bool CsvTable::add(const Row& row)
{
    QStringList cells;
    cells.reserve(m_columns.size());
    for (int i = 0; i < m_columns.size(); ++i)
        cells << cellText(row.value(i), m_columns.at(i));
    return write(cells);
}

bool CsvTable::write(const QStringList& cells)
{
    const QByteArray line = CsvText::line(cells).toUtf8();
    return m_file.write(line) == line.size() || fail(m_file.fileName(), m_file.errorString());
}

bool CsvTable::finish()
{
    return (m_file.flush() && m_file.commit()) || fail(m_file.fileName(), m_file.errorString());
}
