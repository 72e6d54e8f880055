#pragma once

#include "Faults.h"
#include "RecordsAudit.h"

#include <QMap>
#include <QObject>
#include <QTimer>

#include <random>

/// Lets things go wrong at random moments, by a seed; several at once as it happens. Each lasts some seconds.
class FaultDriver : public QObject
{
    Q_OBJECT

public:
    FaultDriver(QStringList names, quint64 seed, const Faults::Ground& ground);
    /// Ends those that last.
    ~FaultDriver() override;

    /// One every so many milliseconds, on average.
    void start(int meanPauseMs);
    /// No more faults; those that last end now.
    void stop();

    /// Whether pictures must not be looked at.
    bool movesPictures() const;
    /// Since when the disk has been full, if it is or was a moment ago.
    std::optional<qint64> diskFullSinceMs() const;
    /// When pictures could be lost.
    const QVector<FaultTime>& pictureFaults() const { return m_pictureFaults; }
    /// How often each came.
    const QMap<QString, int>& counts() const { return m_counts; }
    /// From `low` to `high`, by the seed.
    int random(int low, int high);

signals:
    void killWanted();
    void cutWanted(int ms);
    /// A camera may have lost an image.
    void imagesLost();
    void happened(const QString& text);

private:
    struct Active
    {
        std::unique_ptr<Fault> fault;
        qint64 beginMs = 0;
    };

    void next();
    void begin(const QString& name);
    const Active* active(const QString& name) const;
    void end(const QString& name);
    bool lasts(const QString& name) const { return active(name) != nullptr; }

    const QStringList m_names;
    const Faults::Ground m_ground;
    std::mt19937_64 m_random;
    int m_meanPauseMs = 0;
    QTimer m_next;
    std::vector<Active> m_active;
    QVector<FaultTime> m_pictureFaults;
    FaultTime m_lastFullDisk;
    QMap<QString, int> m_counts;
};
