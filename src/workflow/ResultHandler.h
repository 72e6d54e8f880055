#pragma once

#include "common/TaskResult.h"
#include "db/CellError.h"
#include "db/PartRecord.h"
#include "workflow/PlcLink.h"
#include "workflow/StationLog.h"
#include "workflow/Trigger.h"

#include <QDateTime>

class IResultStore;
class ksGlobalConfig;
struct StationResult;

/// What a station's last part got, for its panel: what was sent, not what was found.
struct StationReading
{
    bool found = false;
    double angle = 0; ///< degrees, as answered
    double x = 0;     ///< machine units
    double y = 0;
    QString tip;
    double taskTime = 0; ///< milliseconds
    bool test = false;   ///< a test's, which was answered to nobody
    int error = 0;       ///< of the engine, or a CellError; 0: none
    QString model;       ///< that judged the part
    qint32 plcIndex = 0;
    QDateTime time;      ///< of its record, if it has one
    QString resultImage; ///< these two as in its record
    QString sourceImage;
};
Q_DECLARE_METATYPE(StationReading)

/// Turns the end of a trigger into everything that the cell does with it: the reply first, then archive, record,
/// picture and log line. What was sent is what all of these get. GUI thread; nothing waits.
class ResultHandler : public QObject
{
    Q_OBJECT

public:
    /// All outlive the handler.
    ResultHandler(const ksGlobalConfig& config, PlcLink& link, const Scheduler& scheduler, QObject* parent = nullptr);

    /// Where images and records go; null for nowhere.
    void setStore(IResultStore* store) { m_store = store; }

public slots:
    void onResult(const Trigger& trigger, const QVariantMap& map);
    /// There is no result and will be none: 361 to the PLC, with the reason everywhere.
    void onFailed(const Trigger& trigger, Failure failure, const QString& reason);
    /// The trigger was refused, and is only recorded here.
    void onRefused(const Trigger& trigger, Refusal refusal);

signals:
    /// The PLC has its answer. `taskTime`: the engine's milliseconds.
    void replied(const Trigger& trigger, double taskTime);
    /// A picture for the station's view.
    void sgShowImg(int station, const QImage& image);
    /// A picture of which there is no result, for the view of the station with that solution.
    void sgShowSrcImg(const QString& solution, const QImage& image);
    /// The model of the part whose picture was emitted just now, whatever the station runs by then.
    void pictureNamed(int station, const QString& model);
    /// A line for the station's log panel.
    void sgShowLog(int station, const QString& text);
    /// What was answered, for the station's panel.
    void readingChanged(int station, const StationReading& reading);
    /// The same of a trigger that was refused.
    void refused(int station, const StationReading& reading);
    /// What keeps the found places of a station from being sent; empty when nothing does.
    void calibrationJudged(int station, const QString& problem);

private:
    /// One part on its way out.
    struct Part
    {
        const Trigger& trigger;
        int station; ///< 0: the result names another solution than the trigger's
        TaskResult result;
        qint64 resultNs; ///< when it came
    };
    struct Verdict
    {
        PlcLink::Sent sent;
        QString calibration = {};              ///< its version
        CellError error = CellError::NoResult; ///< meaningful unless `good`
        QString tip;
        bool good = true;    ///< what the engine says was sent
        QDateTime time = {}; ///< of the record
        QString resultImage = {};
        QString sourceImage = {};

        /// The PLC has a place.
        bool found() const;
    };

    /// A result that holds no answer: 361 to the PLC, the reason to the panel, the source image to the archive.
    void refuse(const Part& part, const QString& reason);
    /// Everything else; the reply goes first.
    void answer(const Part& part);
    Verdict reply(const Part& part);
    PlcLink::Sent send(const Trigger& trigger, int station, double angle, const QPointF& machine);
    void store(const Part& part, Verdict& verdict);
    /// The trigger's, up to now.
    PartRecord partOf(const Trigger& trigger) const;
    /// A row without a result.
    void storeEnd(const Trigger& trigger, const StationReading& reading);
    /// Nothing was found for that trigger, as of now.
    StationReading readingOf(const Trigger& trigger, double angle, CellError error, const QString& tip) const;
    void show(const Part& part, const Verdict& verdict);

    const ksGlobalConfig& m_config;
    PlcLink& m_link;
    const Scheduler& m_scheduler;
    const StationLog m_log;
    IResultStore* m_store = nullptr;
};
