#include "SoakSession.h"

#include <QDateTime>

namespace {

/// For an answer, or the program's start, on the most loaded machine: far beyond what is good.
constexpr int patienceSeconds = 120;
constexpr int sweepSeconds = 30;
constexpr int warmAnswers = 20;
constexpr int answersBeforeBurst = 60;
constexpr int idleSeconds = 10;
constexpr int burstFactor = 10;
constexpr int refusalEvery = 25;
constexpr int longestLifeMs = 700;
constexpr qint64 largestToCheck = 64LL * 1024 * 1024;

} // namespace

SoakSession::SoakSession(SoakOptions options, const QString& home)
    : m_options(std::move(options))
    , m_home(home)
    , m_program(m_options.programs + QStringLiteral("/valvecell"), home)
    , m_faults(m_options.faults, m_options.seed, {home, m_program, m_options.networkCameras ? &m_cameras : nullptr})
    , m_audit(home)
{
    m_report.options = m_options;
    m_killSoon.setSingleShot(true);
    connect(&m_killSoon, &QTimer::timeout, this, &SoakSession::kill);
    connect(&m_second, &QTimer::timeout, this, &SoakSession::onSecond);
    connect(&m_line, &PlcLine::frameReceived, this, &SoakSession::onFrame);
    connect(&m_program, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, &SoakSession::onEnded);
    connect(&m_faults, &FaultDriver::killWanted, this, &SoakSession::kill);
    connect(&m_faults, &FaultDriver::cutWanted, this, &SoakSession::cut);
    connect(&m_faults, &FaultDriver::happened, this, &SoakSession::happened);
}

CellFeeder::Pace SoakSession::pace() const
{
    return {m_options.rate * (m_flooded ? burstFactor : 1), m_flooded, m_options.burst ? 0 : refusalEvery};
}

bool SoakSession::start(QString* error)
{
    std::array<ImageCycle, 2> images;
    for (int i = 0; i < 2; ++i)
        if (!images[i].load(m_home + QStringLiteral("/images/%1").arg(i + 1), error))
            return false;
    if (m_options.networkCameras && !m_cameras.start(m_options.programs, m_home, error))
        return false;
    if (!m_line.openLink(m_home + QStringLiteral("/plc"), error))
        return false;
    connect(&m_line, &PlcLine::pluggedIn, this, &SoakSession::onPluggedIn);
    m_feeder = std::make_unique<CellFeeder>(m_line, m_ledger, images, pace());
    connect(m_feeder.get(), &CellFeeder::answered, this, &SoakSession::onAnswered);
    connect(&m_faults, &FaultDriver::imagesLost, m_feeder.get(), &CellFeeder::loseOrder);
    m_since.start();
    m_second.start(1000);
    onPluggedIn();
    return true;
}

void SoakSession::stop()
{
    if (!m_windingUp)
        windUp();
}

void SoakSession::onFrame(const SComFrame& frame)
{
    if (frame.command == PlcFrames::heartbeat && !m_ready && m_program.isRunning() && !m_killing)
        onReady();
}

void SoakSession::onReady()
{
    m_ready = true;
    m_secondsToWait = 0;
    const bool fresh = !m_started;
    m_started = true;
    if (fresh) {
        m_report.heartbeatMs << m_program.sinceBeginMs();
        if (m_report.heartbeatMs.size() == 1 && m_options.kills == 0)
            m_faults.start(qBound(1500, static_cast<int>(m_options.seconds() * 1000 / 12), 20000));
    }
    if (m_windingUp)
        return;
    if (m_options.kills > 0 && m_killsMs.size() == m_options.kills)
        return windUp();
    const bool imagesAnew = fresh && (!m_options.networkCameras || m_report.heartbeatMs.size() == 1);
    m_feeder->start(imagesAnew);
    if (m_options.kills > 0)
        m_killSoon.start(m_faults.random(0, longestLifeMs));
}

/// Somebody waits at any moment when parts come fast; it is that nothing moves which is given up.
void SoakSession::onAnswered()
{
    m_secondsToWait = 0;
    if (++m_answers == 1)
        m_report.firstAnswerMs << m_program.sinceBeginMs();
}

void SoakSession::kill()
{
    if (m_killing || !m_program.isRunning() || m_windingUp)
        return;
    m_killing = true;
    m_feeder->stop();
    if (m_options.networkCameras) // which go on with the next image
        m_feeder->loseOrder();
    m_program.kill();
    m_killsMs << QDateTime::currentMSecsSinceEpoch();
    if (m_options.kills == 0)
        emit happened(QStringLiteral("kill"));
}

