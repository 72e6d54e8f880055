#pragma once

#include <QDateTime>
#include <QObject>
#include <QVector>

class Scheduler;

/// One thing that somebody ought to look at.
struct Alarm
{
    enum Kind {
        PortLost,
        CameraLost,
        DiskLow,             ///< less is free than the setting demands, although the cleaner works
        ImagesUnwritable,    ///< the archive's disk takes no images
        ImagesGivenUp,       ///< more images came than the disk could take
        ResultsWaiting,      ///< the result database takes no rows
        DatabaseMovedAside,  ///< a file that could not be used was kept under another name
        Starting,            ///< the cell answers no trigger yet
        NoImage,             ///< a station's triggers stay without an image
        NoResult,            ///< a station's images stay without a result
        CalibrationUnusable, ///< what a station finds cannot be sent
        PlcSilent,           ///< the line is open, and the PLC sends nothing
        ConfigDamaged,       ///< a file of the set-up was not understood, wholly or in part, when it was read
        CameraUnknown,       ///< a station is set up for a camera that there is not
        LibraryUnusable,     ///< the model library takes and gives nothing
        ClockJumped,         ///< no image goes by its age until this is acknowledged
        ProtectionOff,       ///< online, and a trigger without a valid model captures all the same
        FileGone,            ///< a file that keeps people out was deleted
        CameraFloods,        ///< a camera delivers images that nobody asked for
        ModuleFault,         ///< a module threw, or held the program up; see ModuleCall
        ReportUnwritten,     ///< a report of a shift or day that is written by itself
        ForwardingTroubled,  ///< the records are not forwarded until somebody mends it; they are kept here
    };

    Kind kind = PortLost;
    QString subject; ///< which one, where there are several: a camera key, a station, a file; part of its identity
    QString detail;  ///< the reason or the number, as its source has it
    QDateTime since; ///< when it began, the last time
    QDateTime until; ///< when it ended; invalid while it lasts
    int count = 1;   ///< how often it began; or what its source counts, such as images
    bool acknowledged = false;

    /// Whether it is how the cell is set up: it is shown, and asks for nobody.
    bool isQuiet() const { return kind == ProtectionOff; }
    /// Whether the alarm asks for somebody, and stays until it is acknowledged. The others go when their cause goes.
    bool isLatched() const
    {
        return kind == ImagesGivenUp || kind == DatabaseMovedAside || kind == ConfigDamaged || kind == ClockJumped ||
               kind == ModuleFault;
    }
};

/// The alarms of the cell: what is wrong at present, and what was lost and not yet acknowledged. GUI thread.
class AlarmBook : public QObject
{
    Q_OBJECT

public:
    /// `scheduler` outlives the book.
    explicit AlarmBook(const Scheduler& scheduler, QObject* parent = nullptr);

    /// How many of those that ended are kept.
    static constexpr int maxHistory = 300;

    /// Newest first.
    const QVector<Alarm>& alarms() const { return m_alarms; }
    /// Those that ended since the start, the last one first.
    const QVector<Alarm>& history() const { return m_history; }

    /// Whether such an alarm stands; a null subject means any.
    bool lasts(Alarm::Kind kind, const QString& subject = QString()) const;

    /// The cause is there; may be called again and again while it lasts.
    void raise(Alarm::Kind kind, const QString& subject, const QString& detail);
    /// As raise(), for a number that only grows, of which `count` is the present value: a higher one raises the alarm
    /// anew, acknowledged or not.
    void raiseCounted(Alarm::Kind kind, const QString& subject, int count);
    /// The cause is gone. A latched alarm is left alone.
    void clear(Alarm::Kind kind, const QString& subject);
    /// raise() or clear().
    void set(bool present, Alarm::Kind kind, const QString& subject, const QString& detail);

public slots:
    /// Somebody has seen them all: latched ones go, the others stay until their cause goes.
    void acknowledge();

signals:
    void changed();
    /// One for each that acknowledge() met.
    void acknowledged(const Alarm& alarm);

private:
    Alarm* find(Alarm::Kind kind, const QString& subject);
    void begin(Alarm alarm);
    void end(Alarm alarm);

    const Scheduler& m_scheduler;
    QVector<Alarm> m_alarms;
    QVector<Alarm> m_past; ///< each alarm that went, once, for its count
    QVector<Alarm> m_history;
};
