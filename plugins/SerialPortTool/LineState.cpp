#include "LineState.h"

#include <QMutexLocker>

void LineState::setDevice(const QString& device)
{
    const QMutexLocker lock(&m_mutex);
    m_device = device;
}

void LineState::setLastError(const QString& error)
{
    const QMutexLocker lock(&m_mutex);
    m_lastError = error;
}

SerialStatus LineState::snapshot() const
{
    const QMutexLocker lock(&m_mutex);
    SerialStatus status;
    status.open = session != 0;
    status.device = m_device;
    status.framesIn = framesIn;
    status.framesOut = framesOut;
    status.framesDropped = framesDropped;
    status.badBytes = badBytes;
    status.crcErrors = crcErrors;
    status.openAttempts = openAttempts;
    status.lastError = m_lastError;
    return status;
}
