#include "Disk.h"
#include "World.h"
#include "db/SqlConnection.h"
#include "workflow/CZdCtrl.h"
#include "workflow/ModelManager.h"
#include "workflow/PlcFrames.h"

#include <valvecell/HomeFiles.h>

#include <QDir>

namespace Simulation {
namespace {

/// Frames of no meaning, and words that no PLC program would send: command and two words.
using Noise = std::array<int, 3>;
constexpr Noise noises[] = {{plc::Trigger, 7, 0},
                            {plc::Trigger, 0, 5},
                            {plc::Trigger, -1, 0},
                            {plc::ModelIndex, 32767, -32768},
                            {plc::ModelIndex, -2, -1},
                            {'H', 6, 50},
                            {'F', 5, 5},
                            {0, 0, 0},
                            {0xff, 5, 6}};

constexpr qint64 clockSteps[] = {-1, 1, 59, -59, 3600, -3600, 86400, -86400, 3 * 86400};

} // namespace

void World::sendModels(int choice)
{
    const auto index = [this](int station, int number) {
        const QList<int> known = m_ledger.tables[m_ledger.stations[station - 1].solution].values();
        return number % 10 < 8 && !known.isEmpty() ? known[number % known.size()] : number % 10 == 8 ? 0 : number % 40;
    };
    post(plc::ModelIndex, index(1, choice), index(2, choice / 10));
}

void World::sendNoise(int choice)
{
    const Noise& noise = noises[choice % int(std::size(noises))];
    post(noise[0], noise[1], noise[2]);
}

void World::cutLine(int ms)
{
    m_ledger.line = 0;
    m_lineBack->start(ms);
}

void World::stray(const Step& step)
{
    const QString key = QStringLiteral("cam%1").arg(step.value % 5 == 0 ? 9 : step.station);
    m_modules->cameras().stray(key);
}

void World::beginTrouble()
{
    if (!isInTrouble())
        m_troubleSince = m_ledger.ms();
}

void World::beginDiskFault(int fault, int choice)
{
    endDiskFault();
    beginTrouble();
    m_fault = fault;
    m_diskBack->start(choice * 10);
    switch (fault) {
    case Full:
        return Disk::instance().setFault(Disk::NoSpace);
    case ReadOnly:
        return Disk::instance().setFault(Disk::NoWriting);
    case Broken:
        return Disk::instance().setFault(Disk::BadSectors);
    case Locked:
        return lockDatabase(QLatin1String(choice % 3 == 0 ? "/DBFiles/wheelhubzd.db" : "/DBFiles/Pellix.db"));
    case FolderGone:
        for (Row& row : m_ledger.rows)
            row.mayMiss |= row.ms > flushedUntil(); // nobody finds the file to flush it
        QFile::rename(home("/DBFiles"), home("/DBFiles.gone-") + QString::number(++m_gone));
        break;
    default:
        for (Row& row : m_ledger.rows)
            row.mayMiss = true;
        m_rowsAtReplacement = m_ledger.rows.size();
        replaceDatabase(fault == FileDeleted ? 3 : choice % 3);
        break;
    }
    Records::forgetDeleted();
}

/// None that was replaced since the cell last wrote: another program would mix the new file with the old one's log.
void World::lockDatabase(const QString& name)
{
    if (m_ledger.rows.size() == m_rowsAtReplacement)
        return;
    m_locker = std::make_unique<SqlConnection>(QStringLiteral("QSQLITE"));
    m_locker->database().setDatabaseName(m_home + name);
    m_locker->database().setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
    m_locker->database().open();
    m_locker->exec(QStringLiteral("BEGIN IMMEDIATE"));
}

/// By a spoiled file, an empty one, another program's, or none.
void World::replaceDatabase(int choice)
{
    const QString path = home("/DBFiles/Pellix.db");
    const QString other = home("/DBFiles/other.db");
    if (choice == 3)
        return void(QFile::remove(path));
    if (choice == 2) {
        SqlConnection foreign(QStringLiteral("QSQLITE"));
        foreign.database().setDatabaseName(other);
        foreign.database().open();
        foreign.exec(QStringLiteral("CREATE TABLE orders(id INTEGER)"));
    } else {
        HomeFiles::writeFile(other, choice == 0 ? QByteArray(9000, 'x') : QByteArray(), nullptr);
    }
    QFile::rename(path, home("/DBFiles/replaced"));
    QFile::rename(other, path);
    QFile::remove(home("/DBFiles/replaced"));
}

void World::endDiskFault()
{
    m_diskBack->stop();
    if (m_fault < 0)
        return;
    m_fault = -1;
    m_troubleUntil = m_ledger.ms() + healthyAfterMs;
    Disk::instance().setFault(Disk::None);
    m_locker.reset();
    Records::forgetDeleted();
}

void World::setClock(int choice)
{
    m_clockSet = true;
    const QDateTime now = m_scheduler.now();
    constexpr int count = int(std::size(clockSteps));
    m_scheduler.setClock(choice % (count + 1) == count ? QDateTime(now.date(), QTime(23, 59, 58))
                                                       : now.addSecs(clockSteps[choice % count]));
}

void World::change(int setting, int choice)
{
    AuditChanges changes;
    StationConfig& first = m_config->stations[0];
    StationConfig& second = m_config->stations[1];
    switch (setting) {
    case Online:
        m_config->onlineMode = choice % 4 != 0;
        break;
    case Protection:
        m_config->useClearProtect = choice % 4 != 0;
        break;
    case Filter:
        m_config->trigerFilter = choice % 2 * (choice % 300);
        break;
    case Deadline:
        m_limits.answerDeadlineMs = choice % 3 == 0 ? 500 : choice % 3 == 1 ? 1000 : int(longestDeadlineMs);
        break;
    case SwapCameras:
        std::swap(first.camKey, second.camKey);
        break;
    case SwapSolutions:
        std::swap(first.solution, second.solution);
        changes << AuditChange{QStringLiteral("station_solution_1"), second.solution, first.solution};
        break;
    case Saving:
        m_settings.saveSrcImage[choice % 2] = m_plan.saves && choice % 3 != 0;
        break;
    case Cleaning:
        m_settings.cleanSrcImages = m_settings.cleanRltImages = choice % 2 == 0;
        m_settings.cleanDays = 1 + choice % 3;
        changes << AuditChange{QStringLiteral("CheckThread/days"), {}, {}};
        break;
    default:
        break;
    }
    m_config->save();
    m_cell->applySettings(changes);
    mirrorConfig();
}

void World::edit(int kind, int choice)
{
    ModelManager& models = *m_cell->models();
    const QString name = QStringLiteral("M%1").arg(choice % 6);
    const QString other = QStringLiteral("M%1").arg(choice / 6 % 6);
    const int index = 3 + choice / 10 % 12;
    QString error;
    bool done = false;
    switch (kind) {
    case AddModel:
        done = models.addModel(name, index, &error);
        break;
    case RemoveModel:
        done = models.removeModel(name, &error);
        break;
    case RenameModel:
        done = models.renameModel(name, other, &error);
        break;
    default:
        done = models.changeIndex(name, index, &error);
        break;
    }
    for (const char* solution : {"工位1", "工位2"}) {
        QMap<QString, int>& table = m_ledger.tables[QString::fromUtf8(solution)];
        if (done && kind == RemoveModel)
            table.remove(name);
        else if (done && kind == RenameModel && table.contains(name))
            table.insert(other, table.take(name));
        else if (done && kind != RenameModel)
            table.insert(name, index);
    }
    checkTables();
}

/// Tables, their file and the library are what was last changed with success.
void World::checkTables()
{
    for (auto it = m_ledger.tables.cbegin(); it != m_ledger.tables.cend(); ++it) {
        if (m_cell->controller()->plcIndices().table(it.key()) != it.value())
            m_ledger.fail(QStringLiteral("the index table of %1 is not what was made of it").arg(it.key()));
    }
    QFile file(home("/user/plcIndex.json"));
    if (file.open(QIODevice::ReadOnly))
        m_tableFiles << file.readAll();
    PlcIndexTable stored(m_home);
    stored.load();
    for (auto it = m_ledger.tables.cbegin(); it != m_ledger.tables.cend(); ++it) {
        if (stored.table(it.key()) != it.value())
            m_ledger.fail(QStringLiteral("the index table of %1 is not what its file says").arg(it.key()));
    }
    if (!m_cell->records()->health().libraryError.isEmpty() || isInTrouble())
        return;
    QStringList names;
    for (int row = 0; row < m_cell->models()->modelCount(); ++row)
        names << m_cell->models()->modelName(row);
    for (const QString& name : m_ledger.tables.first().keys()) {
        if (!names.contains(name))
            m_ledger.fail(QStringLiteral("the library lacks model %1").arg(name));
    }
}

} // namespace Simulation
