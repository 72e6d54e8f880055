#include "RecordsAudit.h"

#include "db/SqlConnection.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>

namespace {

constexpr const char* results = "/DBFiles/Pellix.db";
constexpr int maxNamed = 10;
/// Encoders of the archive: this many rows before a kill, and one more, may have their pictures in another order.
constexpr int writers = 2;
constexpr qint64 secondMs = 1000;

/// A database as another program opens it.
class OpenFile
{
public:
    explicit OpenFile(const QString& path)
        : m_connection(QStringLiteral("QSQLITE"))
    {
        m_connection.database().setDatabaseName(path);
        m_connection.database().setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
        m_connection.database().open();
    }
    QSqlQuery exec(const QString& sql) { return m_connection.exec(sql); }
    QVariant value(const QString& sql)
    {
        QSqlQuery query = exec(sql);
        return query.next() ? query.value(0) : QVariant();
    }
    QString error() const { return m_connection.lastError().text(); }

private:
    SqlConnection m_connection;
};

double field(const QString& evidence, const QString& key)
{
    const QStringList fields = evidence.split(QLatin1Char(';'));
    for (const QString& one : fields)
        if (one.startsWith(key))
            return one.mid(key.size()).toDouble();
    return 0;
}

/// A part that no image was taken of has nothing behind its answer but the answer.
RecordedRow rowOf(const QSqlQuery& query)
{
    RecordedRow row;
    const QString evidence = query.value(4).toString();
    row.station = query.value(1).toString().rightRef(1).toInt();
    row.timeMs =
        QDateTime::fromString(query.value(0).toString(), QStringLiteral("yyyy-MM-dd hh:mm:ss zzz")).toMSecsSinceEpoch();
    row.sent = {query.value(2).toDouble(), field(evidence, QStringLiteral("x=")),
                field(evidence, QStringLiteral("y="))};
    row.picture = query.value(3).toString();
    row.hasImage = !evidence.startsWith(QLatin1String("plc="));
    return row;
}

QSqlQuery selectRows(OpenFile& database, const QString& condition)
{
    return database.exec(QStringLiteral("SELECT time, stationName, dAngle, value1, value3 FROM RltTable ") + condition +
                         QStringLiteral(" ORDER BY uid"));
}

/// A picture that was cut off lacks its end mark.
bool isWhole(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.size() > 4 && file.read(2) == "\xFF\xD8" &&
           file.seek(file.size() - 2) && file.read(2) == "\xFF\xD9";
}

int removeImages(const QString& folder)
{
    int count = 0;
    for (QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories); files.hasNext();) {
        const QString path = files.next();
        count += path.endsWith(QLatin1String(".jpg")) && QFile::remove(path);
    }
    return count;
}

QString problemOf(const QString& path)
{
    QTemporaryDir folder;
    const QString copy = folder.filePath(QStringLiteral("copy.db"));
    for (const char* tail : {"", "-wal"})
        QFile::copy(path + QLatin1String(tail), copy + QLatin1String(tail));
    OpenFile database(copy);
    const QString verdict = database.value(QStringLiteral("PRAGMA integrity_check")).toString();
    return verdict == QLatin1String("ok") ? QString() : path + QStringLiteral(": ") + verdict + database.error();
}

} // namespace

RecordsAudit::RecordsAudit(QString home)
    : m_home(std::move(home))
{
}

void RecordsAudit::sweep(bool all)
{
    OpenFile database(file(results));
    const qint64 newest = database.value(QStringLiteral("SELECT max(uid) FROM RltTable")).toLongLong();
    const qint64 upTo = all ? newest : m_seen;
    QSqlQuery query = selectRows(database, QStringLiteral("WHERE uid > %1 AND uid <= %2").arg(m_lookedAt).arg(upTo));
    while (query.next())
        look(rowOf(query));
    m_lookedAt = upTo;
    m_seen = newest;
    m_pictures.sourceImages += removeImages(file("/DBFiles/SrcImages"));
}

void RecordsAudit::look(const RecordedRow& row)
{
    if (row.hasImage)
        m_shown.append({row.timeMs, !row.picture.isEmpty()});
    if (row.picture.isEmpty())
        return;
    const QString path = m_home + row.picture;
    const bool whole = isWhole(path);
    ++(whole ? m_pictures.good : m_pictures.bad);
    if (!whole && m_pictures.examples.size() < maxNamed)
        m_pictures.examples << path + QStringLiteral(": missing, or no whole picture");
    QFile::remove(path);
}

