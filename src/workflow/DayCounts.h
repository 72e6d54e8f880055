#pragma once

#include <QDate>
#include <QObject>

class Scheduler;
struct StationReading;

/// What became of the parts of one day at one station.
struct DayCount
{
    int found = 0;
    int notFound = 0;
    int refused = 0; ///< triggers that were refused, so that no image was taken

    /// Found among those that were judged, percent; -1 before the first.
    double yield() const;
};

Q_DECLARE_METATYPE(DayCount)

/// Counts the parts of the present day; begins anew at midnight. GUI thread.
class DayCounts : public QObject
{
    Q_OBJECT

public:
    /// `scheduler` outlives the counts.
    explicit DayCounts(const Scheduler& scheduler, QObject* parent = nullptr);

    /// The day that is counted.
    QDate day() const { return m_day; }
    /// Of station 1 or 2.
    const DayCount& of(int station) const { return m_counts[station - 1]; }

    /// Adds what was counted earlier on that day, before the program was started; nothing when the day is over.
    void addEarlier(const QDate& day, int station, const DayCount& count);

public slots:
    /// A station other than 1 and 2 is not counted.
    /// A test's is not counted.
    void onReading(int station, const StationReading& reading);
    void onRefused(int station);
    /// To be called now and then, so that a night without parts begins a new day too.
    void checkDay();

signals:
    void changed(int station);

private:
    void count(int station, int DayCount::*kind);

    const Scheduler& m_scheduler;
    QDate m_day;
    DayCount m_counts[2];
};
