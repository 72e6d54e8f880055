#pragma once

#include "common/AuditChange.h"
#include "common/Background.h"
#include "panels/StationTally.h"

#include <QObject>

class QTimer;

/// The tallies of both stations: what their parts become from now on, and, read in the background, what the result
/// database has of before. When the counts of a shift were set back is kept in "user/shiftReset.json". GUI thread.
class StationHistory : public QObject
{
    Q_OBJECT

public:
    explicit StationHistory(QObject* parent = nullptr);
    ~StationHistory() override;

    /// Reads what there was before; `home` without a separator at its end.
    void start(const QString& home);

    /// Of station 1 or 2.
    const StationTally& of(int station) const { return m_tallies[station - 1]; }

    /// A part has ended. `hasPicture`: it can be seen, so that it stands among the failures if it is one.
    void add(int station, const PartRow& part, bool hasPicture);
    /// The shift's counts of a station begin anew; those of the day go on. Returns what the log is to have.
    AuditChanges resetShift(int station);

    /// What the database and the files of a home have of a station. Any thread.
    static StationTally::Earlier read(const QString& home, int station, const Shifts& shifts, qint64 now);

signals:
    void changed(int station);

private:
    struct Begin
    {
        Shifts shifts;
        qint64 resets[2];
        StationTally::Earlier earlier[2];
    };

    static Begin readAll(const QString& home, qint64 now);
    void takeIn(const Begin& begin);
    void tick();
    /// Somebody may have given the plant other shifts.
    void lookForShifts();
    void keepResets();

    QString m_home;
    QString m_shifts; ///< as they were read; empty before
    StationTally m_tallies[2];
    QTimer* m_timer;
    int m_ticks = 0;
    Background m_reading;
    Background m_writing;
};
