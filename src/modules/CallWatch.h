#pragma once

#include "common/Step.h"

#include <QObject>

#include <atomic>
#include <exception>
#include <functional>
#include <optional>

class Scheduler;

/// Watches the calls into modules, which promise never to throw and to return at once: what a call throws ends with it,
/// and one that breaks a promise is reported and logged with its name. Calls are made on the GUI thread and in the lane
/// of each station, see StationLanes.
class CallWatch : public QObject
{
    Q_OBJECT

public:
    /// How long a call may take, milliseconds.
    using Limit = std::function<int()>;
    enum Promise {
        AtOnce, ///< it returns within the limit
        Takes   ///< it may wait for a device or a person
    };

    /// `scheduler` outlives the watch.
    CallWatch(const Scheduler& scheduler, Limit limit, QObject* parent = nullptr);

    /// Makes a call, and returns what it returned: an empty value when it threw. `name` is a literal, such as
    /// "ksCoreCtrl: trigger()".
    template <typename Call>
    auto run(const char* name, Call call, Promise promise = AtOnce) -> decltype(call())
    {
        const Running running(*this, name, promise);
        try {
            return call();
        } catch (const std::exception& thrown) {
            reportThrown(name, thrown.what());
        } catch (...) {
            reportThrown(name, "");
        }
        return decltype(call())();
    }

    /// To be called again and again while calls run: logs each that has not returned within its limit, once, and
    /// reports it when the GUI thread is free to show that. Any thread.
    void look();

    /// Says that the calls of this thread are made for a station; without it they are the GUI thread's.
    static void setLane(int station);

signals:
    /// A call threw, came back late, or stays away in a lane. `problem`: in the operator's language. Emitted on the
    /// thread of the call or of look().
    void broken(const QString& call, const QString& problem);

private:
    static constexpr qint64 never = -1;
    static constexpr qint64 logged = -2; ///< it was due, and look() has said so
    /// The calls of one thread.
    struct Lane
    {
        std::atomic<const char*> name{nullptr}; ///< of the innermost call
        std::atomic<qint64> dueNs{never};       ///< when it is to be back
    };
    /// One call on the stack; calls may lie within each other.
    class Running
    {
    public:
        Running(CallWatch& watch, const char* name, Promise promise);
        ~Running();
        Q_DISABLE_COPY(Running)

    private:
        CallWatch& m_watch;
        Lane& m_lane;
        std::optional<Step> m_step;
        const char* const m_name;
        const qint64 m_startNs;
        const char* m_outer;
        qint64 m_outerDueNs;
    };

    void reportThrown(const char* name, const char* what);
    void reportLate(const char* name, qint64 ns);
    Lane& ownLane();

    const Scheduler& m_scheduler;
    const Limit m_limit;
    Lane m_lanes[3]; ///< the GUI thread's and the stations'
};
