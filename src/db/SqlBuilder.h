#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <initializer_list>

/// Columns with their values, in ascending order of the names; also columns with their type texts.
using SqlValueMap = QMap<QString, QVariant>;

/// Texts of SQL statements. Values stand between single quotes exactly as their text is, nothing is escaped: whatever a
/// person types goes through SqlText first. A where text is a condition without the word WHERE, empty for none, and
/// holds no "%1". Pure functions, any thread.
namespace SqlBuilder {

/// The format with "%1", "%2" and so on replaced by the texts, one after the other. On purpose not all at once: the
/// statements are compared byte for byte with those of earlier versions, and a text that holds a marker would differ.
QString filled(QString format, std::initializer_list<QString> texts);

/// INSERT INTO t(a,b) VALUES('1','2')
QString insertSql(const QString& table, const SqlValueMap& values);

/// INSERT INTO t(key, a, b) VALUES('k', '1', '2')
QString insertSql(const QString& table, const QString& keyColumn, const QString& keyValue, const SqlValueMap& values);

/// The columns in the caller's order; all of them when the list is empty.
QString selectSql(const QString& table, const QStringList& columns, const QString& where);

QString updateSql(const QString& table, const SqlValueMap& values, const QString& where);

/// Without a where text every row goes.
QString deleteSql(const QString& table, const QString& where);

QString addColumnSql(const QString& table, const QString& column, const QString& type);
QString dropColumnSql(const QString& table, const QString& column);

/// The key column first, the others in ascending order.
QString createTableSql(const QString& table, const QString& keyColumn, const QString& keyType,
                       const SqlValueMap& columns);

} // namespace SqlBuilder