void SoakSession::cut(int ms)
{
    if (!m_ready || m_killing || m_windingUp)
        return;
    emit happened(QStringLiteral("line cut for %1 ms").arg(ms));
    m_ready = false;
    m_feeder->stop();
    m_feeder->loseOrder();
    m_ledger.cut();
    m_line.pull(ms);
}

/// A port keeps nothing for the program that comes next, so it gets a new one.
void SoakSession::onEnded(int exitCode, QProcess::ExitStatus status)
{
    m_feeder->stop();
    if (m_terminated) {
        m_report.endedCleanly = status == QProcess::NormalExit && exitCode == 0;
        return finish();
    }
    if (!m_killing) {
        ++m_report.crashes;
        emit happened(QStringLiteral("THE PROGRAM ENDED BY ITSELF, code %1").arg(exitCode));
    }
    m_ledger.killed(m_faults.diskFullSinceMs());
    m_report.damages += m_audit.damages(largestToCheck);
    m_killing = m_ready = m_started = false;
    if (m_memory.seconds >= m_report.memory.seconds)
        m_report.memory = m_memory;
    m_memory = {};
    m_answers = 0;
    m_line.pull(1);
}

void SoakSession::onPluggedIn()
{
    if (m_program.state() == QProcess::NotRunning)
        m_program.begin();
}

void SoakSession::onSecond()
{
    readMemory();
    const auto seconds = static_cast<int>(m_since.elapsed() / 1000);
    if (seconds % sweepSeconds == 0 && !m_faults.movesPictures())
        m_audit.sweep(false);
    m_secondsToWait = m_ready && m_ledger.open() == 0 ? 0 : m_secondsToWait + 1;
    if (m_windingUp)
        return windUpFurther();
    if (m_options.burst && !m_flooded && m_answers >= answersBeforeBurst) {
        m_flooded = true;
        m_since.start();
        m_feeder->setPace(pace());
    }
    const bool begun = !m_options.burst || m_flooded;
    const bool over = m_options.kills == 0 && begun && m_since.elapsed() >= m_options.seconds() * 1000;
    if (over || m_secondsToWait > patienceSeconds)
        windUp();
}

void SoakSession::readMemory()
{
    const ProcessMemory memory = ProcessMemory::of(m_program.processId());
    if (memory.now == 0)
        return;
    ++m_memory.seconds;
    const bool warm = m_options.burst
                          ? m_answers >= answersBeforeBurst
                          : m_answers >= warmAnswers && m_memory.seconds >= qMin(60.0, m_options.seconds() / 4);
    if (m_memory.warmKiB == 0 && warm)
        m_memory.warmKiB = memory.now;
    m_memory.endKiB = memory.now;
    m_memory.peakKiB = memory.peak;
}

void SoakSession::windUp()
{
    m_windingUp = true;
    m_report.seconds = static_cast<double>(m_since.elapsed()) / 1000;
    m_faults.stop();
    m_feeder->stop();
}

/// A second after the last answer its notice has come as well.
void SoakSession::windUpFurther()
{
    if (m_terminated)
        return;
    const bool quiet = m_ready && m_ledger.open() == 0;
    m_secondsOfIdleness = quiet ? m_secondsOfIdleness + 1 : 0;
    if (m_secondsToWait > patienceSeconds)
        m_report.problem = m_ready ? QStringLiteral("answers did not come") : QStringLiteral("no heartbeat came");
    else if (m_secondsOfIdleness < (m_options.burst ? idleSeconds : 2))
        return;
    m_terminated = true;
    m_program.terminate();
    if (m_program.state() == QProcess::NotRunning)
        finish();
}

void SoakSession::finish()
{
    m_second.stop();
    if (m_memory.seconds >= m_report.memory.seconds)
        m_report.memory = m_memory;
    m_audit.sweep(true);
    if (m_options.pictures)
        m_audit.judgePictures(m_killsMs, m_faults.pictureFaults());
    if (m_options.spoil)
        m_audit.spoil();
    const QVector<RecordedRow> rows = m_audit.rows();
    m_report.rows = rows.size();
    m_report.sent = m_ledger.sentCount();
    m_report.balance = Balance::of(m_ledger, rows);
    m_report.pictures = m_audit.pictures();
    m_report.damages += m_audit.damages(std::numeric_limits<qint64>::max());
    m_report.damages.removeDuplicates();
    m_report.faults = m_faults.counts();
    if (m_options.kills > 0)
        m_report.faults[QStringLiteral("kill")] = m_killsMs.size();
    const QVector<SentTrigger> all = m_ledger.all();
    for (const SentTrigger& trigger : all)
        if (trigger.answer)
            m_report.latencyMs << trigger.latencyMs;
    m_report.stalls = SoakReport::stallsIn(m_home + QStringLiteral("/run.log"));
    emit finished();
}
