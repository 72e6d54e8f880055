#pragma once

#include "Engine.h"
#include "Wheels.h"
#include "support/TempHome.h"

#include <valvecell/Extension.h>
#include <valvecell/ResultKeys.h>

#include <mutex>

/// What the engine's threads hand over.
template <typename Outcome>
class Inbox
{
public:
    std::function<void(const Outcome&)> callback()
    {
        return [this](const Outcome& outcome) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_all.append(outcome);
        };
    }

    QList<Outcome> all() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_all;
    }
    int count() const { return all().size(); }
    /// The first after so many; an empty one when it does not come.
    Outcome next(int before) const
    {
        return QTest::qWaitFor([&] { return count() > before; }, patienceMs) ? all().value(before) : Outcome();
    }

private:
    mutable std::mutex m_mutex;
    QList<Outcome> m_all;
};

/// An engine in a home of its own, a wheel for it, and what it answers.
template <typename Outcome>
struct EngineBench
{
    const QString stationOne = QStringLiteral("工位一");
    TempHome home;
    wheel::WheelSpec spec = Wheels::spec();
    wheel::WheelTruth truth = wheel::truthOf(spec);
    QImage image = finder::toImage(Wheels::image(spec));
    Inbox<Outcome> inbox;
    std::unique_ptr<Engine> engine = std::make_unique<Engine>(home.path(QStringLiteral("/user/solutions")));

    EngineBench()
    {
        engine->initialise();
        extension<ISolutionStore>()->addSolution(stationOne, nullptr);
    }
    template <typename Extension>
    Extension* extension() const
    {
        return extensionOf<Extension>(static_cast<IEngine*>(engine.get()));
    }
};

inline QVariantMap algo(const QVariantMap& result)
{
    return result.value(ResultKeys::algoResult).toMap();
}

inline double apart(const QPointF& a, const cv::Point2d& b)
{
    return std::hypot(a.x() - b.x, a.y() - b.y);
}
