#pragma once

#include "LineFault.h"
#include "wire/FrameCodec.h"

#include <valvecell/ISerialPort.h>
#include <valvecell/ISerialStatus.h>

#include <QElapsedTimer>
#include <QMutex>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>

class ByteLine;

/// How long to wait before a line is tried again: short at first, then twice as long each time, a second at most, so
/// that a line is back within two.
class ReopenPause
{
public:
    static constexpr std::chrono::milliseconds first{50};
    static constexpr std::chrono::milliseconds longest{1000};

    /// The pause to wait now; the following one is longer.
    std::chrono::milliseconds next()
    {
        const auto pause = m_next;
        m_next = std::min(2 * m_next, longest);
        return pause;
    }

    /// To be called when the line has proved itself; one that merely opens and fails again goes on being slowed down.
    void reset() { m_next = first; }

private:
    std::chrono::milliseconds m_next = first;
};

/// What the caller's thread and the line's thread share.
class LineState
{
public:
    /// Numbers the times that the line is open; 0 while it is closed. A frame is written only in the session in which
    /// it was handed over, so that none is sent late.
    std::atomic<quint64> session{0};
    std::atomic<quint64> sessions{0};  ///< so far, over all openings
    std::atomic<bool> stopping{false}; ///< no callback may begin any more
    std::atomic<quint64> framesIn{0};
    std::atomic<quint64> framesOut{0};
    std::atomic<quint64> framesDropped{0};
    std::atomic<quint64> badBytes{0};
    std::atomic<quint64> crcErrors{0};
    std::atomic<quint64> openAttempts{0};

    void setDevice(const QString& device);
    void setLastFault(const LineFault& fault);
    SerialStatus snapshot() const;

private:
    mutable QMutex m_mutex; ///< guards the two below
    QString m_device;
    LineFault m_lastFault;
};

struct LineSettings
{
    QString portName; ///< as configured, see PortName; empty for no line
    qint32 baudRate = 0;
    ISerialPort::ReceiveCallback receive;
};

/// The line in its own thread: everything but the constructor runs there, and nothing waits. A line that fails is
/// closed at once and tried again after a growing pause.
class LineWorker : public QObject
{
    Q_OBJECT

public:
    LineWorker(LineSettings settings, std::shared_ptr<LineState> state);
    ~LineWorker() override;

    /// Tries to open the line; `opened` learns whether the first attempt did it.
    void start(std::shared_ptr<std::promise<bool>> opened);
    /// Takes another line, in place of the one that is open or tried.
    void change(const LineSettings& settings);
    /// Writes a frame that was handed over in `session`.
    void write(const SComFrame& frame, quint64 session);
    /// Closes the line for good and ends the thread.
    void stop();

private:
    /// Makes the line of the settings and tries it for the first time.
    void begin();
    /// One attempt; when it fails, the next after the pause.
    void attempt();
    /// Begins a session: what the line holds from before belongs to parts that are gone, and is dropped.
    void onOpened();
    void onReadyRead();
    void onFailed(const LineFault& fault);
    void closeAndRetry();
    void answerOpener(bool opened);
    /// The last fault is always kept; the log gets the first of a row, and the others where it is asked for all.
    void noteFault(const LineFault& fault);

    LineSettings m_settings;
    const std::shared_ptr<LineState> m_state;
    std::unique_ptr<ByteLine> m_line;
    std::shared_ptr<std::promise<bool>> m_opener; ///< until the first attempt is over
    QTimer m_retry{this};
    ReopenPause m_pause;
    QElapsedTimer m_openSince;
    bool m_reported = false; ///< that the line is down; it is logged once, not at every attempt
    wire::FrameDecoder m_decoder;
    wire::FrameEncoder m_encoder;
};
