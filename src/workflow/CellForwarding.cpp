#include "workflow/CellForwarding.h"

#include "common/Background.h"
#include "config/ksGlobalConfig.h"
#include "forward/Forwarder.h"
#include "plant/PlantTopics.h"
#include "workflow/Cell.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using Sparkplug::Metric;
using Sparkplug::Type;

namespace {

/// Alarms by their names, which never change: a plant counts by them.
const char* nameOf(Alarm::Kind kind)
{
    constexpr const char* names[] = {"portLost",
                                     "cameraLost",
                                     "diskLow",
                                     "imagesUnwritable",
                                     "imagesGivenUp",
                                     "resultsWaiting",
                                     "databaseMoved",
                                     "starting",
                                     "noImage",
                                     "noResult",
                                     "calibrationUnusable",
                                     "plcSilent",
                                     "configDamaged",
                                     "cameraUnknown",
                                     "libraryUnusable",
                                     "clockJumped",
                                     "protectionOff",
                                     "fileGone",
                                     "cameraFloods",
                                     "moduleFault",
                                     "reportUnwritten",
                                     "forwardingTroubled"};
    return names[int(kind)];
}

QString alarmsText(const QVector<Alarm>& alarms)
{
    QJsonArray list;
    for (const Alarm& alarm : alarms)
        list.append(QJsonObject{
            {QStringLiteral("id"), QStringLiteral("%1:%2").arg(QLatin1String(nameOf(alarm.kind)), alarm.subject)},
            {QStringLiteral("since"), alarm.since.toUTC().toString(Qt::ISODateWithMs)},
            {QStringLiteral("severity"), alarm.isQuiet() ? QStringLiteral("information") : QStringLiteral("alarm")},
            {QStringLiteral("text"), alarm.detail}});
    return QString::fromUtf8(QJsonDocument(list).toJson(QJsonDocument::Compact));
}

class Forwarding : public CellForwarding
{
public:
    Forwarding(QString home, Cell& cell, const ksGlobalConfig& config)
        : m_home(std::move(home))
        , m_cell(cell)
        , m_config(config)
    {
        applySettings();
    }

    void applySettings() override
    {
        const auto old = std::make_shared<std::unique_ptr<Forwarder>>(std::move(m_forwarder));
        const auto end = [old] {
            old->reset();
            return true;
        };
        m_ending.run(end, [this](bool) { begin(); });
    }
    void tick() override
    {
        if (m_forwarder)
            m_forwarder->setFigures(figures());
        const ForwardStatus now = status();
        m_cell.alarms().set(now.wantsEngineer, Alarm::ForwardingTroubled, {}, now.trouble);
    }
    ForwardStatus status() const override { return m_forwarder ? m_forwarder->status() : ForwardStatus(); }

private:
    void begin()
    {
        ForwardConfig config;
        config.load(m_home);
        m_forwarder = config.on ? std::make_unique<Forwarder>(m_home, config) : nullptr;
        tick();
    }
    QString healthOf(std::initializer_list<Alarm::Kind> faults, const QString& subject = QString()) const
    {
        const bool bad = std::any_of(faults.begin(), faults.end(),
                                     [&](Alarm::Kind kind) { return m_cell.alarms().lasts(kind, subject); });
        return bad ? QStringLiteral("fault") : QStringLiteral("ok");
    }
    QString cameraHealth(int station) const
    {
        const QString key = m_config.station(station).camKey;
        if (key.isEmpty())
            return QStringLiteral("off");
        const QString number = QString::number(station);
        const AlarmBook& alarms = m_cell.alarms();
        const bool bad = alarms.lasts(Alarm::CameraLost, key) || alarms.lasts(Alarm::CameraUnknown, number);
        const bool doubtful = alarms.lasts(Alarm::CameraFloods, key) || alarms.lasts(Alarm::NoImage, number);
        return bad ? QStringLiteral("fault") : doubtful ? QStringLiteral("warning") : QStringLiteral("ok");
    }
    QString mode() const
    {
        if (m_cell.alarms().lasts(Alarm::Starting))
            return QStringLiteral("starting");
        return m_config.onlineMode ? QStringLiteral("run") : QStringLiteral("offline");
    }
    QVector<Metric> figures() const
    {
        QVector<Metric> all;
        const auto text = [&all](const QString& name, const QString& value) {
            all.append({name, Type::String, value});
        };
        text(QStringLiteral("Health/Plc"), healthOf({Alarm::PortLost, Alarm::PlcSilent}));
        text(QStringLiteral("Health/Recording"),
             healthOf({Alarm::ResultsWaiting, Alarm::ImagesUnwritable, Alarm::ImagesGivenUp}));
        text(QStringLiteral("Health/Mode"), mode());
        text(QStringLiteral("Alarms"), alarmsText(m_cell.alarms().alarms()));
        for (int station = 1; station <= 2; ++station) {
            text(QStringLiteral("Health/Camera/%1").arg(station), cameraHealth(station));
            text(QStringLiteral("Calibration/%1").arg(station), calibration(station));
            const DayCount& day = m_cell.counts().of(station);
            const QString name = QStringLiteral("Day/%1/%2").arg(station);
            all.append({name.arg(QLatin1String("Found")), Type::UInt32, uint(day.found)});
            all.append({name.arg(QLatin1String("NotFound")), Type::UInt32, uint(day.notFound)});
            all.append({name.arg(QLatin1String("Refused")), Type::UInt32, uint(day.refused)});
        }
        const qint64 freeMiB = m_cell.records() ? m_cell.records()->health().freeMiB : -1;
        if (freeMiB >= 0)
            all.append({QStringLiteral("Health/DiskFree"), Type::UInt64, quint64(freeMiB) << 20});
        return all;
    }
    QString calibration(int station) const
    {
        const Calibration map = m_config.calibration(station);
        const QPointF origin = map.toMachine({0, 0});
        const QPointF x = map.toMachine({1, 0}) - origin;
        const QPointF y = map.toMachine({0, 1}) - origin;
        return QString::fromUtf8(
            QJsonDocument(
                QJsonObject{{QStringLiteral("version"), map.version()},
                            {QStringLiteral("map"), QJsonArray{x.x(), y.x(), origin.x(), x.y(), y.y(), origin.y()}}})
                .toJson(QJsonDocument::Compact));
    }

    const QString m_home;
    Cell& m_cell;
    const ksGlobalConfig& m_config;
    std::unique_ptr<Forwarder> m_forwarder;
    Background m_ending{Background::AtEnd::Wait}; ///< of a forwarder: the next begins when its files are closed
};

} // namespace

std::unique_ptr<CellForwarding> CellForwarding::make(const QString& home, Cell& cell, const ksGlobalConfig& config)
{
    return std::make_unique<Forwarding>(home, cell, config);
}

bool CellForwarding::isBuilt()
{
    return true;
}

QString CellForwarding::whyNoName(const QString& name)
{
    return PlantTopics::whyNoName(name);
}
