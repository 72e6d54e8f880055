#include "workflow/PlcIndexTable.h"

#include <valvecell/HomeFiles.h>

#include <QJsonArray>

namespace {

const QString nameKey = QStringLiteral("Name");
const QString indexKey = QStringLiteral("PlcIndex");

struct Tables
{
    QMap<QString, PlcIndexTable::StationTable> tables;
    QStringList problems; ///< what cannot be taken as it stands, each with its place
};

/// Of a name that occurs twice the later entry counts; one without an index gets 0, which means no model.
void readEntry(const QJsonObject& entry, PlcIndexTable::StationTable* table, QStringList* problems)
{
    const QString name = entry.value(nameKey).toString();
    const QJsonValue index = entry.value(indexKey);
    const int number = index.toInt();
    if (!entry.value(nameKey).isString())
        *problems << QStringLiteral("\"%1\" is not a text").arg(nameKey);
    if (!index.isUndefined() && (!index.isDouble() || index.toDouble() != number))
        *problems << QStringLiteral("\"%1\" of \"%2\" is not a whole number, taken for 0").arg(indexKey, name);
    if (table->contains(name))
        *problems << QStringLiteral("\"%1\" occurs twice, this one counts").arg(name);
    if (entry.size() > int(entry.contains(nameKey)) + int(entry.contains(indexKey)))
        *problems << QStringLiteral("\"%1\" has keys that are not known here").arg(name);
    table->insert(name, number);
}

Tables readTables(const QJsonObject& file, const QString& path)
{
    Tables read;
    for (auto it = file.begin(); it != file.end(); ++it) {
        const QJsonArray entries = it.value().toArray();
        if (!it.value().isArray())
            read.problems << QStringLiteral("%1, \"%2\": not a list, left out").arg(path, it.key());
        PlcIndexTable::StationTable& table = read.tables[it.key()];
        for (int i = 0; i < entries.size(); ++i) {
            QStringList problems;
            if (!entries[i].toObject().isEmpty())
                readEntry(entries[i].toObject(), &table, &problems);
            else
                problems << QStringLiteral("no entry, left out");
            for (const QString& problem : qAsConst(problems))
                read.problems << QStringLiteral("%1, \"%2\"[%3]: %4").arg(path, it.key()).arg(i).arg(problem);
        }
    }
    return read;
}

QJsonArray toJson(const PlcIndexTable::StationTable& table)
{
    QJsonArray entries;
    for (auto it = table.begin(); it != table.end(); ++it)
        entries.append(QJsonObject{{nameKey, it.key()}, {indexKey, it.value()}});
    return entries;
}

} // namespace

PlcIndexTable::PlcIndexTable(const QString& baseDir)
    : m_path(baseDir + QStringLiteral("/user/plcIndex.json"))
{
}

void PlcIndexTable::load()
{
    const HomeFiles::JsonRead read = HomeFiles::readJson(m_path);
    if (read.state == HomeFiles::JsonRead::Damaged)
        qWarning("%s", qUtf8Printable(read.error));
    const Tables stored = readTables(read.object, m_path);
    for (const QString& problem : stored.problems)
        qWarning("%s", qUtf8Printable(problem));
    m_tables = stored.tables;
}

bool PlcIndexTable::save(QString* error) const
{
    QJsonObject tables;
    for (auto it = m_tables.begin(); it != m_tables.end(); ++it)
        tables.insert(it.key(), toJson(it.value()));
    const bool loses = !readTables(HomeFiles::readJson(m_path).object, m_path).problems.isEmpty();
    return HomeFiles::writeJson(m_path, tables, error, loses);
}

QString PlcIndexTable::modelOf(const QString& station, qint32 index) const
{
    return index < 1 ? QString() : m_tables.value(station).key(index);
}