/// The archive writes in order, so the rows whose pictures waited at a moment are the last ones before it.
void RecordsAudit::judgePictures(const QVector<qint64>& killsMs, const QVector<FaultTime>& faults)
{
    std::stable_sort(m_shown.begin(), m_shown.end(),
                     [](const Shown& a, const Shown& b) { return a.timeMs < b.timeMs; });
    QVector<bool> excused(m_shown.size(), false);
    const auto excuseBefore = [&](qint64 moment) {
        const auto end = std::lower_bound(m_shown.begin(), m_shown.end(), moment,
                                          [](const Shown& a, qint64 ms) { return a.timeMs < ms; });
        int named = 0;
        for (auto i = static_cast<int>(end - m_shown.begin()) - 1; i >= 0 && named <= writers; --i) {
            excused[i] = true;
            named += m_shown[i].named;
        }
    };
    for (const qint64 kill : killsMs)
        excuseBefore(kill);
    for (const FaultTime& fault : faults) {
        excuseBefore(fault.beginMs);
        for (int i = 0; i < m_shown.size(); ++i)
            if (m_shown[i].timeMs >= fault.beginMs && m_shown[i].timeMs <= fault.endMs + secondMs)
                excused[i] = true;
    }
    QStringList unnamed;
    for (int i = 0; i < m_shown.size(); ++i) {
        if (m_shown[i].named)
            continue;
        if (excused[i])
            ++m_pictures.lostByFault;
        else
            unnamed << QDateTime::fromMSecsSinceEpoch(m_shown[i].timeMs).toString(Qt::ISODateWithMs);
    }
    m_pictures.givenUp = qMin(unnamed.size(), givenUpByLog());
    m_pictures.unnamed = unnamed.size() - m_pictures.givenUp;
    if (m_pictures.unnamed > 0)
        m_pictures.examples << QStringLiteral("rows that name no picture: ") +
                                   unnamed.mid(0, maxNamed).join(QStringLiteral(", "));
    m_pictures.withoutRow = removeImages(file("/DBFiles/Images"));
}

/// Of source images as well: a row cannot tell whose share is its own.
int RecordsAudit::givenUpByLog() const
{
    static const QRegularExpression said(QStringLiteral("图像保存已跟上，期间放弃了(\\d+)幅图像"));
    OpenFile log(file("/dbLog.db"));
    int count = 0;
    QSqlQuery query = log.exec(QStringLiteral("SELECT message FROM SystemInfo WHERE message LIKE '%期间放弃了%'"));
    while (query.next())
        count += said.match(query.value(0).toString()).captured(1).toInt();
    return count;
}

QVector<RecordedRow> RecordsAudit::rows() const
{
    OpenFile database(file(results));
    QVector<RecordedRow> rows;
    for (QSqlQuery query = selectRows(database, QString()); query.next();)
        rows.append(rowOf(query));
    return rows;
}

void RecordsAudit::spoil() const
{
    OpenFile(file(results))
        .exec(QStringLiteral("DELETE FROM RltTable WHERE uid = (SELECT (min(uid) + max(uid)) / 2 FROM RltTable)"));
}

QStringList RecordsAudit::damages(qint64 maxBytes) const
{
    QStringList problems;
    for (const char* name : {results, "/DBFiles/wheelhubzd.db", "/dbLog.db"}) {
        const QString problem = QFileInfo(file(name)).size() > maxBytes ? QString() : problemOf(file(name));
        if (!problem.isEmpty())
            problems << problem;
    }
    for (const char* folder : {"", "/DBFiles", "/user"}) {
        const QStringList aside = QDir(file(folder)).entryList({QStringLiteral("*.damaged-*")}, QDir::Files);
        for (const QString& name : aside)
            problems << file(folder) + QLatin1Char('/') + name + QStringLiteral(": was put aside");
    }
    for (QDirIterator files(file("/user"), {QStringLiteral("*.json")}, QDir::Files); files.hasNext();) {
        QFile json(files.next());
        if (!json.open(QIODevice::ReadOnly) || QJsonDocument::fromJson(json.readAll()).isNull())
            problems << json.fileName() + QStringLiteral(": is no JSON");
    }
    return problems;
}
