#include "Records.h"

#include "Disk.h"
#include "Ledger.h"
#include "db/SqlConnection.h"
#include "workflow/PlcFrames.h"

#include <QDir>
#include <QRegularExpression>
#include <QVariant>

namespace Simulation {
namespace {

QString textOf(const QSqlQuery& row)
{
    return QStringLiteral("%1 %2 %3 %4")
        .arg(row.value(0).toString(), row.value(1).toString(), plc::cutText(plc::normalised(row.value(2).toDouble())),
             row.value(3).toString());
}

} // namespace

/// From `first` on; of two that are alike the one that must be there.
std::size_t Records::rowOf(const QString& text, std::size_t first) const
{
    const std::deque<Row>& rows = m_ledger.rows;
    std::size_t found = rows.size();
    for (std::size_t i = first; i < rows.size(); ++i) {
        const bool isIt = !m_seen[int(i)] && rows[i].text == text;
        if (isIt && (found == rows.size() || !rows[i].mayMiss))
            found = i;
        if (found < rows.size() && (!isIt || !rows[i].mayMiss))
            break;
    }
    return found;
}

/// Of what cannot be read, the rows are missing.
void Records::checkFile(const QString& path)
{
    SqlConnection connection(QStringLiteral("QSQLITE"));
    connection.database().setDatabaseName(path);
    connection.database().setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    connection.database().open();
    QSqlQuery row =
        connection.exec(QStringLiteral("select time, value2, dAngle, value3, stationName from RltTable order by uid"));
    std::size_t next = 0;
    while (row.next()) {
        if (row.value(4).toString() == QLatin1String("Station_0"))
            continue; // what a result of another solution leaves
        const QString text = textOf(row);
        const std::size_t at = rowOf(text, next);
        if (at == m_ledger.rows.size())
            return m_ledger.fail(QStringLiteral("%1 holds a row too many, or not in its place: %2").arg(path, text));
        m_seen[int(at)] = true;
        next = at + 1;
    }
}

void Records::checkRows()
{
    const Disk::Fault fault = Disk::instance().fault();
    Disk::instance().setFault(Disk::None);
    m_seen.fill(false, static_cast<int>(m_ledger.rows.size()));
    const QStringList folders = QDir(m_home).entryList({QStringLiteral("DBFiles*")}, QDir::Dirs);
    for (const QString& folder : folders) {
        const QDir own(m_home + QLatin1Char('/') + folder);
        const QStringList files = own.entryList({QStringLiteral("Pellix.db*")}, QDir::Files);
        for (const QString& file : files) {
            if (!QRegularExpression(QStringLiteral("-(wal|shm|journal)|\\.json$")).match(file).hasMatch())
                checkFile(own.filePath(file));
        }
    }
    std::deque<Row> present;
    for (std::size_t i = 0; i < m_ledger.rows.size(); ++i) {
        const Row& row = m_ledger.rows[i];
        if (m_seen[int(i)])
            present.push_back(row);
        else if (!row.mayMiss)
            m_ledger.fail(QStringLiteral("the database has no row \"%1\", of %2 ms").arg(row.text).arg(row.ms));
    }
    m_ledger.rows = present;
    Disk::instance().setFault(fault);
}

void Records::checkDeleted()
{
    static const QRegularExpression may(
        QStringLiteral("/(Images|SrcImages)/\\d{4}-\\d\\d-\\d\\d/Station[12]/[^/]+/\\d{4}_\\d\\d_\\d\\d_\\d{9}(_\\d+)?"
                       "\\.jpg(\\.[A-Za-z]{6})?$|-(wal|shm|journal)$|\\.waiting\\.json$|\\.json\\.[A-Za-z]{6}$"));
    for (const std::string& path : Disk::instance().takeDeleted()) {
        if (!may.match(QString::fromStdString(path)).hasMatch())
            m_ledger.fail(QStringLiteral("the cell deleted %1").arg(QString::fromStdString(path)));
    }
}

void Records::forgetDeleted()
{
    Disk::instance().takeDeleted();
}

} // namespace Simulation
