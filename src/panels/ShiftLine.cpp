#include "panels/ShiftLine.h"

#include "db/PartTable.h"
#include "panels/ElidedLabel.h"
#include "panels/StationTally.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>

ShiftLine::ShiftLine(QWidget* parent)
    : QWidget(parent)
    , m_text(new ElidedLabel(this))
    , m_reset(new QPushButton(this))
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    row->addWidget(m_text, 1);
    row->addWidget(m_reset);
    m_text->setObjectName(QStringLiteral("shiftLabel"));
    m_text->setTextFormat(Qt::PlainText);
    m_reset->setObjectName(QStringLiteral("shiftResetButton"));
    m_reset->setFocusPolicy(Qt::NoFocus);
    connect(m_reset, &QAbstractButton::clicked, this, &ShiftLine::resetWanted);
    retranslate();
}

void ShiftLine::show(const StationTally& tally)
{
    const auto clock = [](qint64 wall) { return PartTable::timeOf(wall).toString(QStringLiteral("hh:mm")); };
    const DayCount count = tally.shiftCount();
    const double yield = count.yield();
    const qint64 since = tally.resetAt() > 0 ? tally.resetAt() : tally.shift().begin;
    m_text->setText(tr("%1 %2起  找到%3  未找到%4  拒绝%5  检出率%6")
                        .arg(tally.shifts().count() > 1 ? tally.shifts().nameOf(tally.shift().number) : tr("本班"),
                             clock(since), QString::number(count.found), QString::number(count.notFound),
                             QString::number(count.refused),
                             yield < 0 ? QStringLiteral("—") : QString::number(yield, 'f', 1) + QLatin1Char('%')));
}

QString ShiftLine::text() const
{
    return m_text->text();
}

void ShiftLine::retranslate()
{
    m_reset->setText(tr("清零"));
    m_reset->setToolTip(tr("本班计数从零开始，今日计数不变"));
}

void ShiftLine::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        retranslate();
}
