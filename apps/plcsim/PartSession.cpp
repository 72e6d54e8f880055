#include "PartSession.h"

#include "CellTruth.h"
#include "Console.h"
#include "PlcLine.h"
#include "ReportText.h"

#include <valvecell/HomeFiles.h>

#include <cmath>

namespace {

/// Endless feeding without a pace of its own would be a load test.
constexpr int endlessIntervalMs = 1000;

TriggerPace paceOf(const SimOptions& options)
{
    const bool endless = options.parts == 0 && options.intervalMs == 0;
    return {options.filterMs, endless ? endlessIntervalMs : options.intervalMs};
}

} // namespace

PartSession::PartSession(PlcLine& line, SimOptions options)
    : m_line(line)
    , m_options(std::move(options))
    , m_exchange(line, paceOf(m_options), m_options.timeoutMs)
    , m_probe(line, m_exchange, m_options.refused)
    , m_road(m_options.road)
    , m_report(m_options.cameraDelayMs)
{
    m_startDeadline.setSingleShot(true);
    connect(&m_startDeadline, &QTimer::timeout, this, &PartSession::onNoProgram);
    connect(&m_line, &PlcLine::frameReceived, this, &PartSession::onFrame);
    connect(&m_probe, &RefusalProbe::finished, this, &PartSession::afterRefusals);
    connect(&m_road, &RoadLog::collected, this, [this](const QVector<RoadTiming>& timings) {
        m_report.join(timings);
        report();
    });
}

PartSession::~PartSession() = default;

bool PartSession::prepare(std::array<ImageCycle, 2>* images, QString* error) const
{
    for (int i = 0; i < 2; ++i)
        if (!m_options.truth[i].isEmpty() && !(*images)[i].load(m_options.truth[i], error))
            return false;
    return m_options.home.isEmpty() || CellCalibration::load(m_options.home, error);
}

bool PartSession::start(QString* error)
{
    std::array<ImageCycle, 2> images;
    if (!prepare(&images, error))
        return false;
    m_feeder = std::make_unique<PartFeeder>(m_line, m_exchange, images, m_options.parts.value_or(0));
    connect(m_feeder.get(), &PartFeeder::partDone, this, &PartSession::onPartDone);
    connect(m_feeder.get(), &PartFeeder::finished, this, &PartSession::afterParts);
    m_startDeadline.start(m_options.startTimeoutMs);
    return true;
}

void PartSession::onFrame(const SComFrame& frame)
{
    if (!m_begun && frame.command == PlcFrames::heartbeat)
        onHeartbeat();
}

void PartSession::onHeartbeat()
{
    m_begun = true;
    m_startDeadline.stop();
    m_road.begin();
    Console::say(ReportText::header());
    m_feeder->start();
}

void PartSession::onNoProgram()
{
    Console::complain(QStringLiteral("no heartbeat of the program within %1 ms").arg(m_options.startTimeoutMs));
    emit finished(1);
}

/// The centre is compared in pixels, which are the same whatever a station's calibration.
void PartSession::onPartDone(PartRow row)
{
    if (!m_options.home.isEmpty() && row.found() && row.image.center)
        if (const auto pixel = CellCalibration::pixelOf(row.station, {row.answer.x, row.answer.y}))
            row.centerErrorPx = std::hypot(pixel->x() - row.image.center->x(), pixel->y() - row.image.center->y());
    m_report.add(row);
    Console::say(ReportText::line(row));
}

void PartSession::stop()
{
    m_stopped = true;
    if (!m_begun)
        emit finished(m_options.parts == 0 ? 0 : 1);
    m_feeder->stop();
    m_probe.stop();
}

void PartSession::afterParts()
{
    if (m_stopped)
        afterRefusals();
    else
        m_probe.start();
}

void PartSession::afterRefusals()
{
    if (m_options.refused > 0)
        m_report.setRefusals(m_probe.result());
    if (m_options.road.isEmpty())
        report();
    else
        m_road.collect(m_report.partsWithImage());
}

/// A run that ended before its last part is not good, unless it was to be endless.
void PartSession::report()
{
    const ReportFigures figures = m_report.figures();
    const QStringList summary = ReportText::summary(figures);
    for (const QString& line : summary)
        Console::say(line);
    if (m_exchange.strayFrames() > 0)
        Console::say(QStringLiteral("frames that answered nothing: %1").arg(m_exchange.strayFrames()));
    const bool complete = m_options.parts == 0 || figures.parts == m_options.parts;
    emit finished(writeJson() && complete && figures.allGood ? 0 : 1);
}

bool PartSession::writeJson() const
{
    QString error;
    if (m_options.json.isEmpty() ||
        HomeFiles::writeFile(m_options.json, QJsonDocument(ReportText::json(m_report)).toJson(), &error))
        return true;
    Console::complain(error);
    return false;
}
