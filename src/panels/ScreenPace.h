#pragma once

#include <QTimer>

#include <functional>
#include <vector>

/// Lets what the screen shows of a part wait until its reply is on the line: drawing a picture takes milliseconds, in
/// which the thread that writes to the port would have to share the processor. GUI thread.
class ScreenPace : public QObject
{
public:
    explicit ScreenPace(QObject* parent = nullptr)
        : QObject(parent)
    {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, &ScreenPace::flush);
    }

    /// Runs `show` after a pause too short to be seen, together with what else came meanwhile, in order.
    void later(std::function<void()> show)
    {
        constexpr int pauseMs = 8;
        m_waiting.push_back(std::move(show));
        if (!m_timer.isActive())
            m_timer.start(pauseMs);
    }

private:
    void flush()
    {
        const std::vector<std::function<void()>> due = std::move(m_waiting);
        m_waiting.clear();
        for (const auto& show : due)
            show();
    }

    QTimer m_timer;
    std::vector<std::function<void()>> m_waiting;
};
