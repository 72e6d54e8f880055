#include "db/SqlBuilder.h"

namespace SqlBuilder {
namespace {

QString quoted(const QVariant& value)
{
    return QLatin1Char('\'') + value.toString() + QLatin1Char('\'');
}

QStringList quotedValues(const SqlValueMap& values)
{
    QStringList texts;
    for (const QVariant& value : values)
        texts << quoted(value);
    return texts;
}

} // namespace

// Markers are filled one after the other on purpose: the statements are compared byte for byte with those of earlier
// programs, and filling them all at once would differ for a text that holds a marker itself.

QString insertSql(const QString& table, const SqlValueMap& values)
{
    return QStringLiteral("INSERT INTO %1(%2) VALUES(%3)")
        .arg(table)
        .arg(QStringList(values.keys()).join(QLatin1Char(',')))
        .arg(quotedValues(values).join(QLatin1Char(',')));
}

QString insertSql(const QString& table, const QString& keyColumn, const QString& keyValue, const SqlValueMap& values)
{
    const QString comma = QStringLiteral(", ");
    return QStringLiteral("INSERT INTO %1(%2) VALUES(%3)")
        .arg(table)
        .arg((QStringList(keyColumn) + QStringList(values.keys())).join(comma))
        .arg((QStringList(quoted(keyValue)) + quotedValues(values)).join(comma));
}

QString selectSql(const QString& table, const QStringList& columns, const QString& where)
{
    QString format = QStringLiteral("SELECT %1 FROM %2");
    if (!where.isEmpty())
        format += QStringLiteral(" WHERE ") + where;
    return format.arg(columns.isEmpty() ? QStringLiteral("*") : columns.join(QLatin1Char(','))).arg(table);
}

QString updateSql(const QString& table, const SqlValueMap& values, const QString& where)
{
    QStringList assignments;
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        assignments << it.key() + QStringLiteral(" = ") + quoted(it.value());
    const QString assigned = assignments.join(QLatin1Char(','));
    if (where.isEmpty())
        return QStringLiteral("UPDATE %1 SET %2").arg(table).arg(assigned);
    return QStringLiteral("UPDATE %1 SET %2 WHERE %3").arg(table).arg(assigned).arg(where);
}

QString deleteSql(const QString& table, const QString& where)
{
    if (where.isEmpty())
        return QStringLiteral("DELETE FROM %1").arg(table);
    return QStringLiteral("DELETE FROM %1 WHERE %2").arg(table).arg(where);
}

QString addColumnSql(const QString& table, const QString& column, const QString& type)
{
    return QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3").arg(table).arg(column).arg(type);
}

QString dropColumnSql(const QString& table, const QString& column)
{
    return QStringLiteral("ALTER TABLE %1 DROP %2").arg(table).arg(column);
}

QString createTableSql(const QString& table, const QString& keyColumn, const QString& keyType,
                       const SqlValueMap& columns)
{
    QStringList definitions{keyColumn + QLatin1Char(' ') + keyType};
    for (auto it = columns.cbegin(); it != columns.cend(); ++it)
        definitions << it.key() + QLatin1Char(' ') + it.value().toString();
    return QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (%2)").arg(table).arg(definitions.join(QStringLiteral(", ")));
}

} // namespace SqlBuilder
