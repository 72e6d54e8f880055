#pragma once

#include <valvecell/ISerialStatus.h>

#include <QMutex>

#include <atomic>

/// What the caller's thread and the line's thread share.
class LineState
{
public:
    /// Numbers the times that the line is open; 0 while it is closed. A frame is written only in the session in which
    /// it was handed over, so that none is sent late.
    std::atomic<quint64> session{0};
    std::atomic<bool> stopping{false}; ///< no callback may begin any more
    std::atomic<quint64> framesIn{0};
    std::atomic<quint64> framesOut{0};
    std::atomic<quint64> framesDropped{0};
    std::atomic<quint64> badBytes{0};
    std::atomic<quint64> crcErrors{0};
    std::atomic<quint64> openAttempts{0};

    void setDevice(const QString& device);
    void setLastError(const QString& error);
    SerialStatus snapshot() const;

private:
    mutable QMutex m_mutex; ///< guards the two texts
    QString m_device;
    QString m_lastError;
};
