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

void ShiftLine::setTally(const StationTally& tally)
{
    const auto clock = [](qint64 wall) { return PartTable::timeOf(wall).toString(QStringLiteral("hh:mm")); };
    const QString name = tally.shifts().count() > 1 ? tally.shifts().nameOf(tally.shift().number) : tr("本班");
    const bool isReset = tally.resetAt() > 0;
    m_text->setText(
        (isReset ? tr("%1 %2清零") : tr("%1 %2起")).arg(name, clock(isReset ? tally.resetAt() : tally.shift().begin)));
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
