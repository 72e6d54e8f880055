#include "host/CellStatusBar.h"

#include <QDateTime>
#include <QLabel>

namespace {

QString runTimeText(qint64 seconds)
{
    const QString clock = QTime(0, 0).addSecs(static_cast<int>(seconds % 86400)).toString(QStringLiteral("hh:mm:ss"));
    return seconds < 86400 ? clock : QStringLiteral("%1天 %2").arg(seconds / 86400).arg(clock);
}

} // namespace

CellStatusBar::CellStatusBar(QWidget* parent)
    : QStatusBar(parent)
    , m_time(new QLabel(tr("系统时间")))
    , m_user(new QLabel(tr("用户:无")))
    , m_mode(new QLabel)
    , m_link(new QLabel(tr("连接状态:")))
{
    m_time->setObjectName(QStringLiteral("timeLabel"));
    m_user->setObjectName(QStringLiteral("userLabel"));
    m_mode->setObjectName(QStringLiteral("modeLabel"));
    m_link->setObjectName(QStringLiteral("linkLabel"));
    addWidget(m_time, 1);
    for (QLabel* label : {m_user, m_mode, m_link})
        addPermanentWidget(label);
}

void CellStatusBar::linkAlive()
{
    m_linkUp = true;
    m_silentSeconds = 0;
}

void CellStatusBar::tick(bool online)
{
    ++m_runSeconds;
    if (++m_silentSeconds > 5) {
        m_linkUp = false;
        m_silentSeconds = 0;
    }
    const QString now = QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    m_time->setText(QStringLiteral("%1 %2 %3").arg(now, tr("运行时长:"), runTimeText(m_runSeconds)));
    m_time->setStyleSheet(QStringLiteral("font: 14px;"));
    m_mode->setText(tr("检测模式：") + (online ? tr("在线模式") : tr("离线模式")));
    m_mode->setStyleSheet(QStringLiteral("font: 14px;"));
    m_link->setText(tr("连接状态：") + (m_linkUp ? tr("连接正常") : tr("连接异常")));
    m_link->setStyleSheet(m_linkUp ? QStringLiteral("font: 14px;background-color: rgb(63, 170, 24);")
                                   : QStringLiteral("font: 14px;background-color: rgb(200, 10, 10);"));
}

void CellStatusBar::setUserName(const QString& name)
{
    m_user->setText(name.isEmpty() ? tr("用户:无") : tr("用户: %1").arg(name));
}
