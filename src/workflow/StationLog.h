#pragma once

#include <QString>

class QPointF;
class Scheduler;
enum class Failure;

/// What a line of a station's log panel reports.
enum class LogKind {
    Plain,
    Found,
    ModelSwitch,
    NotFound, ///< answered as not found, for whatever reason
    Refused,  ///< a trigger or a model that could not be taken
};

/// By the fixed words of the line.
LogKind logKind(const QString& line);

inline bool isTrouble(LogKind kind)
{
    return kind == LogKind::NotFound || kind == LogKind::Refused;
}

/// The lines of the station's log panels and of the system log. Their texts are fixed, in every language: plants filter
/// their logs by them.
class StationLog
{
public:
    /// The present time of `scheduler`, which outlives the log, opens or closes each line.
    explicit StationLog(const Scheduler& scheduler)
        : m_scheduler(scheduler)
    {
    }

    /// For both logs: a station's model was switched.
    QString switched(int station, const QString& model, int index) const;
    /// For the system log: an index that has no model; below 1, it clears the station on purpose.
    QString notSwitched(int station, int index) const;
    /// For the panel: the same for an index that should have one.
    QString noModel(int station, int index) const;

    /// A trigger that was refused, for the panel and for the system log.
    QString noPicture(int index) const;
    QString refused(int station, const QString& model, int index, bool answered) const;

    /// For the panel: a trigger on top of too many that wait.
    QString tooMany() const;

    /// For the panel: the answer. From 361 on nothing was found.
    QString result(const QString& task, double angle, const QPointF& machine) const;
    /// For the panel: a result without an answer, for one of the reasons below.
    QString noResult(const QString& task, const QString& reason) const;
    static QString noCalibration();
    static QString noTask();
    static QString because(Failure failure);
    /// The answer belongs to a line that is gone.
    static QString lineGone();

private:
    QString time() const;
    QString timeColon() const;

    const Scheduler& m_scheduler;
};
