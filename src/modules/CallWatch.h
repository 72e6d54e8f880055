#pragma once

#include "common/Step.h"

#include <QObject>

#include <atomic>
#include <exception>
#include <functional>
#include <optional>

class Scheduler;

/// Watches the calls into modules, which promise never to throw and to return at once: what a call throws ends with it,
/// and one that breaks a promise is reported and logged with its name. GUI thread, unless it says otherwise.
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

    /// To be called again and again while calls run: logs one that has not returned within its limit, once. Any thread.
    void look();

signals:
    /// A call threw, or came back late. `problem`: in the operator's language.
    void broken(const QString& call, const QString& problem);

private:
    /// One call on the stack; calls may lie within each other.
    class Running
    {
    public:
        Running(CallWatch& watch, const char* name, Promise promise);
        ~Running();
        Q_DISABLE_COPY(Running)

    private:
        CallWatch& m_watch;
        std::optional<Step> m_step;
        const char* const m_name;
        const qint64 m_startNs;
        const char* m_outer;
        qint64 m_outerDueNs;
    };

    void reportThrown(const char* name, const char* what);
    void reportLate(const char* name, qint64 ns);

    const Scheduler& m_scheduler;
    const Limit m_limit;
    std::atomic<const char*> m_name{nullptr}; ///< of the innermost call
    std::atomic<qint64> m_dueNs{never};       ///< when it is to be back
    static constexpr qint64 never = -1;
    static constexpr qint64 logged = -2; ///< it was due, and look() has said so
};
