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

QString filled(QString format, std::initializer_list<QString> texts)
{
    for (const QString& text : texts)
        format = format.arg(text);
    return format;
}

QString insertSql(const QString& table, const SqlValueMap& values)
{
    const QStringList names = values.keys();
    return filled(QStringLiteral("INSERT INTO %1(%2) VALUES(%3)"),
                  {table, names.join(QLatin1Char(',')), quotedValues(values).join(QLatin1Char(','))});
}

QString insertSql(const QString& table, const QString& keyColumn, const QString& keyValue, const SqlValueMap& values)
{
    const QStringList names = QStringList(keyColumn) + values.keys();
    const QStringList texts = QStringList(quoted(keyValue)) + quotedValues(values);
    const QString comma = QStringLiteral(", ");
    return filled(QStringLiteral("INSERT INTO %1(%2) VALUES(%3)"), {table, names.join(comma), texts.join(comma)});
}

QString selectSql(const QString& table, const QStringList& columns, const QString& where)
{
    QString format = QStringLiteral("SELECT %1 FROM %2");
    if (!where.isEmpty())
        format += QStringLiteral(" WHERE ") + where;
    return filled(format, {columns.isEmpty() ? QStringLiteral("*") : columns.join(QLatin1Char(',')), table});
}

QString updateSql(const QString& table, const SqlValueMap& values, const QString& where)
{
    QStringList assignments;
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        assignments << it.key() + QStringLiteral(" = ") + quoted(it.value());
    const QString assigned = assignments.join(QLatin1Char(','));
    if (where.isEmpty())
        return filled(QStringLiteral("UPDATE %1 SET %2"), {table, assigned});
    return filled(QStringLiteral("UPDATE %1 SET %2 WHERE %3"), {table, assigned, where});
}

QString deleteSql(const QString& table, const QString& where)
{
    if (where.isEmpty())
        return QStringLiteral("DELETE FROM %1").arg(table);
    return filled(QStringLiteral("DELETE FROM %1 WHERE %2"), {table, where});
}

QString addColumnSql(const QString& table, const QString& column, const QString& type)
{
    return filled(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 %3"), {table, column, type});
}

QString dropColumnSql(const QString& table, const QString& column)
{
    return filled(QStringLiteral("ALTER TABLE %1 DROP %2"), {table, column});
}

QString createTableSql(const QString& table, const QString& keyColumn, const QString& keyType,
                       const SqlValueMap& columns)
{
    QStringList definitions{keyColumn + QLatin1Char(' ') + keyType};
    for (auto it = columns.cbegin(); it != columns.cend(); ++it)
        definitions << it.key() + QLatin1Char(' ') + it.value().toString();
    return filled(QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (%2)"),
                  {table, definitions.join(QStringLiteral(", "))});
}

} // namespace SqlBuilder
