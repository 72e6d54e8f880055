#include "shell/ModeFrame.h"

#include "common/LookColors.h"
#include "shell/StateBar.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QVariant>

namespace {

constexpr int frameWidth = 5;

} // namespace

ModeFrame::ModeFrame(QWidget* window, const StateBar& state, QLabel& band)
    : QWidget(window)
    , m_state(state)
    , m_band(band)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    window->installEventFilter(this);
    connect(&state, &StateBar::modeChanged, this, &ModeFrame::follow);
    follow();
}

/// The word stands over the frame: a colour alone says nothing to who does not know it.
void ModeFrame::follow()
{
    const bool tests = m_state.state().isTesting;
    const bool shown = tests || !m_state.state().isOnline;
    m_band.setText(tests ? tr("测试运行中") : tr("离线模式"));
    m_band.setVisible(shown);
    m_band.setProperty("testing", QVariant(tests));
    m_band.style()->unpolish(&m_band);
    m_band.style()->polish(&m_band);
    setVisible(shown);
    const int edge = shown ? frameWidth : 0;
    parentWidget()->setContentsMargins(edge, 0, edge, edge);
    cover();
    update();
}

/// Only the edge: what lies below is painted as if this were not there.
void ModeFrame::cover()
{
    setGeometry(parentWidget()->rect());
    setMask(QRegion(rect()) - QRegion(rect().adjusted(frameWidth, frameWidth, -frameWidth, -frameWidth)));
    raise();
}

bool ModeFrame::eventFilter(QObject* object, QEvent* event)
{
    if (object == parentWidget() && event->type() == QEvent::Resize)
        cover();
    return QWidget::eventFilter(object, event);
}

void ModeFrame::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_state.state().isTesting ? lookColors().caution.ink : lookColors().faint);
}

void ModeFrame::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        follow();
}
