#include "workflow/PlcIndexTable.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>

namespace {

const QString kName = QStringLiteral("Name");
const QString kIndex = QStringLiteral("PlcIndex");

/// Of a name that occurs twice the later entry counts; one without an index gets 0, which means no model.
PlcIndexTable::StationTable readTable(const QJsonArray& entries)
{
    PlcIndexTable::StationTable table;
    for (const QJsonValue& value : entries) {
        const QJsonObject entry = value.toObject();
        if (!entry.isEmpty())
            table.insert(entry.value(kName).toString(), entry.value(kIndex).toInt());
    }
    return table;
}

QJsonArray toJson(const PlcIndexTable::StationTable& table)
{
    QJsonArray entries;
    for (auto it = table.begin(); it != table.end(); ++it)
        entries.append(QJsonObject{{kName, it.key()}, {kIndex, it.value()}});
    return entries;
}

} // namespace

PlcIndexTable::PlcIndexTable(const QString& baseDir)
    : m_path(baseDir + QStringLiteral("/user/plcIndex.json"))
{
}

void PlcIndexTable::load()
{
    m_tables.clear();
    const HomeFiles::JsonRead read = HomeFiles::readJson(m_path);
    if (read.state == HomeFiles::JsonRead::Damaged)
        qWarning("%s", qUtf8Printable(read.error));
    for (auto it = read.object.begin(); it != read.object.end(); ++it)
        m_tables.insert(it.key(), readTable(it.value().toArray()));
}

bool PlcIndexTable::save(QString* error) const
{
    QJsonObject tables;
    for (auto it = m_tables.begin(); it != m_tables.end(); ++it)
        tables.insert(it.key(), toJson(it.value()));
    return HomeFiles::writeJson(m_path, tables, error);
}

QString PlcIndexTable::modelOf(const QString& station, qint32 index) const
{
    return index < 1 ? QString() : m_tables.value(station).key(index);
}
