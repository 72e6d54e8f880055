#pragma once

#include "V4l2System.h"

#include <QCoreApplication>

#include <optional>

/// The buffers of one device that streams. The device fills all and then waits; whoever wants a fresh picture takes
/// the old ones first, which costs no more than handing them back. The camera's thread.
class V4l2Stream
{
    Q_DECLARE_TR_FUNCTIONS(V4l2Stream)

public:
    using Clock = std::chrono::steady_clock; // the kernel's CLOCK_MONOTONIC

    struct Frame
    {
        quint32 index = 0; ///< of its buffer
        const uchar* data = nullptr;
        size_t size = 0;
        quint64 number = 0; ///< the driver's, which may leave some out; it does not wrap
        bool damaged = false;
        /// When its exposure began, at the earliest. Drivers stamp the beginning or the end of a frame, and the
        /// beginning is that of its data for some, so the exposure time is taken off, and at the end a period, too.
        Clock::time_point began;
    };

    V4l2Stream(V4l2System& system, int descriptor);
    ~V4l2Stream();
    V4l2Stream(const V4l2Stream&) = delete;
    V4l2Stream& operator=(const V4l2Stream&) = delete;

    /// Maps buffers and starts. Empty, or what keeps it from that.
    QString start();
    /// How long exposures take now.
    void setExposure(Clock::duration exposure) { m_exposure = exposure; }
    /// From one frame to the next.
    Clock::duration period() const { return m_period; }

    /// The next filled buffer, waiting for `time` at most; nothing when none came or, with a problem, when none will
    /// come any more. It is the caller's until give().
    std::optional<Frame> take(std::chrono::milliseconds time, QString* problem);
    /// Lets the device fill that buffer again; empty, or why none will come any more.
    QString give(const Frame& frame);
    /// Where frames carry no time: gives back what was filled before now.
    QString dropOld();

private:
    struct Buffer
    {
        void* start;
        size_t length;
    };

    QString mapAll(quint32 count);
    QString queue(quint32 index);
    Clock::duration readPeriod();
    Clock::time_point beginOf(qint64 microseconds, quint32 flags) const;

    V4l2System& m_system;
    const int m_descriptor;
    std::vector<Buffer> m_buffers;
    bool m_hasTimes = true;
    Clock::duration m_exposure{0};
    Clock::duration m_period{0};
    quint32 m_lastSequence = 0;
    quint64 m_wraps = 0;
};
