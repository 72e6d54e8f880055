#include "panels/CellStatusBar.h"

#include "workflow/AlarmWatch.h"

#include <QDateTime>
#include <QEvent>
#include <QLabel>

namespace {

QString runTimeText(qint64 seconds)
{
    const QString clock = QTime(0, 0).addSecs(static_cast<int>(seconds % 86400)).toString(QStringLiteral("hh:mm:ss"));
    return seconds < 86400 ? clock : QStringLiteral("%1天 %2").arg(seconds / 86400).arg(clock);
}

/// A style sheet is parsed whenever it is set, so it is set only when it is another.
void wear(QLabel* label, const QString& style)
{
    if (label->styleSheet() != style)
        label->setStyleSheet(style);
}

} // namespace

CellStatusBar::CellStatusBar(QWidget* parent)
    : QStatusBar(parent)
    , m_time(new QLabel(tr("系统时间")))
    , m_user(new QLabel(tr("用户:无")))
    , m_mode(new QLabel)
    , m_link(new QLabel(tr("连接状态:")))
    , m_banner(new QLabel(tr("本系统未注册激活")))
{
    m_time->setObjectName(QStringLiteral("timeLabel"));
    m_user->setObjectName(QStringLiteral("userLabel"));
    m_mode->setObjectName(QStringLiteral("modeLabel"));
    m_link->setObjectName(QStringLiteral("linkLabel"));
    m_banner->setObjectName(QStringLiteral("registerBanner"));
    m_banner->setStyleSheet(QStringLiteral("font: bold 14px; color: red;"));
    addWidget(m_time, 1);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_banner, m_user, m_mode, m_link})
        addPermanentWidget(widget);
    m_banner->hide(); // adding shows it
}

void CellStatusBar::linkAlive()
{
    m_linkUp = true;
    m_silentSeconds = 0;
}

void CellStatusBar::tick(bool online)
{
    m_online = online;
    ++m_runSeconds;
    if (++m_silentSeconds > AlarmWatch::silenceSeconds) {
        m_linkUp = false;
        m_silentSeconds = 0;
    }
    refresh();
}

void CellStatusBar::refresh()
{
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    m_time->setText(QStringLiteral("%1 %2 %3").arg(now, 20).arg(tr("运行时长:"), 6).arg(runTimeText(m_runSeconds), 8));
    wear(m_time, QStringLiteral("font: 14px;"));
    m_mode->setText(tr("检测模式：") + (m_online ? tr("在线模式") : tr("离线模式")));
    wear(m_mode, QStringLiteral("font: 14px;"));
    m_link->setText(tr("连接状态：") + (m_linkUp ? tr("连接正常") : tr("连接异常")));
    wear(m_link, m_linkUp ? QStringLiteral("font: 14px;background-color: rgb(63, 170, 24);")
                          : QStringLiteral("font: 14px;background-color: rgb(200, 10, 10);"));
}

void CellStatusBar::setUserName(const QString& name)
{
    m_userName = name;
    const QString text = name.isEmpty() ? tr("用户:无") : tr("用户: %1").arg(name);
    constexpr int longest = 240; // pixels
    m_user->setText(m_user->fontMetrics().elidedText(text, Qt::ElideRight, longest));
    m_user->setToolTip(m_user->text() == text ? QString() : text);
}

void CellStatusBar::setRegistered(bool registered)
{
    m_banner->setVisible(!registered);
}

void CellStatusBar::changeEvent(QEvent* event)
{
    QStatusBar::changeEvent(event);
    if (event->type() != QEvent::LanguageChange)
        return;
    m_banner->setText(tr("本系统未注册激活"));
    setUserName(m_userName);
    if (m_runSeconds > 0)
        return refresh();
    m_time->setText(tr("系统时间")); // as it was built: before the first tick nothing is known
    m_link->setText(tr("连接状态:"));
}
