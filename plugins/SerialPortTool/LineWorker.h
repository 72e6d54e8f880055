#pragma once

#include "LineState.h"
#include "ReopenPause.h"
#include "wire/FrameCodec.h"

#include <valvecell/ISerialPort.h>

#include <QElapsedTimer>
#include <QSerialPort>
#include <QTimer>

#include <future>

struct LineSettings
{
    QString portName; ///< as configured: a device path, a link to one, or a plain port name
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

    /// Tries to open the line; `opened` learns whether the first attempt did it.
    void start(const std::shared_ptr<std::promise<bool>>& opened);
    /// Takes another line, in place of the one that is open or tried.
    void change(const LineSettings& settings);
    /// Writes a frame that was handed over in `session`.
    void write(const SComFrame& frame, quint64 session);
    /// Closes the line for good and ends the thread.
    void stop();

private:
    QString tryOpen(); ///< what went wrong; empty when the line is open
    /// One attempt; when it fails, the next after the pause.
    void openOrRetry();
    /// Begins a session: what the line holds from before belongs to parts that are gone, and is dropped.
    void onOpened();
    void onReadyRead();
    void onError(QSerialPort::SerialPortError error);
    /// Needs the event loop between it and whatever the port itself told.
    void closeAndRetry();
    /// The last error is always kept; the log gets the first of a row.
    void noteFailure(const QString& problem);

    LineSettings m_settings;
    const std::shared_ptr<LineState> m_state;
    QSerialPort m_port{this};
    QTimer m_retry{this};
    QString m_device; ///< behind the configured name, as of the last attempt
    ReopenPause m_pause;
    QElapsedTimer m_openSince;
    quint64 m_sessions = 0;
    bool m_told = false; ///< that the line is down; it is logged once, not at every attempt
    wire::FrameDecoder m_decoder;
    wire::FrameEncoder m_encoder;
};
