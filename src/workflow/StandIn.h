#pragma once

#include <QtGlobal>

#include <mutex>
#include <vector>

class ISerialUrgent;
class Scheduler;
struct Trigger;

/// Answers triggers in time while the GUI thread cannot, since a module holds it up: each trigger that is still kept a
/// little after its deadline gets 361. Any thread.
class StandIn
{
public:
    /// So much longer than the deadline, the GUI thread has the word.
    static constexpr qint64 graceNs = 100 * 1000 * 1000;

    /// `scheduler` outlives it.
    explicit StandIn(const Scheduler& scheduler);

    /// Where answers go; null for nowhere. Outlives its use.
    void setPort(ISerialUrgent* port);

    /// A trigger of the PLC that is to be answered by then.
    void keep(const Trigger& trigger, qint64 deadlineNs);
    /// The GUI thread answers it, unless this returns true: it is answered already.
    bool release(quint64 number);
    /// To be called again and again.
    void look();

private:
    struct Kept
    {
        quint64 number;
        int station;
        quint64 session;
        qint64 dueNs;
        bool answered;
    };

    const Scheduler& m_scheduler;
    std::mutex m_mutex; // protects the two below
    ISerialUrgent* m_port = nullptr;
    std::vector<Kept> m_kept;
};
