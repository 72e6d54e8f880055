#include "home/DatabaseCopy.h"

#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

namespace DatabaseCopy {

bool isDatabase(const QString& file)
{
    QFile content(file);
    return content.open(QIODevice::ReadOnly) && content.read(16) == QByteArray("SQLite format 3\0", 16);
}

bool make(const QString& from, const QString& to, QString* error)
{
    const QString name = QUuid::createUuid().toString();
    bool copied = false;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(from);
        database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=30000"));
        QSqlQuery query(database.open() ? database : QSqlDatabase());
        query.prepare(QStringLiteral("VACUUM INTO ?"));
        query.addBindValue(to);
        copied = database.isOpen() && query.exec();
        if (!copied)
            *error = QStringLiteral("%1: %2").arg(from, database.isOpen() ? query.lastError().text()
                                                                          : database.lastError().text());
    }
    QSqlDatabase::removeDatabase(name);
    return copied;
}

} // namespace DatabaseCopy
