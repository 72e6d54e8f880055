#pragma once

#include <valvecell/ICameraCapture.h>
#include <valvecell/SComFrame.h>

#include <QHash>
#include <QObject>
#include <QVariantMap>

#include <deque>
#include <mutex>

/// Carries what modules deliver on their threads to the GUI thread: each module holds a share of it, so a module may
/// outlive the road. A callback that comes while the cell goes down finds the relay alive and nobody connected, so its
/// value is dropped. Make it on the GUI thread.
class ModuleRelay : public QObject
{
    Q_OBJECT

public:
    using Outcome = ICameraCapture::Outcome;

    /// So many outcomes of one camera wait for the GUI thread at most: a camera that delivers what nobody asked for
    /// must not fill the memory.
    static constexpr int maxWaiting = 4;

    /// Emits it on the GUI thread as captured(), or drops it. Number 0: whichever capture its camera has. Any thread.
    void deliver(const Outcome& outcome);
    /// How many were dropped since the last call, by camera. Any thread.
    QHash<QString, int> takeDropped();

signals:
    /// In which session of the line, see ISerialSession, and when, by the scheduler.
    void frameReceived(const SComFrame& frame, quint64 session, qint64 ns);
    void captured(const ModuleRelay::Outcome& outcome);
    void taskFinished(quint64 trigger, const QVariantMap& result);

private:
    void emitWaiting();

    std::mutex m_mutex; // protects the two below
    std::deque<Outcome> m_waiting;
    QHash<QString, int> m_dropped;
};
