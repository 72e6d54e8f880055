#include "db/QSqliteWheelHubZd.h"

#include <QMutexLocker>
#include <QSqlRecord>

namespace {

const QString modelTable = QStringLiteral("e_wh_models");
const QString infoTable = QStringLiteral("e_zd_model_info");
const QString keyColumnName = QStringLiteral("md_unique");

QString whereName(const QString& name)
{
    return keyColumnName + QStringLiteral(" = '") + name + QLatin1Char('\'');
}

/// Beside the key. The widths are those of the libraries that plants have; SQLite does not hold texts to them.
const SqlValueMap& modelColumns()
{
    static const SqlValueMap columns{
        {QStringLiteral("md_cali"), QStringLiteral("INT(1) DEFAULT '0'")},
        {QStringLiteral("md_camKey"), QStringLiteral("VARCHAR(32)")},
        {QStringLiteral("md_count"), QStringLiteral("INT(1) DEFAULT '0'")},
        {QStringLiteral("md_id"), QStringLiteral("VARCHAR(2)")},
        {QStringLiteral("md_index"), QStringLiteral("INT(100)")},
        {QStringLiteral("md_model"), QStringLiteral("VARCHAR(20)")},
        {QStringLiteral("md_stamp"), QStringLiteral("VARCHAR(32)")},
        {QStringLiteral("md_text"), QStringLiteral("TEXT")},
    };
    return columns;
}

/// Others write this file too, and a change of a model may wait for them: longer than a row in production may.
SqliteFile::OpenRules libraryRules()
{
    SqliteFile::OpenRules rules;
    rules.busyMs = 250;
    rules.ownTables = {{modelTable, {keyColumnName}}, {QStringLiteral("r_wh_model_camera"), {}}};
    rules.replaceReadOnly = false;
    rules.createTables = [](SqlConnection& connection) {
        connection.exec(SqlBuilder::createTableSql(modelTable, keyColumnName, QStringLiteral("VARCHAR(60) PRIMARY KEY"),
                                                   modelColumns()));
        return !connection.failed();
    };
    return rules;
}

} // namespace

QZkDbSqlite::QZkDbSqlite(const QString& path, const QString& user, const QString& password)
    : m_store(path, {})
{
    QSqlDatabase& database = m_store.connection().database();
    if (!user.isEmpty()) {
        database.setUserName(user);
        database.setPassword(password);
    }
}

QString QZkDbSqlite::insertSql(const QString& table, const QString& keyColumn, const QString& keyValue,
                               const SqlValueMap& values)
{
    return SqlBuilder::insertSql(table, keyColumn, keyValue, values);
}

QString QZkDbSqlite::selectSql(const QString& table, const QStringList& columns, const QString& where)
{
    return SqlBuilder::selectSql(table, columns, where);
}

QString QZkDbSqlite::updateSql(const QString& table, const SqlValueMap& values, const QString& where)
{
    return SqlBuilder::updateSql(table, values, where);
}

QString QZkDbSqlite::deleteSql(const QString& table, const QString& where)
{
    return SqlBuilder::deleteSql(table, where);
}

QString QZkDbSqlite::addColumnSql(const QString& table, const QString& column, const QString& type)
{
    return SqlBuilder::addColumnSql(table, column, type);
}

QString QZkDbSqlite::dropColumnSql(const QString& table, const QString& column)
{
    return SqlBuilder::dropColumnSql(table, column);
}

QString QZkDbSqlite::createTableSql(const QString& table, const QString& keyColumn, const QString& keyType,
                                    const SqlValueMap& columns)
{
    return SqlBuilder::createTableSql(table, keyColumn, keyType, columns);
}

QSqliteWheelHubZd::QSqliteWheelHubZd(const QString& folder)
    : QSqliteGeneral(folder + QStringLiteral("wheelhubzd.db"))
{
    store().rules() = libraryRules();
}

