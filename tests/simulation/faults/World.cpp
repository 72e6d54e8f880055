#include "World.h"

#include "Disk.h"
#include "db/SqlConnection.h"
#include "workflow/CZdCtrl.h"
#include "workflow/PlcFrames.h"

#include <valvecell/HomeFiles.h>

#include <QDir>

namespace Simulation {

World::World(const Plan& plan, const QString& folder)
    : m_plan(plan)
    , m_home(folder)
    , m_ledger(m_scheduler)
    , m_records(folder, m_ledger)
    , m_lineBack(m_scheduler.timer(Scheduler::SingleShot, [this] { m_ledger.line = ++m_sessions; }))
    , m_diskBack(m_scheduler.timer(Scheduler::SingleShot, [this] { endDiskFault(); }))
{
    Disk::instance().insert(QFile::encodeName(folder).toStdString(),
                            [this] { return m_scheduler.now().toMSecsSinceEpoch(); });
    setUp();
    startCell();
}

World::~World()
{
    m_cell.reset();
    m_locker.reset();
    Disk::instance().remove();
}

void World::setUp()
{
    QDir().mkpath(home("/user"));
    const QByteArray models = R"([{"Name": "五辐", "PlcIndex": 1}, {"Name": "钢圈", "PlcIndex": 2}])";
    QString error;
    HomeFiles::writeFile(home("/user/plcIndex.json"), "{\"工位1\": " + models + ", \"工位2\": " + models + "}", &error);
    ksGlobalConfig config;
    for (int number : {1, 2}) {
        StationConfig& station = config.station(number);
        station.camKey = QStringLiteral("cam%1").arg(number);
        station.solution = QStringLiteral("工位%1").arg(number);
        station.runModel = QStringLiteral("五辐");
    }
    config.onlineMode = config.useClearProtect = true;
    config.trigerFilter = 0;
    config.save();
    for (int i = 0; i < 2; ++i)
        m_settings.saveSrcImage[i] = m_settings.saveRltImage[i] = m_plan.saves;
    m_limits.answerDeadlineMs = m_plan.deadlineMs;
    // Of an old day: a picture of the archive, and what a plant put beside it.
    for (const char* name : {"2026_03_20_120000000.jpg", "Meister.jpg", "2026_03_20.txt"})
        HomeFiles::writeFile(home("/DBFiles/Images/2026-03-20/Station1/五辐/") + QLatin1String(name), "x", &error);
    m_ledger.day = m_scheduler.now().date();
}

void World::startCell()
{
    m_flights.clear();
    m_config = std::make_unique<ksGlobalConfig>();
    m_config->load(&m_config->loadProblem);
    m_ledger.restarted();
    mirrorConfig();
    auto modules = std::make_unique<Modules>(m_ledger, m_scheduler, m_plan.numbered);
    m_modules = modules.get();
    m_cell = std::make_unique<Cell>(Cell::Ground{m_home, m_settings, *m_config, m_limits, nullptr, m_scheduler},
                                    std::move(modules));
    connectCell();
    m_cell->loadModules();
    m_cell->openSerialPort([this](const SComFrame& frame) { receive(frame); });
    m_cell->prepareImageFolders();
    m_cell->openResultDatabase();
    m_cell->createAutoTrigger();
    m_cell->createController();
    m_cell->connectStations();
    m_cell->selectRunModels();
    m_cell->startStatusTick();
    m_cell->enableStations();
    m_cell->openRoad();
    m_scheduler.advance(0); // rows that waited in their file go in, and are counted
    adoptTables();
}

void World::mirrorConfig()
{
    for (int i = 0; i < 2; ++i) {
        const StationConfig& station = m_config->stations[i];
        m_ledger.stations[i].camera = station.camKey;
        m_ledger.stations[i].solution = station.solution;
        m_ledger.stations[i].runModel = station.runModel;
    }
    m_ledger.online = m_config->onlineMode;
    m_ledger.protection = m_config->useClearProtect;
    m_ledger.filterMs = m_config->trigerFilter;
    m_ledger.deadlineMs = m_limits.answerDeadlineMs;
}

void World::connectCell()
{
    QObject::connect(m_cell.get(), &Cell::readingChanged,
                     [this](int station, const StationReading& reading) { m_ledger.shown(station, reading); });
    QObject::connect(m_cell.get(), &Cell::captureRefused, [this](int station) { m_ledger.refused(station); });
}

void World::receive(const SComFrame& frame)
{
    const Flight flight = m_flights.front();
    m_flights.pop_front();
    const int station = frame.command == plc::Trigger ? plc::triggeredStation(frame) : -1;
    if (frame.command == plc::ModelIndex)
        m_ledger.indices(frame.data[0], frame.data[1]);
    if (station > 0)
        m_ledger.trigger(station, flight.session, flight.fate);
    m_cell->receive(frame);
    if (station > 0)
        m_ledger.triggerTaken();
}

/// A line that is cut carries nothing.
void World::post(int command, int word0, int word1, const Step& fate)
{
    if (m_ledger.line == 0)
        return;
    SComFrame frame;
    frame.command = static_cast<quint8>(command);
    frame.data[0] = static_cast<qint16>(word0);
    frame.data[1] = static_cast<qint16>(word1);
    m_flights.push_back({m_ledger.line, fate});
    m_modules->port().receive(frame);
}

void World::pass(qint64 ms)
{
    m_scheduler.advance(ms);
    ManualScheduler::settle();
    m_ledger.check(m_cell->counts());
    m_records.checkDeleted();
    if (m_cell->records()->health().resultsWaiting > 10000)
        m_ledger.fail(QStringLiteral("more results wait than may"));
}

void World::apply(const Step& step)
{
    const bool isFrame = step.kind == Step::Part || step.kind == Step::Models || step.kind == Step::Noise;
    if (!isFrame && step.kind != Step::Cut)
        ManualScheduler::settle();
    switch (step.kind) {
    case Step::Part:
        post(plc::Trigger, step.station + 4, 0, step);
        break;
    case Step::Models:
        sendModels(step.value);
        break;
    case Step::Noise:
        sendNoise(step.value);
        break;
    case Step::Cut:
        cutLine(step.value);
        break;
    case Step::Stray:
        stray(step);
        break;
    case Step::Disk:
        beginDiskFault(step.what, step.value);
        break;
    case Step::Clock:
        setClock(step.value);
        break;
    case Step::Setting:
        change(step.what, step.value);
        break;
    case Step::Edit:
        edit(step.what, step.value);
        break;
    case Step::Snap:
        m_ledger.snap(step.station, step);
        m_cell->enterTestMode(step.station == 1 ? TestMode::SnapStation1 : TestMode::SnapStation2);
        break;
    case Step::Restart:
        restart(step.value % 2 == 0);
        break;
    case Step::PowerCut:
        cutPower(step.value);
        break;
    case Step::Calm:
        calm();
        break;
    }
    if (step.ms >= 0)
        pass(step.ms);
}

World::Outcome World::run()
{
    Outcome outcome;
    for (int i = 0; i < m_plan.steps.size() && m_ledger.broken.isEmpty(); ++i) {
        outcome.step = i;
        apply(m_plan.steps[i]);
    }
    if (m_ledger.broken.isEmpty())
        calm();
    outcome.broken = m_ledger.broken;
    outcome.triggers = m_ledger.triggers;
    outcome.ms = m_ledger.ms();
    return outcome;
}

} // namespace Simulation
