#include "CutSession.h"

#include "Console.h"
#include "PlcFrames.h"
#include "PlcLine.h"
#include "platform/System.h"

#include <valvecell/HomeFiles.h>

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// From trigger to trigger, beyond any filter time of the program.
constexpr int pauseMs = 20;
/// The line carries triggers for so long at most.
constexpr int longestTrafficMs = 300;
/// A part that was in hand when the line was cut is done by then.
constexpr int settledMs = 300;

/// Of the program whose process id a file holds; nothing before it is there.
std::optional<double> cpuMsOf(const QString& pidFile)
{
    QFile file(pidFile);
    const qint64 pid = file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toLongLong() : 0;
    return pid > 0 ? platform::processorTimeMs(pid) : std::nullopt;
}

} // namespace

std::optional<double> CutFigures::awayCpuPercent() const
{
    return awayMs > 0 ? std::optional<double>(100 * awayCpuMs / awayMs) : std::nullopt;
}

QStringList CutFigures::summary() const
{
    QStringList lines{QStringLiteral("cuts %1, triggers %2, answered %3, in hand when the line was cut %4")
                          .arg(cuts)
                          .arg(triggers)
                          .arg(answers)
                          .arg(inHand)};
    if (const auto back = spreadOf(backMs))
        lines << QStringLiteral("back after p50 %1 ms, p95 %2 ms, p99 %3 ms, at most %4 ms")
                     .arg(back->p50, 0, 'f', 0)
                     .arg(back->p95, 0, 'f', 0)
                     .arg(back->p99, 0, 'f', 0)
                     .arg(back->max, 0, 'f', 0);
    if (const auto percent = awayCpuPercent())
        lines << QStringLiteral("processor while cut off: %1 % of a core").arg(*percent, 0, 'f', 2);
    lines << QStringLiteral("answers of a connection that was gone: %1").arg(stray);
    return lines;
}

QByteArray CutFigures::json() const
{
    QJsonObject object{
        {"cuts", cuts}, {"triggers", triggers}, {"answers", answers}, {"in_hand", inHand}, {"stray", stray}};
    if (const auto back = spreadOf(backMs))
        object["back_ms"] = QJsonObject{{"p50", back->p50}, {"p95", back->p95}, {"p99", back->p99}, {"max", back->max}};
    if (const auto percent = awayCpuPercent())
        object["cpu_away_percent"] = *percent;
    return QJsonDocument(object).toJson();
}

CutSession::CutSession(PlcLine& line, SimOptions options)
    : m_line(line)
    , m_options(std::move(options))
    , m_random(static_cast<quint32>(m_options.seed))
{
    for (QTimer* timer : {&m_traffic, &m_cut, &m_settled, &m_patience})
        timer->setTimerType(Qt::PreciseTimer);
    m_cut.setSingleShot(true);
    m_settled.setSingleShot(true);
    m_settled.setInterval(settledMs);
    m_patience.setSingleShot(true);
    m_traffic.setInterval(m_options.filterMs + m_options.filterMs / 10 + pauseMs);
    connect(&m_traffic, &QTimer::timeout, this, &CutSession::trigger);
    connect(&m_cut, &QTimer::timeout, this, &CutSession::cut);
    connect(&m_settled, &QTimer::timeout, this, &CutSession::noteSettled);
    connect(&m_patience, &QTimer::timeout, this, &CutSession::onNoProgram);
    connect(&line, &PlcLine::frameReceived, this, &CutSession::onFrame);
    connect(&line, &PlcLine::pluggedIn, this, &CutSession::onPluggedIn);
}

bool CutSession::start(QString* error)
{
    ImageCycle images[2];
    for (int i = 0; i < 2; ++i)
        if (!m_options.truth[i].isEmpty() && !images[i].load(m_options.truth[i], error))
            return false;
    m_models = PlcFrames::models(images[0].next().index, images[1].next().index);
    m_patience.start(m_options.startTimeoutMs);
    return true;
}

void CutSession::stop()
{
    report();
    emit finished(m_figures.cuts == m_options.cuts && m_figures.stray == 0 ? 0 : 1);
}

void CutSession::onFrame(const SComFrame& frame, qint64 atNs)
{
    if (!m_heard)
        onBack(atNs);
    if (frame.command != PlcFrames::heartbeat)
        count(frame);
}

void CutSession::onBack(qint64 atNs)
{
    m_heard = true;
    m_patience.stop();
    if (m_pluggedNs > 0)
        m_figures.backMs.append(static_cast<double>(atNs - m_pluggedNs) / 1e6);
    if (m_figures.cuts == m_options.cuts)
        return stop();
    m_line.send(m_models);
    m_cut.start(m_random.bounded(longestTrafficMs));
    m_traffic.start();
    trigger();
}

void CutSession::count(const SComFrame& frame)
{
    const bool ours = frame.command == PlcFrames::answerOf(station());
    if (ours && m_open > 0) {
        --m_open;
        ++m_figures.answers;
    } else if (frame.command != PlcFrames::notice || frame.data[0] != station() + 5) {
        ++m_figures.stray;
    }
}

void CutSession::trigger()
{
    m_line.send(PlcFrames::triggerOf(station()));
    ++m_open;
    ++m_figures.triggers;
}

void CutSession::cut()
{
    m_traffic.stop();
    m_figures.inHand += std::exchange(m_open, 0);
    ++m_figures.cuts;
    m_heard = false;
    m_line.pull(m_random.bounded(m_options.awayMs));
    m_settled.start();
}

void CutSession::noteSettled()
{
    m_settledCpuMs = cpuMsOf(m_options.pidFile);
    m_settledNs = PlcLine::nowNs();
}

void CutSession::onPluggedIn()
{
    m_settled.stop();
    m_pluggedNs = PlcLine::nowNs();
    const auto before = std::exchange(m_settledCpuMs, std::nullopt);
    const auto cpu = cpuMsOf(m_options.pidFile);
    if (before && cpu) {
        m_figures.awayCpuMs += *cpu - *before;
        m_figures.awayMs += static_cast<double>(m_pluggedNs - m_settledNs) / 1e6;
    }
    m_patience.start(m_options.startTimeoutMs);
}

void CutSession::onNoProgram()
{
    Console::complain(QStringLiteral("no heartbeat of the program within %1 ms").arg(m_options.startTimeoutMs));
    report();
    emit finished(1);
}

void CutSession::report()
{
    m_cut.stop();
    m_traffic.stop();
    const QStringList summary = m_figures.summary();
    for (const QString& line : summary)
        Console::say(line);
    QString error;
    if (!m_options.json.isEmpty() && !HomeFiles::writeFile(m_options.json, m_figures.json(), &error))
        Console::complain(error);
}
