#include "Disk.h"
#include "World.h"
#include "db/ResultReader.h"
#include "db/SqlConnection.h"
#include "workflow/CZdCtrl.h"
#include "workflow/ModelManager.h"
#include "workflow/PlcFrames.h"

#include <QDir>

namespace Simulation {
namespace {

/// Between the end of a program and its next start, at the least.
constexpr qint64 startMs = 1000;

QString namesOf(const QVector<Alarm>& alarms)
{
    QStringList names;
    for (const Alarm& alarm : alarms)
        names << QStringLiteral("%1/%2 %3").arg(alarm.kind).arg(alarm.subject, alarm.detail);
    return names.join(QStringLiteral("; "));
}

} // namespace

/// The orderly end of the program, and its next start. What the disk did not take on the way is lost.
void World::restart(bool heals)
{
    if (heals)
        endDiskFault();
    const bool lost = m_fault == Full || m_fault == ReadOnly || m_fault == Broken;
    for (Row& row : m_ledger.rows)
        row.mayMiss |= lost && row.ms >= m_troubleSince - flushedAfterMs;
    const bool exact = !m_clockSet && !isInTrouble();
    m_cell.reset();
    m_records.checkDeleted();
    endDiskFault();
    m_scheduler.advance(startMs);
    startCell();
    adoptCounts(exact);
    if (m_ledger.inHand() > 0)
        m_ledger.fail(QStringLiteral("triggers outlived the cell"));
}

void World::cutPower(int choice)
{
    Random random(m_plan.seed * 1000 + quint64(choice));
    for (Row& row : m_ledger.rows)
        row.mayMiss |= row.ms > flushedUntil();
    const bool sound = !isInTrouble();
    const Disk::Left left = Disk::instance().afterPowerCut(random);
    Disk::instance().setFault(Disk::None);
    m_cell.reset();
    m_locker.reset();
    endDiskFault();
    Disk::instance().restore(left);
    m_scheduler.advance(startMs);
    startCell();
    m_records.checkRows();
    adoptCounts(false);
    for (const Alarm& alarm : m_cell->alarms().alarms()) {
        if (alarm.kind == Alarm::ConfigDamaged || (sound && alarm.kind == Alarm::DatabaseMovedAside))
            m_ledger.fail(QStringLiteral("after a power cut: ") + namesOf({alarm}));
    }
}

/// The tables of the start: those of a file that was written whole.
void World::adoptTables()
{
    QFile file(home("/user/plcIndex.json"));
    if (!file.open(QIODevice::ReadOnly) && m_ledger.tables.isEmpty())
        return m_ledger.fail(QStringLiteral("no index tables"));
    const QByteArray content = file.readAll();
    if (!m_tableFiles.isEmpty() && !m_tableFiles.contains(content))
        m_ledger.fail(QStringLiteral("the index tables' file was never so: %1").arg(QString::fromUtf8(content)));
    m_tableFiles << content;
    for (const char* solution : {"工位1", "工位2"}) {
        const QString name = QString::fromUtf8(solution);
        m_ledger.tables[name] = m_cell->controller()->plcIndices().table(name);
    }
}

/// The counts of the start: after an orderly end those of before; else no more than there were.
void World::adoptCounts(bool exact)
{
    m_ledger.day = m_scheduler.now().date();
    for (int i = 0; i < 2; ++i) {
        const DayCount& own = m_cell->counts().of(i + 1);
        DayCount& expected = m_ledger.counts[i];
        const bool more =
            own.found > expected.found || own.notFound > expected.notFound || own.refused > expected.refused;
        const bool less =
            own.found < expected.found || own.notFound < expected.notFound || own.refused < expected.refused;
        if ((more && !m_clockSet) || (less && exact))
            m_ledger.fail(QStringLiteral("station %1 counts %2, %3, %4 after the start, and %5, %6, %7 before")
                              .arg(i + 1)
                              .arg(own.found)
                              .arg(own.notFound)
                              .arg(own.refused)
                              .arg(expected.found)
                              .arg(expected.notFound)
                              .arg(expected.refused));
        expected = own;
    }
}

void World::endFaults()
{
    endDiskFault();
    m_lineBack->stop();
    if (m_ledger.line == 0)
        m_ledger.line = ++m_sessions;
    m_config->onlineMode = m_config->useClearProtect = true;
    m_config->save();
    m_cell->applySettings({});
    mirrorConfig();
}

/// Once all faults are over, the cell is well within its bound: parts are found, rows are written, alarms go.
void World::calm()
{
    ManualScheduler::settle();
    endFaults();
    pass(healthyAfterMs);
    if (m_ledger.inHand() > 0)
        m_ledger.fail(QStringLiteral("%1 triggers in hand, long after").arg(m_ledger.inHand()));
    m_cell->alarms().acknowledge();
    int indices[2] = {0, 0};
    for (int i = 0; i < 2; ++i) {
        const QMap<QString, int> table = m_ledger.tables[m_ledger.stations[i].solution];
        indices[i] = table.isEmpty() ? 0 : table.first();
    }
    post(plc::ModelIndex, indices[0], indices[1]);
    pass(10);
    for (int station : {1, 2})
        provePart(station);
    pass(2000);
    m_records.checkRows();
    checkTables();
    checkAlarms();
}

void World::provePart(int station)
{
    const int before = m_ledger.found();
    post(plc::Trigger, station + 4, 0);
    pass(m_ledger.filterMs + 400);
    if (m_ledger.found() != before + 1)
        m_ledger.fail(QStringLiteral("after the faults, a part of station %1 is not answered").arg(station));
}

void World::checkAlarms()
{
    QVector<Alarm> left;
    for (const Alarm& alarm : m_cell->alarms().alarms()) {
        const bool unsaved = alarm.kind == Alarm::ImagesUnwritable; // until the next picture that is saved
        if (!alarm.isLatched() && !alarm.isQuiet() && !unsaved)
            left << alarm;
    }
    if (!left.isEmpty())
        m_ledger.fail(QStringLiteral("alarms that do not go: ") + namesOf(left));
    if (m_cell->records()->health().resultsWaiting > 0)
        m_ledger.fail(QStringLiteral("results wait for a database that is well"));
}

} // namespace Simulation
