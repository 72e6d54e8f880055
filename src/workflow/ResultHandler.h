#pragma once

#include "common/TaskResult.h"
#include "workflow/StationLog.h"

#include <QObject>

class IResultStore;
class PlcLink;
class Scheduler;
class ksGlobalConfig;

/// What a station's last result says, for its panel.
struct StationReading
{
    bool found = false;
    double angle = 0; ///< degrees, as answered
    double x = 0;     ///< machine units
    double y = 0;
    QString tip;
    double taskTime = 0; ///< milliseconds
};
Q_DECLARE_METATYPE(StationReading)

/// Turns an engine result into everything that the cell does with it: the reply first, then archive, record, picture
/// and log line. GUI thread; nothing waits.
class ResultHandler : public QObject
{
    Q_OBJECT

public:
    /// All outlive the handler.
    ResultHandler(const ksGlobalConfig& config, PlcLink& link, const Scheduler& scheduler, QObject* parent = nullptr);

    /// Where images and records go; null for nowhere.
    void setStore(IResultStore* store) { m_store = store; }

public slots:
    void onResult(const QVariantMap& map);

signals:
    /// The PLC has its answer. `taskTime`: the engine's milliseconds.
    void replied(int station, double taskTime);
    /// A picture for the station's view.
    void sgShowImg(int station, const QImage& image);
    /// A picture of which there is no result, for the view of the station with that solution.
    void sgShowSrcImg(const QString& solution, const QImage& image);
    /// A line for the station's log panel.
    void sgShowLog(int station, const QString& text);
    /// What was answered, for the station's panel.
    void readingChanged(int station, const StationReading& reading);

private:
    /// A result that holds no answer: 361 to the PLC, the reason to the panel, the source image to the archive.
    void refuse(int station, const TaskResult& result, const QString& reason);
    /// Everything else; the reply goes first.
    void answer(int station, const TaskResult& result);
    /// The machine coordinates that were sent.
    QPointF reply(int station, const TaskResult& result);
    void store(int station, const TaskResult& result);

    const ksGlobalConfig& m_config;
    PlcLink& m_link;
    const StationLog m_log;
    IResultStore* m_store = nullptr;
};
