#include "LoopWatch.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEvent>
#include <QLoggingCategory>
#include <QMetaEnum>

namespace {
Q_LOGGING_CATEGORY(loop, "valvecell.loop", QtWarningMsg)

/// Below this nobody sees or feels that the loop was held.
constexpr double stallMs = 20;
/// Modules load and the window is built in this time after the start.
constexpr qint64 startMs = 5000;

QString eventName(QEvent::Type type)
{
    const char* name = QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
    return name ? QString::fromLatin1(name) : QString::number(type);
}

} // namespace

LoopWatch::LoopWatch(const QElapsedTimer& start)
    : m_start(start)
{
    if (!loop().isDebugEnabled())
        return;
    qApp->installEventFilter(this);
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &LoopWatch::endStretch);
}

LoopWatch::~LoopWatch()
{
    if (m_shown)
        qCDebug(loop, "longest_stall_ms=%.1f %s", m_longestMs, qUtf8Printable(m_longestHolder));
}

/// An event within another ends the outer one's stretch: from there on the inner one holds the loop.
bool LoopWatch::eventFilter(QObject* receiver, QEvent* event)
{
    endStretch();
    m_holder = eventName(event->type()) + QStringLiteral(" of ") + QLatin1String(receiver->metaObject()->className()) +
               QLatin1Char(' ') + receiver->objectName();
    m_stretch.start();
    if (!m_shown && event->type() == QEvent::Paint && receiver->inherits("QMainWindow")) {
        m_shown = true;
        qCDebug(loop, "window_ms=%.1f", static_cast<double>(m_start.nsecsElapsed()) / 1e6);
    }
    return false;
}

/// The event before is through: the next one comes, or the loop waits.
void LoopWatch::endStretch()
{
    if (!m_stretch.isValid())
        return;
    const double ms = static_cast<double>(m_stretch.nsecsElapsed()) / 1e6;
    m_stretch.invalidate();
    if (m_start.elapsed() < startMs)
        return;
    if (ms > stallMs)
        qCDebug(loop, "stall_ms=%.1f %s", ms, qUtf8Printable(m_holder));
    if (ms > m_longestMs) {
        m_longestMs = ms;
        m_longestHolder = m_holder;
    }
}
