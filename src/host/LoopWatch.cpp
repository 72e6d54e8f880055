#include "host/LoopWatch.h"

#include "common/Step.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QLoggingCategory>
#include <QMetaEnum>

namespace {
Q_LOGGING_CATEGORY(loop, "valvecell.loop", QtWarningMsg)

/// Below this nobody sees or feels that the loop was held.
constexpr double smallestMs = 16; // a frame of the screen
constexpr double logMs = 100;
constexpr qint64 msBetweenLines = 10000;
/// Modules load and the window is built in this time after the start.
constexpr qint64 startMs = 5000;

double msOf(qint64 ns)
{
    return static_cast<double>(ns) / 1e6;
}

} // namespace

LoopWatch::LoopWatch()
{
    m_sinceStart.start();
    qApp->installEventFilter(this);
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &LoopWatch::endStretch);
}

LoopWatch::~LoopWatch()
{
    if (m_longest.ms > 0)
        qCDebug(loop, "longest_stall_ms=%.1f %s", m_longest.ms, qUtf8Printable(m_longest.holder));
}

/// An event within another ends the outer one's stretch: from there on the inner one holds the loop.
bool LoopWatch::eventFilter(QObject* receiver, QEvent* event)
{
    endStretch();
    m_receiver = receiver->metaObject()->className();
    m_receiverName = receiver->objectName();
    m_event = event->type();
    Step::takeLongest();
    m_stretch.start();
    return false;
}

/// The event before is through: the next one comes, or the loop waits.
void LoopWatch::endStretch()
{
    if (!m_stretch.isValid())
        return;
    const double ms = msOf(m_stretch.nsecsElapsed());
    m_stretch.invalidate();
    if (ms < smallestMs || m_sinceStart.elapsed() < startMs)
        return;
    const Stall stall{ms, holder(ms)};
    qCDebug(loop, "stall_ms=%.1f %s", ms, qUtf8Printable(stall.holder));
    if (ms > m_longest.ms)
        m_longest = stall;
    if (ms > logMs)
        report(stall);
}

/// A step that explains less than half of it does not explain it. One that lasts has sent an event itself.
QString LoopWatch::holder(double stretchMs) const
{
    const Step::Longest step = Step::takeLongest();
    if (step.name && msOf(step.ns) > stretchMs / 2)
        return QString::fromLatin1(step.name);
    if (const char* const lasting = Step::current())
        return QString::fromLatin1(lasting);
    const char* const event = QMetaEnum::fromType<QEvent::Type>().valueToKey(m_event);
    return QStringLiteral("%1 of %2 %3")
        .arg(event ? QString::fromLatin1(event) : QString::number(m_event), QLatin1String(m_receiver), m_receiverName)
        .trimmed();
}

void LoopWatch::report(const Stall& stall)
{
    if (stall.ms > m_unreported.ms)
        m_unreported = stall;
    if (m_sinceReport.isValid() && m_sinceReport.elapsed() < msBetweenLines)
        return;
    qWarning("the program was held up for %.0f ms in %s", m_unreported.ms, qUtf8Printable(m_unreported.holder));
    m_unreported = {};
    m_sinceReport.start();
}
