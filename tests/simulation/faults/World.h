#pragma once

#include "Devices.h"
#include "Records.h"
#include "config/CellLimits.h"
#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "support/ManualScheduler.h"
#include "workflow/Cell.h"

class SqlConnection;

namespace Simulation {

/// One plant in this process: the cell on simulated devices, disk and clock, through the steps of a plan. The same plan
/// is the same run.
class World
{
public:
    struct Outcome
    {
        int step = -1;  ///< at which the rule broke, counted from 0
        QString broken; ///< the rule; empty when all held
        qint64 triggers = 0;
        qint64 ms = 0; ///< simulated
    };

    /// Below `folder`, which is empty and the world's own.
    World(const Plan& plan, const QString& folder);
    ~World();

    Outcome run();

private:
    struct Flight
    {
        quint64 session;
        Step fate;
    };

    void setUp();
    void startCell();
    void mirrorConfig();
    void connectCell();
    void receive(const SComFrame& frame);
    void post(int command, int word0, int word1, const Step& fate = {});
    void pass(qint64 ms);
    void apply(const Step& step);

    // Faults.
    void sendModels(int choice);
    void sendNoise(int choice);
    void cutLine(int ms);
    void stray(const Step& step);
    void beginDiskFault(int fault, int choice);
    void endDiskFault();
    void lockDatabase(const QString& name);
    void replaceDatabase(int choice);
    void setClock(int choice);
    void change(int setting, int choice);
    void edit(int kind, int choice);

    // The end of a cell, and of all faults.
    void restart(bool heals);
    void cutPower(int choice);
    void adoptTables();
    void adoptCounts(bool exact);
    void endFaults();
    void calm();
    void provePart(int station);
    void checkAlarms();
    void checkTables();

    QString home(const char* below = "") const { return m_home + QLatin1String(below); }
    /// Whether the disk was at fault so lately that what was recorded may still wait.
    bool isInTrouble() const { return m_fault >= 0 || m_ledger.ms() < m_troubleUntil; }
    void beginTrouble();
    /// Rows up to then are on the disk for sure.
    qint64 flushedUntil() const { return (isInTrouble() ? m_troubleSince : m_ledger.ms()) - flushedAfterMs; }

    /// A row is on the disk so long after its part at the latest.
    static constexpr qint64 flushedAfterMs = 150;
    static constexpr qint64 healthyAfterMs = 13000;

    const Plan m_plan;
    const QString m_home;
    ManualScheduler m_scheduler;
    Ledger m_ledger;
    Records m_records;
    ksSysConfig m_settings;
    std::unique_ptr<ksGlobalConfig> m_config;
    CellLimits m_limits;
    std::unique_ptr<Cell> m_cell;
    Modules* m_modules = nullptr; ///< the cell's
    std::deque<Flight> m_flights; ///< frames that the cell has not seen yet
    std::unique_ptr<Scheduler::Timer> m_lineBack;
    std::unique_ptr<Scheduler::Timer> m_diskBack;
    std::unique_ptr<SqlConnection> m_locker;
    quint64 m_sessions = 1;
    int m_fault = -1; ///< of the disk
    qint64 m_troubleSince = 0;
    qint64 m_troubleUntil = 0;
    std::size_t m_rowsAtReplacement = ~std::size_t(0);
    bool m_clockSet = false;
    int m_gone = 0;                ///< folders that went
    QSet<QByteArray> m_tableFiles; ///< every content that the index tables' file was given
};

} // namespace Simulation
