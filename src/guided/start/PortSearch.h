#pragma once

#include "common/Scheduler.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>

/// Finds the port at which the PLC is: opens one after the other and listens for whole frames. GUI thread.
class PortSearch : public QObject
{
    Q_OBJECT

public:
    static constexpr int listenMs = 3000; ///< at each port; a PLC sends several frames a second

    struct Line
    {
        std::function<void(const QString& port)> open; ///< closes the former one
        std::function<quint64()> framesIn;             ///< since the start
    };

    /// `scheduler` outlives the search.
    PortSearch(Line line, Scheduler& scheduler, QObject* parent = nullptr);
    ~PortSearch() override;

    bool isRunning() const { return m_timer->isActive(); }
    /// `present` is opened again when none of the ports speaks.
    void start(const QStringList& ports, const QString& present);
    void stop();

signals:
    void trying(const QString& port);
    void found(const QString& port);
    void nothingFound();

private:
    void tryNext();
    void look();

    Line m_line;
    std::unique_ptr<Scheduler::Timer> m_timer;
    QStringList m_waiting;
    QString m_present;
    QString m_port;
    quint64 m_before = 0;
    int m_listened = 0;
};
