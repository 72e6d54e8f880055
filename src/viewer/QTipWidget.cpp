#include "viewer/QTipWidget.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace {
constexpr int topMargin = 12;
}

QTipWidget* QTipWidget::showText(QWidget* over, const QString& text, int milliseconds)
{
    const auto before = over->findChildren<QTipWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (auto* shown : before) {
        shown->close();
        shown->deleteLater();
    }
    auto* tip = new QTipWidget(over);
    tip->setText(text);
    tip->m_timer.start(milliseconds);
    tip->show();
    return tip;
}

QTipWidget::QTipWidget(QWidget* parent)
    : QWidget(parent)
    , m_label(new QLabel(this))
{
    setStyleSheet(QStringLiteral("QWidget{\tcolor:#FFFFFF;} QFrame { background-color : #515C63;}"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_label);
    m_label->setMargin(8);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &QWidget::close);
    connect(&m_timer, &QTimer::timeout, this, &QObject::deleteLater);
    if (parent)
        parent->installEventFilter(this);
}

void QTipWidget::setText(const QString& text)
{
    m_label->setText(text);
    place();
}

QString QTipWidget::text() const
{
    return m_label->text();
}

void QTipWidget::mousePressEvent(QMouseEvent*)
{
    close();
    deleteLater();
}

bool QTipWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

void QTipWidget::place()
{
    adjustSize();
    if (parentWidget())
        move((parentWidget()->width() - width()) / 2, topMargin);
}