bool QSqliteWheelHubZd::addModel(const QString& name, const SqlValueMap& values)
{
    if (name.isEmpty() || values.isEmpty())
        return false;
    // The driver reports no sizes, so that it is the primary key that refuses a name that is there.
    if (store().exec(selectSql(modelTable, {}, whereName(name))).size() > 0)
        return false;
    store().exec(insertSql(modelTable, keyColumnName, name, values));
    return !store().failed();
}

bool QSqliteWheelHubZd::deleteModel(const QString& name)
{
    return store().exec(deleteSql(modelTable, whereName(name))).size() != 0;
}

bool QSqliteWheelHubZd::readValue(const QString& name, const QString& column, QVariant* value)
{
    QSqlQuery query = store().exec(selectSql(modelTable, {column}, whereName(name)));
    if (store().failed() || !query.next())
        return false;
    *value = query.record().value(column);
    return true;
}

bool QSqliteWheelHubZd::readRecord(const QString& name, SqlValueMap* record)
{
    QSqlQuery query = store().exec(selectSql(modelTable, {}, whereName(name)));
    if (store().failed() || !query.next())
        return false;
    const QSqlRecord fields = query.record();
    for (int i = 0; i < fields.count(); ++i)
        record->insert(fields.fieldName(i), fields.value(i));
    return true;
}

bool QSqliteWheelHubZd::updateValue(const QString& name, const QString& column, const QVariant& value, int mode)
{
    const QMutexLocker locker(&m_updateMutex);
    QString sql;
    if (mode == 0)
        sql = updateSql(modelTable, {{column, value}}, whereName(name));
    store().exec(sql);
    return !store().failed();
}

bool QSqliteWheelHubZd::ensureColumn(const QString& column, const QString& type)
{
    QSqlQuery query = store().exec(selectSql(modelTable, {}, QString()));
    if (store().failed())
        return false;
    if (!query.next() || query.record().contains(column))
        return true;
    query.finish();
    store().exec(addColumnSql(modelTable, column, type));
    return !store().failed();
}

bool QSqliteWheelHubZd::dropColumn(const QString& column)
{
    store().exec(dropColumnSql(modelTable, column));
    return !store().failed();
}

/// The table's key is mf_time, whatever `keyColumn` says: a row with another key column fails.
bool QSqliteWheelHubZd::saveModelInfo(const QString& tableSuffix, const QString& keyColumn, const QString& keyValue,
                                      const SqlValueMap& values)
{
    const QString table = infoTable + tableSuffix;
    SqlValueMap columns;
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        columns.insert(it.key(), QStringLiteral("VARCHAR(20)"));
    store().exec(createTableSql(table, QStringLiteral("mf_time"), QStringLiteral("VARCHAR(90) PRIMARY KEY"), columns));
    if (store().failed())
        return false;
    store().exec(insertSql(table, keyColumn, keyValue, values));
    return !store().failed();
}

QStringList QSqliteWheelHubZd::modelsOfCamera(const QString& cameraKey)
{
    QStringList models;
    QSqlQuery query = store().exec(
        QStringLiteral("SELECT model_id, camera_id, camera_key FROM r_wh_model_camera WHERE camera_key = '%1'")
            .arg(cameraKey));
    while (query.next())
        models << query.value(0).toString();
    return models;
}

/// Others write this table: a row whose camera id is no number is passed over.
QList<QPair<int, QString>> QSqliteWheelHubZd::camerasOfModel(const QString& modelId)
{
    QList<QPair<int, QString>> cameras;
    QSqlQuery query = store().exec(
        QStringLiteral("SELECT model_id, camera_id, camera_key FROM r_wh_model_camera WHERE model_id = '%1'")
            .arg(modelId));
    while (query.next()) {
        bool isNumber = false;
        const int id = query.value(1).toInt(&isNumber);
        if (isNumber)
            cameras.append({id, query.value(2).toString()});
    }
    return cameras;
}

QStringList QSqliteWheelHubZd::modelNames()
{
    QStringList names;
    QSqlQuery query =
        store().exec(selectSql(modelTable, {keyColumnName}, QString()) + QStringLiteral(" ORDER BY ") + keyColumnName);
    while (query.next())
        names << query.value(0).toString();
    return names;
}
