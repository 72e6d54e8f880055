#include "workflow/ModelManager.h"

#include "common/LookAlike.h"
#include "common/Scheduler.h"
#include "db/QSqliteWheelHubZd.h"
#include "db/SqlText.h"

namespace {

const QString indexColumn = QStringLiteral("md_index");
const QString calibratedColumn = QStringLiteral("md_cali");

bool fail(QString* error, const QString& text)
{
    if (error)
        *error = text;
    return false;
}

SqlValueMap newRecord(qint32 index, const QDateTime& now)
{
    return {{indexColumn, index},
            {calibratedColumn, 0},
            {QStringLiteral("md_stamp"), now.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss zzz"))}};
}

} // namespace

ModelManager::ModelManager(QSqliteWheelHubZd& library, PlcIndexTable& indices, QStringList stations,
                           const Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_library(library)
    , m_indices(indices)
    , m_stations(std::move(stations))
    , m_scheduler(scheduler)
{
    reload();
}

void ModelManager::reload()
{
    adoptTabledModels();
    refresh();
}

void ModelManager::refresh()
{
    m_models.clear();
    const QStringList names = m_library.modelNames();
    for (const QString& name : names) {
        SqlValueMap record;
        if (!m_library.readRecord(name, &record))
            continue;
        Model model{name, record.value(indexColumn).toInt(), record.value(calibratedColumn).toInt() != 0};
        for (int i = m_stations.size() - 1; i >= 0; --i)
            model.index = m_indices.table(m_stations[i]).value(name, model.index);
        m_models.append(model);
    }
    emit changed();
}

QVariant ModelManager::shownIndex(int row) const
{
    const QString none = QStringLiteral("—");
    QStringList texts;
    for (const QString& station : m_stations) {
        const PlcIndexTable::StationTable table = m_indices.table(station);
        const auto own = table.find(modelName(row));
        texts << (own == table.end() ? none : QString::number(*own));
    }
    if (m_stations.isEmpty())
        return plcIndex(row);
    if (texts.count(texts.first()) < texts.size())
        return texts.join(QStringLiteral(" / "));
    return texts.first() == none ? QVariant(none) : QVariant(plcIndex(row));
}

/// A file that was written by hand, or before the library existed, names models that the library has yet to learn.
void ModelManager::adoptTabledModels()
{
    const QStringList known = m_library.modelNames();
    for (const QString& station : m_stations) {
        const PlcIndexTable::StationTable table = m_indices.table(station);
        for (auto it = table.begin(); it != table.end(); ++it) {
            QString reason;
            if (known.contains(it.key()))
                continue;
            if (SqlText::carriesModelName(it.key(), &reason) && !LookAlike::find(known, it.key()).isEmpty())
                reason = tr("与型号%1看起来相同").arg(LookAlike::find(known, it.key()));
            if (!reason.isEmpty())
                qWarning("model %s of %s: %s", qUtf8Printable(it.key()), qUtf8Printable(station),
                         qUtf8Printable(reason));
            else
                m_library.addModel(it.key(), newRecord(it.value(), m_scheduler.now()));
        }
    }
}

bool ModelManager::contains(const QString& name) const
{
    return std::any_of(m_models.begin(), m_models.end(), [&](const Model& model) { return model.name == name; });
}

bool ModelManager::isNewName(const QString& name, QString* error, const QString& exceptName) const
{
    if (!SqlText::carriesModelName(name, error))
        return false;
    if (contains(name))
        return fail(error, tr("型号%1已存在").arg(name));
    QStringList others;
    for (const Model& model : m_models) {
        if (model.name != exceptName)
            others << model.name;
    }
    const QString alike = LookAlike::find(others, name);
    return alike.isEmpty() || fail(error, tr("与型号%1看起来相同").arg(alike));
}

/// Beyond 32767 no word of a frame carries it.
bool ModelManager::isFreeIndex(qint32 index, const QString& exceptName, QString* error) const
{
    if (index < 1 || index > 32767)
        return fail(error, tr("PLC索引%1不在1到32767之间").arg(index));
    for (const QString& station : m_stations) {
        const QStringList owners = m_indices.table(station).keys(index);
        for (const QString& owner : owners) {
            if (owner != exceptName)
                return fail(error, tr("PLC索引%1已被型号%2使用").arg(QString::number(index), owner));
        }
    }
    return true;
}

bool ModelManager::libraryFailed(QString* error) const
{
    return fail(error, tr("型号库写入失败: %1").arg(m_library.lastError()));
}

/// Changes every station's table and saves them; on failure they are as before.
template <typename Change>
bool ModelManager::changeTables(Change change, QString* error)
{
    const PlcIndexTable before = m_indices;
    for (const QString& station : m_stations) {
        PlcIndexTable::StationTable table = m_indices.table(station);
        change(table);
        m_indices.setTable(station, table);
    }
    if (m_indices.save(error))
        return true;
    m_indices = before;
    return false;
}

/// The library first, whose key refuses a second model of that name; taken out again when the tables cannot be written.
bool ModelManager::addModel(const QString& name, qint32 index, QString* error)
{
    if (!isNewName(name, error) || !isFreeIndex(index, name, error))
        return false;
    if (!m_library.addModel(name, newRecord(index, m_scheduler.now())))
        return libraryFailed(error);
    const bool tabled = changeTables([&](auto& table) { table.insert(name, index); }, error);
    if (!tabled)
        m_library.deleteModel(name);
    refresh();
    return tabled;
}

bool ModelManager::changeIndex(const QString& name, qint32 index, QString* error)
{
    QVariant old;
    if (!contains(name) || !m_library.readValue(name, indexColumn, &old))
        return fail(error, tr("型号%1不存在").arg(name));
    if (!isFreeIndex(index, name, error))
        return false;
    if (!m_library.updateValue(name, indexColumn, index))
        return libraryFailed(error);
    const bool tabled = changeTables([&](auto& table) { table.insert(name, index); }, error);
    if (!tabled)
        m_library.updateValue(name, indexColumn, old);
    refresh();
    return tabled;
}

/// A station whose table lacks the model goes on without it.
bool ModelManager::renameModel(const QString& name, const QString& newName, QString* error)
{
    if (!contains(name))
        return fail(error, tr("型号%1不存在").arg(name));
    if (!isNewName(newName, error, name))
        return false;
    const QString key = QStringLiteral("md_unique");
    if (!m_library.updateValue(name, key, newName))
        return libraryFailed(error);
    const auto rename = [&](auto& table) {
        if (table.contains(name))
            table.insert(newName, table.take(name));
    };
    const bool tabled = changeTables(rename, error);
    if (!tabled)
        m_library.updateValue(newName, key, name);
    refresh();
    return tabled;
}

bool ModelManager::removeModel(const QString& name, QString* error)
{
    SqlValueMap record;
    if (!m_library.readRecord(name, &record))
        return fail(error, tr("型号%1不存在").arg(name));
    // The tables first: a model that is only in the library is never run, one that is only in a table would be.
    const PlcIndexTable before = m_indices;
    if (!changeTables([&](auto& table) { table.remove(name); }, error))
        return false;
    m_library.deleteModel(name); // true as well when it failed
    const bool deleted = m_library.lastError().isEmpty() || libraryFailed(error);
    if (!deleted) {
        m_indices = before;
        m_indices.save();
    }
    refresh();
    return deleted;
}

bool ModelManager::setCalibrated(const QString& name, bool calibrated, QString* error)
{
    if (!contains(name))
        return fail(error, tr("型号%1不存在").arg(name));
    if (!m_library.updateValue(name, calibratedColumn, calibrated ? 1 : 0))
        return libraryFailed(error);
    refresh();
    return true;
}

bool ModelManager::setStationTable(const QString& station, const PlcIndexTable::StationTable& table, QString* error)
{
    for (auto it = table.begin(); it != table.end(); ++it) {
        if (!contains(it.key()))
            return fail(error, tr("型号%1不存在").arg(it.key()));
    }
    const PlcIndexTable before = m_indices;
    m_indices.setTable(station, table);
    if (m_indices.save(error)) {
        refresh();
        return true;
    }
    m_indices = before;
    return false;
}

void ModelManager::setCurrentModels(const QStringList& names)
{
    if (names == m_current)
        return;
    m_current = names;
    emit currentChanged();
}
