#include "workflow/CTrigDetector.h"

#include <QDateTime>
#include <QDebug>

namespace {

constexpr int checkIntervalMs = 4000;
/// Triggers whose image has not come.
constexpr int maxOutstanding = 1;
constexpr qint64 burstGapMs = 350;

} // namespace

CTrigDetector::CTrigDetector(Scheduler& scheduler, BurstLimit burstLimit, QObject* parent)
    : QObject(parent)
    , m_scheduler(scheduler)
    , m_burstLimit(std::move(burstLimit))
    , m_check(scheduler.timer(Scheduler::Repeating, [this] { onChecker(); }))
    , m_lastTrigger(scheduler.now().toMSecsSinceEpoch())
{
}

bool CTrigDetector::startChecking()
{
    m_check->start(checkIntervalMs);
    return true;
}

bool CTrigDetector::stopChecking()
{
    m_check->stop();
    return true;
}

int CTrigDetector::addTrigCount(int)
{
    if (m_triggerCount - m_nReceiveCount >= maxOutstanding) {
        qWarning() << "add trig count error, trig:" << m_triggerCount << ", rev:" << m_nReceiveCount;
        return -1;
    }
    return ++m_triggerCount;
}

void CTrigDetector::addRevCount(int)
{
    ++m_nReceiveCount;
    m_errorRun = 0;
    if (m_nReceiveCount > m_triggerCount)
        qWarning() << "addRevCount, rev bigger than trig";
    qDebug() << "rev result, count =  " << m_nReceiveCount;
}

bool CTrigDetector::correct()
{
    qDebug() << "correct trig and rev";
    m_nReceiveCount = m_triggerCount;
    m_errorRun = 0;
    return true;
}

bool CTrigDetector::checkResult() const
{
    if (m_triggerCount != m_nReceiveCount) {
        qWarning() << "trig failed, trig count:" << m_triggerCount << "; rev count:" << m_nReceiveCount;
        return false;
    }
    qDebug() << "trig successful, trig count:" << m_triggerCount;
    return true;
}

void CTrigDetector::onChecker()
{
    if (m_triggerCount < m_nReceiveCount) {
        qDebug() << "trig < rece";
        m_nReceiveCount = m_triggerCount;
        qDebug() << "m_nReceiveCount = m_nTrigCoun"; // kept as it is: log filters look for it
    } else if (m_triggerCount == m_nReceiveCount) {
        m_errorRun = 0;
    } else {
        emit sgErrorTrig(++m_errorRun);
    }
}

bool CTrigDetector::filterBurst()
{
    const qint64 now = m_scheduler.now().toMSecsSinceEpoch();
    const qint64 gap = now - m_lastTrigger;
    m_lastTrigger = now;
    if (gap < 0) // the clock was set back
        return true;
    if (gap >= burstGapMs) {
        m_burst = 0;
        return true;
    }
    if (m_burst++ <= m_burstLimit())
        return false;
    qWarning() << "correct";
    m_burst = 0;
    correct();
    return true;
}

AutoTrigger::AutoTrigger(Scheduler& scheduler, QObject* parent)
    : QObject(parent)
    , m_timer(scheduler.timer(Scheduler::Repeating, [this] { emit sgTrig(); }))
{
}
