#include "results/data/ReviewStore.h"

#include "db/SqlConnection.h"
#include "db/SqliteFile.h"
#include "results/data/PartReader.h"

#include <QDateTime>
#include <QFileInfo>
#include <QVariant>

namespace {

bool createReviews(SqlConnection& connection)
{
    connection.exec(
        QStringLiteral("CREATE TABLE IF NOT EXISTS Review(wall INTEGER NOT NULL, uid INTEGER NOT NULL, mark "
                       "INTEGER NOT NULL, comment TEXT NOT NULL, account TEXT NOT NULL, time TEXT NOT NULL, "
                       "PRIMARY KEY(wall, uid)) WITHOUT ROWID"));
    return !connection.failed();
}

} // namespace

/// A file of somebody else's is refused rather than put aside.
QString ReviewStore::store(const QString& home, const Review& review)
{
    const QString path = PartReader::reviewsOf(home);
    if (!QFileInfo(QFileInfo(path).path()).isWritable())
        return tr("不能写入备注：文件夹 %1 只读或不存在").arg(QFileInfo(path).path());
    SqlConnection connection(QStringLiteral("QSQLITE"));
    connection.database().setDatabaseName(path);
    connection.database().setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=2000"));
    const bool open = connection.database().open() && createReviews(connection);
    QSqlQuery query(connection.database());
    const bool empty = !review.marked && review.comment.trimmed().isEmpty();
    if (open) {
        query.prepare(empty ? QStringLiteral("DELETE FROM Review WHERE wall = ? AND uid = ?")
                            : QStringLiteral("INSERT OR REPLACE INTO Review VALUES(?, ?, ?, ?, ?, ?)"));
        query.addBindValue(review.wall);
        query.addBindValue(review.uid);
        if (!empty) {
            query.addBindValue(review.marked);
            query.addBindValue(review.comment.trimmed().left(maxComment));
            query.addBindValue(review.user);
            query.addBindValue(QDateTime::currentDateTime().toString(Qt::ISODate));
        }
    }
    if (open && connection.exec(query))
        return {};
    return tr("不能写入备注：%1").arg(SqliteFile::describe(connection, path));
}
